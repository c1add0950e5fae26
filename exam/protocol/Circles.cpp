#include "protocol/Circles.h"

#include <algorithm>
#include <utility>

namespace exam {

namespace {

// One search through the whole graph. A node is open from the moment it is found until its
// component is known.
class CircleSearch
{
public:
    explicit CircleSearch(const Graph& graph)
        : m_graph(graph), m_found(graph.size()), m_earliest(graph.size()), m_isOpen(graph.size()),
          m_isOnCircle(graph.size())
    {
        for (std::size_t node = 0; node < graph.size(); ++node)
            if (m_found[node] == 0) SearchFrom(node);
    }

    std::vector<bool> Result() && { return std::move(m_isOnCircle); }

private:
    struct Visit
    {
        std::size_t node;
        std::size_t next; // index among the nodes that `node` points to
    };

    void SearchFrom(std::size_t start)
    {
        Begin(start);
        while (!m_visits.empty()) {
            Visit& visit = m_visits.back();
            if (visit.next == m_graph[visit.node].size())
                End(visit.node);
            else
                Follow(visit.node, m_graph[visit.node][visit.next++]);
        }
    }

    void Begin(std::size_t node)
    {
        m_found[node] = m_earliest[node] = ++m_count;
        m_open.push_back(node);
        m_isOpen[node] = true;
        m_visits.push_back({node, 0});
    }

    void Follow(std::size_t from, std::size_t to)
    {
        if (from == to) m_isOnCircle[from] = true;
        if (m_found[to] == 0)
            Begin(to);
        else if (m_isOpen[to])
            m_earliest[from] = std::min(m_earliest[from], m_found[to]);
    }

    void End(std::size_t node)
    {
        m_visits.pop_back();
        if (!m_visits.empty()) {
            std::size_t& earliest = m_earliest[m_visits.back().node];
            earliest = std::min(earliest, m_earliest[node]);
        }
        if (m_earliest[node] == m_found[node]) CloseComponent(node);
    }

    // The component is `first` and all nodes opened after it.
    void CloseComponent(std::size_t first)
    {
        const bool isCircle = m_open.back() != first;
        for (bool isFirst = false; !isFirst; m_open.pop_back()) {
            const std::size_t node = m_open.back();
            isFirst = node == first;
            m_isOpen[node] = false;
            if (isCircle) m_isOnCircle[node] = true;
        }
    }

    const Graph& m_graph;
    std::vector<std::size_t> m_found;    // order of finding, from 1; 0: not found yet
    std::vector<std::size_t> m_earliest; // the lowest of these numbers that a node reaches
    std::vector<std::size_t> m_open;
    std::vector<bool> m_isOpen;
    std::vector<bool> m_isOnCircle;
    std::vector<Visit> m_visits;
    std::size_t m_count = 0;
};

} // namespace

std::vector<bool> NodesOnCircles(const Graph& graph)
{
    return CircleSearch(graph).Result();
}

} // namespace exam
