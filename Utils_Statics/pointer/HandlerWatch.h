#pragma once

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

} // namespace utils_statics
