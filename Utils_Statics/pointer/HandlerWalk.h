#pragma once

#include "pointer/HandlerWatch.h"

#include <cstddef>
#include <vector>

namespace utils_statics {

// A walk over the list of handlers that stays valid, without a copy of the list, while the handlers
// that it visits change the list: the list's owner announces every insertion and removal, and the
// walks that are under way move their positions along. A handler inserted ahead of the walk is
// visited, one removed ahead of it is not, and none is visited twice. For local variables only:
// walks end in the reverse order of their creation.
class HandlerWalk
{
public:
    static constexpr std::size_t toTheEnd = static_cast<std::size_t>(-1);

    // From position first up to, not including, position end.
    HandlerWalk(const std::vector<IMouseHandler*>& handlers, std::size_t first, std::size_t end)
        : m_handlers(handlers), m_next(first), m_end(end), m_older(s_newest)
    {
        s_newest = this;
    }
    ~HandlerWalk() { s_newest = m_older; }
    HandlerWalk(const HandlerWalk&) = delete;
    HandlerWalk& operator=(const HandlerWalk&) = delete;

    // Steps to the next handler; false when there is none.
    bool Next()
    {
        if (m_next >= m_end || m_next >= m_handlers.size()) return false;
        m_visited = m_handlers[m_next++];
        return true;
    }

    // The handler stepped to, or null when it was destroyed since.
    IMouseHandler* Visited() const { return m_visited.get(); }

    // The position of the handler stepped to, or the one that it had when it was removed since.
    std::size_t VisitedPosition() const
    {
        const bool stillThere =
            m_next > 0 && m_visited.get() && m_handlers[m_next - 1] == m_visited.get();
        return stillThere ? m_next - 1 : m_next;
    }

    static void Inserted(std::size_t position)
    {
        for (HandlerWalk* walk = s_newest; walk; walk = walk->m_older) {
            if (position < walk->m_next) ++walk->m_next;
            if (walk->m_end != toTheEnd && position < walk->m_end) ++walk->m_end;
        }
    }

    static void Removed(std::size_t position)
    {
        for (HandlerWalk* walk = s_newest; walk; walk = walk->m_older) {
            if (position < walk->m_next) --walk->m_next;
            if (walk->m_end != toTheEnd && position < walk->m_end) --walk->m_end;
        }
    }

private:
    const std::vector<IMouseHandler*>& m_handlers;
    std::size_t m_next;
    std::size_t m_end;
    HandlerWatch m_visited;
    HandlerWalk* m_older;

    static constinit inline HandlerWalk* s_newest = nullptr;
};

} // namespace utils_statics
