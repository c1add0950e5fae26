#include "ThreadState.h"
#include "WindowCreation.h"
#include "WindowProcedure.h"

#include <framework/FromHandle.h>

#include <utility>

using framework::ThreadState;

namespace {

BOOL ModifyStyleBits(HWND window, int index, DWORD remove, DWORD add, UINT positionFlags)
{
    const auto old = static_cast<DWORD>(GetWindowLongW(window, index));
    const DWORD style = (old & ~remove) | add;
    if (style == old) return FALSE;
    SetWindowLongW(window, index, static_cast<LONG>(style));
    constexpr UINT nothingElse = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    if (positionFlags) SetWindowPos(window, nullptr, 0, 0, 0, 0, positionFlags | nothingElse);
    return TRUE;
}

} // namespace

CWnd::~CWnd()
{
    CWnd::DestroyWindow();
    UnsubclassWindow(); // another thread's window cannot be destroyed from here, and must not find
                        // this object any more
}

CWnd* CWnd::FromHandle(HWND window)
{
    if (!window) return nullptr;
    if (CWnd* const permanent = FromHandlePermanent(window)) return permanent;
    auto& temporary = ThreadState::Current().windows[window];
    if (!temporary) temporary = std::make_unique<CWnd>();
    // A temporary object that was detached, or whose handle was destroyed, gets the handle again.
    if (!temporary->m_hWnd) temporary->m_hWnd = window;
    return temporary.get();
}

CWnd* framework::WindowFromHandle(HWND window)
{
    return CWnd::FromHandle(window);
}

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    return window ? WindowProcedure::Windows().Find(window) : nullptr;
}

void CWnd::DeleteTempMap()
{
    ThreadState::Current().DeleteTemporaryWindows();
}

BOOL CWnd::Attach(HWND window)
{
    if (!window || m_hWnd || !WindowProcedure::Windows().Add(window, this)) return FALSE;
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach()
{
    if (m_hWnd) WindowProcedure::Windows().Remove(m_hWnd, this);
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND window)
{
    if (!Attach(window)) return FALSE;
    PreSubclassWindow();
    WindowProcedure::Install(*this);
    return TRUE;
}

HWND CWnd::UnsubclassWindow()
{
    WindowProcedure::Remove(*this);
    return Detach();
}

void CWnd::PreSubclassWindow() {}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id, void* context)
{
    return CreateEx(0, className, windowName, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                    const RECT& rect, CWnd* parent, UINT id, LPVOID parameter)
{
    const CRect area(rect);
    return CreateEx(exStyle, className, windowName, style, area.left, area.top, area.Width(),
                    area.Height(), parent ? parent->m_hWnd : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                    int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter)
{
    if (m_hWnd) return FALSE;
    CREATESTRUCT description = {
        parameter, AfxGetInstanceHandle(),   idOrMenu,   parent,    height, width, y,
        x,         static_cast<LONG>(style), windowName, className, exStyle};
    if (PreCreateWindow(description)) return WindowCreation(*this).Create(description) != nullptr;
    PostNcDestroy();
    return FALSE;
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT& description)
{
    if (!description.lpszClass)
        description.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, LoadCursorW(nullptr, IDC_ARROW));
    return description.lpszClass[0] != L'\0';
}

BOOL CWnd::DestroyWindow()
{
    if (!m_hWnd) return FALSE;
    const HWND window = m_hWnd;
    const bool permanent = FromHandlePermanent(window) == this;
    const BOOL destroyed = ::DestroyWindow(window);
    // An object that was told of its window's end has left the map and may have deleted itself.
    // Then `this` must not be read.
    if (permanent && FromHandlePermanent(window) != this) return destroyed;
    // Without the window procedure in place, the object was not told.
    if (m_hWnd == window && !::IsWindow(window)) Detach();
    return destroyed;
}

void CWnd::PostNcDestroy() {}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

const MSG* CWnd::GetCurrentMessage()
{
    return ThreadState::Current().message;
}

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT positionFlags)
{
    return ModifyStyleBits(*this, GWL_STYLE, remove, add, positionFlags);
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags)
{
    return ModifyStyleBits(*this, GWL_EXSTYLE, remove, add, positionFlags);
}

void CWnd::GetWindowText(CString& text) const
{
    const int length = GetWindowTextLength();
    const int copied = ::GetWindowTextW(m_hWnd, text.GetBufferSetLength(length), length + 1);
    text.ReleaseBuffer(copied);
}

void CWnd::SetFont(CFont* font, BOOL redraw)
{
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font ? font->m_hObject : nullptr), redraw);
}

void CWnd::MoveWindow(LPCRECT rect, BOOL repaint)
{
    const CRect area(rect);
    MoveWindow(area.left, area.top, area.Width(), area.Height(), repaint);
}

LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor, HBRUSH background, HICON icon)
{
    WNDCLASS description = {};
    description.style = style;
    description.lpfnWndProc =
        ::DefWindowProcW; // the objects' procedure replaces it when a window is created
    description.hInstance = AfxGetInstanceHandle();
    description.hCursor = cursor;
    description.hbrBackground = background;
    description.hIcon = icon;
    CString& name = ThreadState::Current().className;
    name.Format(L"Afx:%p:%x:%p:%p:%p", static_cast<void*>(description.hInstance), style,
                static_cast<void*>(cursor), static_cast<void*>(background),
                static_cast<void*>(icon));
    description.lpszClassName = name;
    WNDCLASS existing = {};
    const bool known = GetClassInfoW(description.hInstance, name, &existing) ||
                       RegisterClassW(&description) || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
    if (!known) name.Empty();
    return name;
}
