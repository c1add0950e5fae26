#include "WindowProcedure.h"

#include "ThreadState.h"

#include <exception>

using framework::ThreadState;

namespace {

// Marks the message that is being handled, for Default() and for the idle time of nested message
// loops.
class ActiveMessage
{
public:
    explicit ActiveMessage(const MSG& message)
        : m_state(ThreadState::Current()), m_outer(m_state.message)
    {
        m_state.message = &message;
        ++m_state.proceduresActive;
    }
    ~ActiveMessage()
    {
        m_state.message = m_outer;
        --m_state.proceduresActive;
    }
    ActiveMessage(const ActiveMessage&) = delete;
    ActiveMessage& operator=(const ActiveMessage&) = delete;

private:
    ThreadState& m_state;
    const MSG* m_outer;
};

// Tells the debugger what was thrown. It must be called in an exception handler.
void ReportException(UINT message) noexcept
{
    char text[256];
    try {
        throw;
    } catch (const std::exception& exception) {
        wsprintfA(text, "An exception left the handler of message 0x%04x: %.150s\n", message,
                  exception.what());
    } catch (...) {
        wsprintfA(text, "An exception left the handler of message 0x%04x\n", message);
    }
    OutputDebugStringA(text);
}

LRESULT ResultAfterException(const MSG& message) noexcept
{
    if (message.message == WM_CREATE || message.message == WM_NCCREATE)
        return message.message == WM_CREATE ? -1 : FALSE; // the window is not created
    if (message.message == WM_PAINT)
        ValidateRect(message.hwnd, nullptr); // else it would be sent for ever
    return 0;
}

} // namespace

framework::PermanentMap<HWND, CWnd>& WindowProcedure::Windows()
{
    // The map is never destroyed: windows of other modules may end after this DLL's own objects.
    static auto& map = *new framework::PermanentMap<HWND, CWnd>;
    return map;
}

LRESULT CALLBACK WindowProcedure::Procedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) noexcept
{
    const MSG current = {window, message, wParam, lParam, 0, {0, 0}};
    try {
        CWnd* const object = Windows().Find(window);
        return object ? Route(*object, current) : DefWindowProcW(window, message, wParam, lParam);
    } catch (...) {
        ReportException(message);
        return ResultAfterException(current);
    }
}

LRESULT WindowProcedure::Route(CWnd& object, const MSG& message)
{
    const ActiveMessage active(message);
    return object.WindowProc(message.message, message.wParam, message.lParam);
}

void WindowProcedure::Install(CWnd& object)
{
    const auto procedure = reinterpret_cast<LONG_PTR>(&Procedure);
    const LONG_PTR old = SetWindowLongPtrW(object.m_hWnd, GWLP_WNDPROC, procedure);
    if (old != procedure) object.m_pfnSuper = reinterpret_cast<WNDPROC>(old);
}

void WindowProcedure::Remove(CWnd& object)
{
    const auto procedure = reinterpret_cast<LONG_PTR>(&Procedure);
    if (object.m_pfnSuper && GetWindowLongPtrW(object.m_hWnd, GWLP_WNDPROC) == procedure)
        SetWindowLongPtrW(object.m_hWnd, GWLP_WNDPROC,
                          reinterpret_cast<LONG_PTR>(object.m_pfnSuper));
    object.m_pfnSuper = nullptr;
}
