#include "ThreadState.h"
#include "WindowProcedure.h"

#include <utility>

#include <framework/fromHandle.h>

using framework::ThreadState;

CWnd::~CWnd()
{
    CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandle(HWND window)
{
    if (!window) return nullptr;
    if (CWnd* const permanent = FromHandlePermanent(window)) return permanent;
    auto& temporary = ThreadState::Current().windows[window];
    if (!temporary) {
        temporary = std::make_unique<CWnd>();
        temporary->m_hWnd = window;
    }
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

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                  void* context)
{
    return CreateEx(0, className, windowName, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                    UINT id, LPVOID parameter)
{
    const CRect area(rect);
    return CreateEx(exStyle, className, windowName, style, area.left, area.top, area.Width(), area.Height(),
                    parent ? parent->m_hWnd : nullptr, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y, int width,
                    int height, HWND parent, HMENU idOrMenu, LPVOID parameter)
{
    CREATESTRUCT d = {parameter, AfxGetInstanceHandle(),   idOrMenu,   parent,    height, width, y,
                      x,         static_cast<LONG>(style), windowName, className, exStyle};
    bool attached = false;
    HWND window = nullptr;
    if (!m_hWnd && PreCreateWindow(d)) {
        const WindowProcedure::Creation creation(*this);
        window = CreateWindowExW(d.dwExStyle, d.lpszClass, d.lpszName, static_cast<DWORD>(d.style), d.x, d.y, d.cx,
                                 d.cy, d.hwndParent, d.hMenu, d.hInstance, d.lpCreateParams);
        attached = !creation.waiting();
    }
    // A window that came and went has been through PostNcDestroy.
    if (!attached) PostNcDestroy();
    return window != nullptr;
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
    const BOOL destroyed = ::DestroyWindow(window);
    // Without the procedure in place nobody was told.
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
    const DWORD style = (GetStyle() & ~remove) | add;
    if (style == GetStyle()) return FALSE;
    ::SetWindowLongW(m_hWnd, GWL_STYLE, static_cast<LONG>(style));
    if (positionFlags)
        SetWindowPos(nullptr, 0, 0, 0, 0, positionFlags | SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return TRUE;
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags)
{
    const DWORD style = (GetExStyle() & ~remove) | add;
    if (style == GetExStyle()) return FALSE;
    ::SetWindowLongW(m_hWnd, GWL_EXSTYLE, static_cast<LONG>(style));
    if (positionFlags)
        SetWindowPos(nullptr, 0, 0, 0, 0, positionFlags | SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return TRUE;
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
    description.lpfnWndProc = ::DefWindowProcW; // the objects' procedure is put in front when a window is created
    description.hInstance = AfxGetInstanceHandle();
    description.hCursor = cursor;
    description.hbrBackground = background;
    description.hIcon = icon;
    CString& name = ThreadState::Current().className;
    name.Format(L"Afx:%p:%x:%p:%p:%p", static_cast<void*>(description.hInstance), style, static_cast<void*>(cursor),
                static_cast<void*>(background), static_cast<void*>(icon));
    description.lpszClassName = name;
    WNDCLASS existing = {};
    const bool known = GetClassInfoW(description.hInstance, name, &existing) || RegisterClassW(&description) ||
                       GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
    if (!known) name.Empty();
    return name;
}
