#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

class IMouseHandler;

namespace utils_statics {

// A pointer to a handler that becomes null when the handler is destroyed, for use across calls of
// handlers' operations. It is for local variables only, because watches must end in the reverse
// order of their creation. They change, so none is const.
class HandlerWatch
{
public:
    explicit HandlerWatch(IMouseHandler* handler = nullptr) : m_handler(handler), m_older(s_newest)
    {
        s_newest = this;
    }
    ~HandlerWatch() { s_newest = m_older; }
    HandlerWatch(const HandlerWatch&) = delete;
    HandlerWatch& operator=(const HandlerWatch&) = delete;

    HandlerWatch& operator=(IMouseHandler* handler)
    {
        m_handler = handler;
        return *this;
    }

    IMouseHandler* get() const { return m_handler; }

    static void Destroyed(const IMouseHandler* handler)
    {
        for (HandlerWatch* watch = s_newest; watch; watch = watch->m_older)
            if (watch->m_handler == handler) watch->m_handler = nullptr;
    }

private:
    IMouseHandler* m_handler;
    HandlerWatch* m_older;

    static constinit inline HandlerWatch* s_newest = nullptr;
};

// A walk over the handlers that are registered when it begins. It visits each of them once, in
// order, unless it is no longer registered when its turn comes. So it ends, whatever the visited
// handlers do to the list. Like HandlerWatch it is for local variables only.
class HandlerWalk
{
public:
    // Walks from position `first` up to, not including, position `end`. `registered` must outlive
    // the walk. The walk is empty when memory is short.
    HandlerWalk(const std::vector<IMouseHandler*>& registered, std::size_t first,
                std::size_t end) noexcept
        : m_registered(registered), m_first(first)
    {
        try {
            m_handlers.assign(registered.begin() + static_cast<std::ptrdiff_t>(first),
                              registered.begin() + static_cast<std::ptrdiff_t>(end));
        } catch (const std::bad_alloc&) {
        }
    }

    // Steps to the next handler; false when there is none.
    bool Next()
    {
        while (m_next < m_handlers.size() && !IsRegistered(m_next))
            ++m_next;
        if (m_next == m_handlers.size()) return false;
        m_visited = m_handlers[m_next++];
        return true;
    }

    // The handler of the last step, or null when it has been destroyed since.
    IMouseHandler* Visited() const { return m_visited.get(); }

private:
    bool IsRegistered(std::size_t index) const
    {
        IMouseHandler* const handler = m_handlers[index];
        // The handler's position, unless the list has changed.
        const std::size_t place = m_first + index;
        if (place < m_registered.size() && m_registered[place] == handler) return true;
        return std::find(m_registered.begin(), m_registered.end(), handler) != m_registered.end();
    }

    const std::vector<IMouseHandler*>& m_registered;
    const std::size_t m_first;
    std::vector<IMouseHandler*> m_handlers;
    std::size_t m_next = 0;
    HandlerWatch m_visited;
};

} // namespace utils_statics
