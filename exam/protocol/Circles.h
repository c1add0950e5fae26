#pragma once

#include <cstddef>
#include <vector>

namespace exam {

/// A directed graph: for each node, the numbers of the nodes that it points to.
using Graph = std::vector<std::vector<std::size_t>>;

/// For each node, true when a path of the graph leads from it back to it. Takes time and memory in
/// proportion to the graph, and does not recurse. By R. Tarjan, "Depth-first search and linear
/// graph algorithms", SIAM Journal on Computing 1 (1972): a node is on a circle when it shares a
/// strongly connected component with another one, or points to itself.
std::vector<bool> NodesOnCircles(const Graph& graph);

} // namespace exam
