#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

class IMouseHandler;

namespace utils_statics {

// A walk over the handlers that are registered when it begins. It visits each of them once, in
// order, unless it is no longer registered when its turn comes. So it ends, whatever the visited
// handlers do to the list. For local variables only: walks end in the reverse order of their
// creation.
class HandlerWalk
{
public:
    static constexpr std::size_t toTheEnd = static_cast<std::size_t>(-1);

    // From position `first` up to, not including, position `end`. `registered` outlives the walk.
    explicit HandlerWalk(const std::vector<IMouseHandler*>& registered, std::size_t first = 0,
                         std::size_t end = toTheEnd)
        : m_registered(registered), m_first(first),
          m_handlers(registered.begin() + static_cast<std::ptrdiff_t>(first),
                     registered.begin() +
                         static_cast<std::ptrdiff_t>(std::min(end, registered.size()))),
          m_older(s_newest)
    {
        s_newest = this;
    }
    ~HandlerWalk() { s_newest = m_older; }
    HandlerWalk(const HandlerWalk&) = delete;
    HandlerWalk& operator=(const HandlerWalk&) = delete;

    // Steps to the next handler; false when there is none.
    bool Next()
    {
        while (m_next < m_handlers.size())
            if (IsRegistered(m_next++)) return true;
        return false;
    }

    // The handler stepped to, or null when it was destroyed since.
    IMouseHandler* Visited() const { return m_handlers[m_next - 1]; }

    // To be called when a handler is destroyed: another one may get its address.
    static void Destroyed(const IMouseHandler* handler)
    {
        for (HandlerWalk* walk = s_newest; walk; walk = walk->m_older)
            std::replace(walk->m_handlers.begin(), walk->m_handlers.end(),
                         const_cast<IMouseHandler*>(handler), static_cast<IMouseHandler*>(nullptr));
    }

private:
    bool IsRegistered(std::size_t index) const
    {
        const IMouseHandler* const handler = m_handlers[index];
        if (!handler) return false;
        // Where it was, unless the list has changed.
        const std::size_t place = m_first + index;
        if (place < m_registered.size() && m_registered[place] == handler) return true;
        return std::find(m_registered.begin(), m_registered.end(), handler) != m_registered.end();
    }

    const std::vector<IMouseHandler*>& m_registered;
    const std::size_t m_first;
    std::vector<IMouseHandler*> m_handlers; // null: destroyed
    std::size_t m_next = 0;
    HandlerWalk* m_older;

    static constinit inline HandlerWalk* s_newest = nullptr;
};

} // namespace utils_statics
