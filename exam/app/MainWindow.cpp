#include "app/MainWindow.h"

#include "app/StateChanges.h"
#include "screen/ScreenLayout.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/ZelTString.h>

namespace exam
{

namespace
{

void TellChange(ExamStateChange change)
{
    utilsExam::StateChangeSignal(StateChangeType(change), 0, 0);
}

} // namespace

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

MainWindow::MainWindow(Session& session)
    : m_session(session), m_tools(m_view, ScreenLayout::image()), m_flow(ScreenLayout::strip().Width()),
      m_content{m_session, m_view, m_tools, m_flow}
{
}

bool MainWindow::Open()
{
    const CString windowClass = AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW), nullptr);
    const CRect frame(0, 0, ScreenLayout::width, ScreenLayout::height);
    if (!CreateEx(0, windowClass, GetStr("exam.title"), WS_POPUP | WS_SYSMENU, frame, nullptr, 0)) return false;
    ShowWindow(SW_SHOW);
    return true;
}

void MainWindow::SetStatus(const CString& text)
{
    m_content.status = text;
    TellChange(stateDisplayChanged);
}

void MainWindow::ShowStrip(bool shown)
{
    m_content.stripShown = shown;
    TellChange(stateDisplayChanged);
}

void MainWindow::SetRotation(int angle)
{
    m_content.rotation = angle;
    TellChange(stateDisplayChanged);
}

void MainWindow::NextLanguage()
{
    ZelTString::setLanguage(ZelTString::getLanguage() == L"en" ? L"de" : L"en");
    TellChange(stateLanguageChanged);
}

void MainWindow::OnStateChange(StateChangeType type, unsigned int, long)
{
    ++m_changesSeen;
    if (type == StateChangeType(stateImageChanged) && !m_session.empty()) ShowFrame();
    if (!GetSafeHwnd()) return;
    if (type == StateChangeType(stateLanguageChanged)) SetWindowText(GetStr("exam.title"));
    Invalidate(FALSE);
}

void MainWindow::ShowFrame()
{
    const CineFile& cine = m_session.cine();
    if (m_shown != &cine)
    {
        m_shown = &cine;
        m_view.SetRecording(cine, ScreenLayout::image().Size());
        m_tools.Reset(ScreenLayout::image().Size());
    }
    m_view.Show(cine, m_session.frame());
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
    DrawScreen(memory, m_content);
    window.BitBlt(0, 0, ScreenLayout::width, ScreenLayout::height, &memory, 0, 0, SRCCOPY);
    memory.SelectObject(old);
}

void MainWindow::ToggleTool(ImageTool& tool)
{
    tool.Show(!tool.visible());
}

void MainWindow::OnKeyDown(UINT key, UINT, UINT)
{
    switch (key)
    {
    case VK_SPACE: m_session.NextImage(); return TellChange(stateImageChanged);
    case 'F': m_session.NextFrame(); return TellChange(stateImageChanged);
    case 'L': return NextLanguage();
    case '1': return ToggleTool(m_tools.distance());
    case '2': return ToggleTool(m_tools.angle());
    case '3': return ToggleTool(m_tools.region());
    case 'P': return m_tools.SetInput(MouseCapture::GetInput() == InputPointer ? InputTrackball : InputPointer);
    case VK_TAB: MouseCapture::LockNext(); return;
    case 'S': return ShowStrip(!m_content.stripShown);
    case 'R': return SetRotation((m_content.rotation + 150) % 3600);
    case VK_ESCAPE: DestroyWindow(); return;
    default: return;
    }
}

void MainWindow::OnLButtonDown(UINT flags, CPoint point)
{
    MouseCapture::HandleMouse(WM_LBUTTONDOWN, flags, point);
}

void MainWindow::OnLButtonUp(UINT flags, CPoint point)
{
    MouseCapture::HandleMouse(WM_LBUTTONUP, flags, point);
}

void MainWindow::OnMouseMove(UINT flags, CPoint point)
{
    MouseCapture::HandleMouse(WM_MOUSEMOVE, flags, point);
}

void MainWindow::OnDestroy()
{
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
