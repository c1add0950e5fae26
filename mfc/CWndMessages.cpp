// The way of a window's messages to their handlers, and the default handlers.
#include "ThreadState.h"
#include "WindowProcedure.h"

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
    ON_WM_NCDESTROY()
END_MESSAGE_MAP()

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result
                                                      : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    LRESULT answer = 0;
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) return FALSE;
    } else {
        const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(message, 0, 0);
        if (!entry) return FALSE;
        answer = entry->handler(this, wParam, lParam);
    }
    if (result) *result = answer;
    return TRUE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    return m_pfnSuper ? ::CallWindowProcW(m_pfnSuper, m_hWnd, message, wParam, lParam)
                      : ::DefWindowProcW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    // Menus and accelerators send no control; their "notification codes" 0 and 1 both mean the
    // command.
    const int code = lParam ? static_cast<int>(HIWORD(wParam)) : CN_COMMAND;
    return OnCmdMsg(LOWORD(wParam), code, nullptr, nullptr);
}

LRESULT CWnd::Default()
{
    const MSG* const message = GetCurrentMessage();
    return message ? DefWindowProc(message->message, message->wParam, message->lParam) : 0;
}

void CWnd::OnNcDestroy()
{
    CWinThread* const thread = AfxGetThread();
    if (thread && thread->m_pMainWnd == this) {
        thread->m_pMainWnd = nullptr;
        PostQuitMessage(0);
    }
    Default();
    UnsubclassWindow();
    PostNcDestroy(); // the object may be gone after this
}

int CWnd::OnCreate(LPCREATESTRUCT)
{
    return static_cast<int>(Default());
}

void CWnd::OnDestroy()
{
    Default();
}

void CWnd::OnClose()
{
    Default();
}

void CWnd::OnPaint()
{
    Default();
}

BOOL CWnd::OnEraseBkgnd(CDC*)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnSize(UINT, int, int)
{
    Default();
}

void CWnd::OnMove(int, int)
{
    Default();
}

void CWnd::OnTimer(UINT_PTR)
{
    Default();
}

void CWnd::OnShowWindow(BOOL, UINT)
{
    Default();
}

void CWnd::OnEnable(BOOL)
{
    Default();
}

void CWnd::OnSetFocus(CWnd*)
{
    Default();
}

void CWnd::OnKillFocus(CWnd*)
{
    Default();
}

BOOL CWnd::OnSetCursor(CWnd*, UINT, UINT)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnCaptureChanged(CWnd*)
{
    Default();
}

void CWnd::OnKeyDown(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnKeyUp(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnChar(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnMouseMove(UINT, CPoint)
{
    Default();
}

BOOL CWnd::OnMouseWheel(UINT, short, CPoint)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnLButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonDblClk(UINT, CPoint)
{
    Default();
}

void CWnd::OnRButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnRButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonUp(UINT, CPoint)
{
    Default();
}
