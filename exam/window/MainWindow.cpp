#include "window/MainWindow.h"

#include "base/Painting.h"
#include "base/Resources.h"
#include "base/StateChanges.h"
#include "screen/Screen.h"
#include "screen/Timeline.h"
#include "window/Capture.h"
#include "window/Menus.h"
#include "window/WindowPlace.h"

#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

#include <cmath>

namespace exam {

namespace {

constexpr UINT_PTR playTimer = 1;

// The key that means the same as one of the number pad.
UINT WithoutNumberPad(UINT key)
{
    if (key == VK_ADD) return VK_OEM_PLUS;
    if (key == VK_SUBTRACT) return VK_OEM_MINUS;
    if (key >= VK_NUMPAD0 && key <= VK_NUMPAD9) return key - VK_NUMPAD0 + '0';
    return key;
}

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
    ON_WM_MBUTTONDOWN()
    ON_WM_MBUTTONUP()
    ON_WM_MOUSEWHEEL()
    ON_WM_CAPTURECHANGED()
    ON_MESSAGE(WM_INITMENUPOPUP, OnInitMenuPopup)
    ON_MESSAGE(WM_CONTEXTMENU, OnContextMenu)
    ON_WM_TIMER()
    ON_WM_SIZE()
    ON_WM_MOVE()
    ON_MESSAGE(WM_GETMINMAXINFO, OnMinMaxInfo)
    ON_MESSAGE(WM_DPICHANGED, OnDpiChanged)
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

bool MainWindow::Open(WindowForm form)
{
    m_form = form;
    m_panelForm = form == WindowForm::console ? PanelForm::below : PanelForm::docked;
    if (!Create(form)) return false;
    ShowMenuBar();
    m_dpi = DpiOf(GetSafeHwnd());
    Arrange();
    if (!m_overlays.Open(*this)) return false;
    BalloonMessageService::Create();
    const bool isMaximised = form == WindowForm::window && ReadWindowPlace().isMaximised;
    ShowWindow(isMaximised ? SW_SHOWMAXIMIZED : SW_SHOW);
    return true;
}

bool MainWindow::Create(WindowForm form)
{
    const bool isFixed = form == WindowForm::console;
    const CString windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW), nullptr,
                            LoadIcon(GetModuleHandle(nullptr), MAKEINTRESOURCE(IDI_EXAM)));
    const CRect area =
        isFixed ? CRect(CPoint(0, 0), ConsoleLayout().client) : ReadWindowPlace().area;
    return CreateEx(0, windowClass, GetStr("exam.title"),
                    isFixed ? WS_POPUP | WS_SYSMENU : WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, area,
                    nullptr, 0);
}

bool MainWindow::OpenPanel()
{
    m_panel.Reload();
    const CRect area = m_panelForm == PanelForm::docked ? m_state.Layout().controlPanel
                                                        : ControlPanel::AreaBelow(*this);
    return m_panel.Open(*this, m_panelForm, area);
}

// Shows the menus in the current language. A console has none.
void MainWindow::ShowMenuBar()
{
    if (m_form == WindowForm::console) return;
    MenuHandle bar = MakeMenuBar();
    const HMENU before = ::GetMenu(GetSafeHwnd());
    if (!::SetMenu(GetSafeHwnd(), bar.get())) return;
    bar.release(); // it is the window's now
    if (before) DestroyMenu(before);
}

// Lays the window out anew, if anything that the layout follows from has changed.
void MainWindow::Arrange()
{
    CRect client;
    GetClientRect(&client);
    if (client.IsRectEmpty()) return; // it is minimised
    const bool hasPanel = m_panelForm == PanelForm::docked;
    m_state.SetLayout(m_form == WindowForm::console
                          ? ConsoleLayout()
                          : WindowLayout({client.Size(), m_dpi, hasPanel, m_state.IsStripShown()}),
                      OnScreen({0, 0}));
}

// Puts the windows in this one into their places.
void MainWindow::PlaceParts()
{
    m_placed = m_state.Layout();
    m_overlays.Place();
    if (m_panelForm == PanelForm::docked && m_panel.GetSafeHwnd())
        m_panel.MoveWindow(&m_placed.controlPanel);
}

CPoint MainWindow::OnScreen(CPoint point) const
{
    ClientToScreen(&point);
    return point;
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
    if (type == stateLanguageChanged) {
        SetWindowText(GetStr("exam.title"));
        ShowMenuBar();
    }
    Arrange();
    if (m_placed != m_state.Layout()) PlaceParts();
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
    BufferedPaint paint(*this, m_state.Layout().client);
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
    m_commands.Press({WithoutNumberPad(key), IsHeld(VK_CONTROL),
                      IsHeld(VK_SHIFT) || IsHeld(VK_MENU) || IsHeld(VK_LWIN) || IsHeld(VK_RWIN),
                      (flags & KF_REPEAT) != 0});
}

