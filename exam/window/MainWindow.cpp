#include "window/MainWindow.h"

#include "base/Painting.h"
#include "base/Resources.h"
#include "base/ScreenLayout.h"
#include "base/StateChanges.h"
#include "screen/Screen.h"
#include "window/Capture.h"

#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

constexpr UINT_PTR playTimer = 1;

bool IsHeld(int key)
{
    return GetKeyState(key) < 0;
}

} // namespace

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_TIMER()
    ON_WM_CLOSE()
    ON_MESSAGE(WM_QUERYENDSESSION, OnQueryEndSession)
    ON_MESSAGE(WM_ENDSESSION, OnEndSession)
    ON_WM_DESTROY()
END_MESSAGE_MAP()

MainWindow::MainWindow(ExamState& state, const std::wstring& folder)
    : m_state(state), m_exam(state, *this, folder), m_commands(m_exam),
      m_overlays(state, ToolButtons()),
      m_panel({[this](const ActionInfo& action) { m_commands.CarryOut(action); },
               [this](const CString& sentence) { m_state.SetStatus(sentence); },
               [this] { m_commands.BroadcastAll(); }})
{
}

bool MainWindow::Open()
{
    const CString windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW), nullptr,
                            LoadIcon(GetModuleHandle(nullptr), MAKEINTRESOURCE(IDI_EXAM)));
    const CRect frame(0, 0, ScreenLayout::width, ScreenLayout::height);
    if (!CreateEx(0, windowClass, GetStr("exam.title"), WS_POPUP | WS_SYSMENU, frame, nullptr, 0))
        return false;
    if (!m_overlays.Open(*this, ScreenLayout::Image())) return false;
    BalloonMessageService::Create();
    ShowWindow(SW_SHOW);
    return true;
}

std::vector<ToolButton> MainWindow::ToolButtons()
{
    std::vector<ToolButton> buttons;
    for (const Command& command : Commands()) {
        if (!command.picture) continue;
        buttons.push_back({command.picture, command.nameKey, [&command] { return TipOf(command); },
                           [this, &command] { m_commands.CarryOut(command); },
                           [this, &command] {
                               if (!IsPossible(command, m_state)) return ButtonForm::disabled;
                               return IsOn(command, m_state) ? ButtonForm::framed
                                                             : ButtonForm::normal;
                           }});
    }
    return buttons;
}

void MainWindow::OnStateChange(StateChangeType type, unsigned int, long)
{
    ++m_changesSeen;
    if (!GetSafeHwnd()) return;
    if (type == stateLanguageChanged) SetWindowText(GetStr("exam.title"));
    RunTimer();
    Invalidate(FALSE);
    m_overlays.Refresh(); // the image is painted below them
}

void MainWindow::RunTimer()
{
    const std::optional<unsigned> interval = m_exam.PlayInterval();
    if (interval == m_interval) return;
    m_interval = interval;
    if (interval)
        SetTimer(playTimer, *interval, nullptr);
    else
        KillTimer(playTimer);
}

BOOL MainWindow::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything; erasing first would flicker
}

void MainWindow::OnPaint()
{
    BufferedPaint paint(*this, CSize(ScreenLayout::width, ScreenLayout::height));
    DrawScreen(paint.Context(), m_state, ScreenUse::display);
    m_overlays.DrawAll(paint.Context());
}

void MainWindow::PaintMovie(CDC& dc)
{
    DrawScreen(dc, m_state, ScreenUse::movie);
    m_overlays.DrawRecorded(dc);
}

bool MainWindow::SavePicture(const std::wstring& path)
{
    UpdateWindow(); // the picture shows the latest change too
    return CaptureToPng(GetSafeHwnd(), path);
}

void MainWindow::TogglePanel()
{
    m_panel.ShowWindow(m_panel.IsWindowVisible() ? SW_HIDE : SW_SHOWNOACTIVATE);
}

bool MainWindow::Ask(const CString& question)
{
    return ::MessageBoxW(GetSafeHwnd(), question, GetStr("exam.title"),
                         MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

void MainWindow::TogglePanelLock()
{
    m_panel.SetLocked(!m_panel.IsLocked());
    m_state.SetStatus(GetStr(m_panel.IsLocked() ? "exam.panel.locked" : "exam.panel.unlocked"));
}

void MainWindow::ResetPanel()
{
    m_panel.Reset();
    m_state.SetStatus(GetStr("exam.panel.reset"));
}

void MainWindow::OnKeyDown(UINT key, UINT, UINT flags)
{
    m_commands.Press({key, IsHeld(VK_CONTROL),
                      IsHeld(VK_SHIFT) || IsHeld(VK_MENU) || IsHeld(VK_LWIN) || IsHeld(VK_RWIN),
                      (flags & KF_REPEAT) != 0});
}

void MainWindow::OnTimer(UINT_PTR)
{
    m_exam.Advance();
}

void MainWindow::OnLButtonDown(UINT flags, CPoint point)
{
    m_state.Tools().Press(flags, point);
}

void MainWindow::OnLButtonUp(UINT flags, CPoint point)
{
    MouseCapture::HandleMouse(WM_LBUTTONUP, flags, point);
}

void MainWindow::OnMouseMove(UINT flags, CPoint point)
{
    MouseCapture::HandleMouse(WM_MOUSEMOVE, flags, point);
}

void MainWindow::OnClose()
{
    m_exam.Leave();
}

// The session waits for no question, and the process may be ended soon after, so what is open is
// finished now.
LRESULT MainWindow::OnQueryEndSession(WPARAM, LPARAM)
{
    m_exam.EndRecording();
    return TRUE;
}

LRESULT MainWindow::OnEndSession(WPARAM isEnding, LPARAM)
{
    if (isEnding) m_exam.EndRecording();
    return 0;
}

void MainWindow::OnDestroy()
{
    m_exam.EndRecording();
    BalloonMessageService::Destroy();
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
