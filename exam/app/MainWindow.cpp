#include "app/MainWindow.h"

#include "screen/Screen.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/ZelTString.h>

namespace exam
{

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

MainWindow::MainWindow(Session& session) : m_session(session) {}

bool MainWindow::Open()
{
    constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    CRect frame(0, 0, ScreenLayout::width, ScreenLayout::height);
    AdjustWindowRectEx(&frame, style, FALSE, 0);
    const CString windowClass = AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW), nullptr);
    if (!CreateEx(0, windowClass, GetStr("exam.title"), style, CRect(CPoint(0, 0), frame.Size()), nullptr, 0))
        return false;
    ShowWindow(SW_SHOW);
    return true;
}

void MainWindow::SetStatus(const CString& text)
{
    m_status = text;
    const CRect status = ScreenLayout::status();
    InvalidateRect(&status, FALSE);
}

void MainWindow::NextLanguage()
{
    ZelTString::setLanguage(ZelTString::getLanguage() == L"en" ? L"de" : L"en");
    utilsExam::StateChangeSignal(StateChangeType(stateLanguageChanged), 0, 0);
}

void MainWindow::OnStateChange(StateChangeType type, unsigned int, long)
{
    ++m_changesSeen;
    if (type == StateChangeType(stateImageChanged) && !m_session.empty())
        m_view.Show(m_session.cine(), m_session.frame(), ScreenLayout::imageSize());
    if (type == StateChangeType(stateLanguageChanged)) SetWindowText(GetStr("exam.title"));
    if (GetSafeHwnd()) Invalidate(FALSE);
}

BOOL MainWindow::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything; erasing first would flicker
}

void MainWindow::OnPaint()
{
    CPaintDC window(this);
    CDC memory;
    CBitmap bitmap;
    memory.CreateCompatibleDC(&window);
    bitmap.CreateCompatibleBitmap(&window, ScreenLayout::width, ScreenLayout::height);
    CBitmap* const old = memory.SelectObject(&bitmap);
    DrawScreen(memory, m_session, m_view, m_status);
    window.BitBlt(0, 0, ScreenLayout::width, ScreenLayout::height, &memory, 0, 0, SRCCOPY);
    memory.SelectObject(old);
}

void MainWindow::OnKeyDown(UINT key, UINT, UINT)
{
    switch (key)
    {
    case VK_SPACE: m_session.NextImage(); break;
    case 'F': m_session.NextFrame(); break;
    case 'L': NextLanguage(); return;
    case VK_ESCAPE: DestroyWindow(); return;
    default: return;
    }
    utilsExam::StateChangeSignal(StateChangeType(stateImageChanged), 0, m_session.frame());
}

void MainWindow::OnDestroy()
{
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