BOOL MainWindow::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const Command* const command = lParam == 0 ? CommandOfItem(LOWORD(wParam)) : nullptr;
    if (!command) return CWnd::OnCommand(wParam, lParam);
    m_commands.CarryOut(*command);
    return TRUE;
}

LRESULT MainWindow::OnInitMenuPopup(WPARAM menu, LPARAM)
{
    ShowStates(reinterpret_cast<HMENU>(menu), m_state);
    return 0;
}

// The place is that of the pointer on the screen, or -1 for the key of context menus.
LRESULT MainWindow::OnContextMenu(WPARAM, LPARAM place)
{
    const CRect& image = m_state.Layout().image;
    CPoint point(place);
    if (place == -1) point = OnScreen(image.CenterPoint());
    CPoint inClient = point;
    ScreenToClient(&inClient);
    const MenuHandle menu = image.PtInRect(inClient) ? MakeContextMenu({Menu::measure, Menu::image})
                                                     : MakeContextMenu({Menu::view});
    TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, 0, GetSafeHwnd(),
                   nullptr);
    return 0;
}

void MainWindow::OnTimer(UINT_PTR)
{
    m_exam.Advance();
}

void MainWindow::OnLButtonDown(UINT flags, CPoint point)
{
    if (m_state.Layout().timeline.PtInRect(point)) return Take(Drag::timeline, point);
    m_state.Tools().Press(flags, OnScreen(point));
    // A press that no tool takes moves the image.
    if (!MouseCapture::IsLocked() && m_state.View().Zoom() != 1) Take(Drag::image, point);
}

void MainWindow::OnMButtonDown(UINT, CPoint point)
{
    Take(Drag::image, point);
}

void MainWindow::OnMButtonUp(UINT, CPoint)
{
    if (m_drag == Drag::image) ReleaseCapture();
}

void MainWindow::Take(Drag drag, CPoint point)
{
    if (!m_state.HasRecording()) return;
    if (drag == Drag::image && !m_state.Layout().image.PtInRect(point)) return;
    m_drag = drag;
    m_dragged = point;
    SetCapture();
    if (drag == Drag::timeline) Seek(point);
}

void MainWindow::DragTo(CPoint point)
{
    if (m_drag == Drag::timeline) return Seek(point);
    m_state.Pan(point - m_dragged);
    m_dragged = point;
}

void MainWindow::OnCaptureChanged(CWnd*)
{
    m_drag = Drag::nothing;
}

// The wheel's position is one of the screen.
BOOL MainWindow::OnMouseWheel(UINT, short delta, CPoint point)
{
    constexpr double zoomOfNotch = 1.25;
    ScreenToClient(&point);
    const CRect& image = m_state.Layout().image;
    if (!m_state.HasRecording() || !image.PtInRect(point)) return FALSE;
    m_state.ZoomAt(std::pow(zoomOfNotch, 1.0 * delta / WHEEL_DELTA),
                   CPoint(point - image.TopLeft()));
    return TRUE;
}

void MainWindow::Seek(CPoint point)
{
    m_state.SetFrozen(true);
    m_state.StepFrames(FrameAt(m_state, point.x) - m_state.Frame());
}

void MainWindow::OnLButtonUp(UINT flags, CPoint point)
{
    if (m_drag != Drag::nothing) ReleaseCapture();
    MouseCapture::HandleMouse(WM_LBUTTONUP, flags, OnScreen(point));
}

void MainWindow::OnMouseMove(UINT flags, CPoint point)
{
    if (m_drag != Drag::nothing) return DragTo(point);
    MouseCapture::HandleMouse(WM_MOUSEMOVE, flags, OnScreen(point));
}

void MainWindow::OnSize(UINT, int, int)
{
    Arrange();
}

void MainWindow::OnMove(int, int)
{
    Arrange(); // tools work in pixels of the screen
}

LRESULT MainWindow::OnMinMaxInfo(WPARAM, LPARAM info)
{
    if (m_form == WindowForm::window)
        reinterpret_cast<MINMAXINFO*>(info)->ptMinTrackSize = {leastWindow.cx, leastWindow.cy};
    return 0;
}

// The platform proposes a place of the same size to the eye.
LRESULT MainWindow::OnDpiChanged(WPARAM dpi, LPARAM place)
{
    m_dpi = LOWORD(dpi);
    if (m_form == WindowForm::window) MoveWindow(reinterpret_cast<const RECT*>(place));
    Arrange();
    return 0;
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
    if (m_form == WindowForm::window) WriteWindowPlace(GetSafeHwnd());
    BalloonMessageService::Destroy();
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
