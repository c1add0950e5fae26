// Circles in a graph, compared with a plain search from every node.
#include "protocol/Circles.h"

#include <gtest/gtest.h>

#include <random>

using exam::Graph;
using exam::NodesOnCircles;

namespace {

bool LeadsBack(const Graph& graph, std::size_t start)
{
    std::vector<bool> seen(graph.size());
    std::vector<std::size_t> pending = graph[start];
    while (!pending.empty()) {
        const std::size_t node = pending.back();
        pending.pop_back();
        if (node == start) return true;
        if (seen[node]) continue;
        seen[node] = true;
        pending.insert(pending.end(), graph[node].begin(), graph[node].end());
    }
    return false;
}

std::vector<bool> PlainForm(const Graph& graph)
{
    std::vector<bool> result;
    for (std::size_t node = 0; node < graph.size(); ++node)
        result.push_back(LeadsBack(graph, node));
    return result;
}

} // namespace

TEST(Circles, OfAnEmptyGraphThereAreNone)
{
    EXPECT_TRUE(NodesOnCircles({}).empty());
}

TEST(Circles, ANodeBesideACircleIsNotOnIt)
{
    // 0 -> 1 -> 2 -> 1, 2 -> 3, 4 -> 4
    const Graph graph = {{1}, {2}, {1, 3}, {}, {4}};
    EXPECT_EQ(NodesOnCircles(graph), (std::vector<bool>{false, true, true, false, true}));
}

TEST(Circles, EqualThePlainFormOnRandomGraphs)
{
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        Graph graph(1 + random() % 20);
        for (std::size_t edges = random() % 40; edges > 0; --edges)
            graph[random() % graph.size()].push_back(random() % graph.size());
        ASSERT_EQ(NodesOnCircles(graph), PlainForm(graph)) << round;
    }
}

TEST(Circles, AreFoundAtTheEndOfALongChain)
{
    constexpr std::size_t length = 200'000;
    Graph graph(length);
    for (std::size_t node = 0; node + 1 < length; ++node)
        graph[node] = {node + 1};
    graph[length - 1] = {length - 2};
    std::vector<bool> expected(length);
    expected[length - 2] = expected[length - 1] = true;
    EXPECT_EQ(NodesOnCircles(graph), expected);
}
