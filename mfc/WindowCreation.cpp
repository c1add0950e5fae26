#include "WindowCreation.h"

#include "ThreadState.h"
#include "WindowProcedure.h"

using framework::ThreadState;

WindowCreation::WindowCreation(CWnd& object)
    : m_object(object), m_outer(ThreadState::Current().creation),
      m_hook(SetWindowsHookExW(WH_CBT, &OnHook, nullptr, GetCurrentThreadId()))
{
    ThreadState::Current().creation = this;
}

WindowCreation::~WindowCreation()
{
    ThreadState::Current().creation = m_outer;
}

HWND WindowCreation::Create(const CREATESTRUCT& d)
{
    HWND window = nullptr;
    if (m_hook) // without it, nobody would have the window
        window =
            CreateWindowExW(d.dwExStyle, d.lpszClass, d.lpszName, static_cast<DWORD>(d.style), d.x,
                            d.y, d.cx, d.cy, d.hwndParent, d.hMenu, d.hInstance, d.lpCreateParams);
    if (!window) CleanUp();
    return window;
}

// A window that is destroyed during its creation tells the object so (WM_NCDESTROY), and the object
// may then delete itself. It must not be touched unless it is still in the map.
void WindowCreation::CleanUp()
{
    const bool attached = m_window && CWnd::FromHandlePermanent(m_window) == &m_object;
    if (m_window && !attached) return;
    if (attached) m_object.UnsubclassWindow();
    WindowProcedure::TellGone(m_object);
}

LRESULT CALLBACK WindowCreation::OnHook(int code, WPARAM wParam, LPARAM lParam) noexcept
{
    WindowCreation* const creation = ThreadState::Current().creation;
    auto* const window = reinterpret_cast<HWND>(wParam);
    // The input method's own window may be created meanwhile.
    if (code == HCBT_CREATEWND && creation && !creation->m_window &&
        !(GetClassLongW(window, GCL_STYLE) & CS_IME)) {
        try {
            creation->Adopt(window);
        } catch (...) {
            return 1; // the window is not created
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void WindowCreation::Adopt(HWND window)
{
    m_window = window;
    m_object.SubclassWindow(window);
}
