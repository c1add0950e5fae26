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
        : m_registered(registered), m_first(first), m_begin(s_copies.size()), m_next(m_begin)
    {
        const auto begin = registered.begin();
        s_copies.insert(s_copies.end(), begin + static_cast<std::ptrdiff_t>(first),
                        begin + static_cast<std::ptrdiff_t>(std::min(end, registered.size())));
        m_end = s_copies.size();
    }
    ~HandlerWalk() { s_copies.resize(m_begin); }
    HandlerWalk(const HandlerWalk&) = delete;
    HandlerWalk& operator=(const HandlerWalk&) = delete;

    // Steps to the next handler; false when there is none.
    bool Next()
    {
        while (m_next < m_end)
            if (IsRegistered(m_next++)) return true;
        return false;
    }

    // The handler stepped to, or null when it was destroyed since.
    IMouseHandler* Visited() const { return s_copies[m_next - 1]; }

    // To be called when a handler is destroyed: another one may get its address.
    static void Destroyed(const IMouseHandler* handler)
    {
        std::replace(s_copies.begin(), s_copies.end(), const_cast<IMouseHandler*>(handler),
                     static_cast<IMouseHandler*>(nullptr));
    }

private:
    bool IsRegistered(std::size_t index) const
    {
        const IMouseHandler* const handler = s_copies[index];
        if (!handler) return false;
        // Where it was, unless the list has changed.
        const std::size_t place = m_first + (index - m_begin);
        if (place < m_registered.size() && m_registered[place] == handler) return true;
        return std::find(m_registered.begin(), m_registered.end(), handler) != m_registered.end();
    }

    const std::vector<IMouseHandler*>& m_registered;
    const std::size_t m_first;
    const std::size_t m_begin; // of this walk's handlers in s_copies
    std::size_t m_end;
    std::size_t m_next;

    // The handlers of all walks: each puts its own behind those of the walk during which it is
    // made. A destroyed handler leaves a null. The storage stays, so that walks allocate nothing.
    static std::vector<IMouseHandler*> s_copies;
};

} // namespace utils_statics
