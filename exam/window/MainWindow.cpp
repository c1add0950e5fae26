#include "window/MainWindow.h"

#include "base/DarkControls.h"
#include "base/Dpi.h"
#include "base/Painting.h"
#include "base/Resources.h"
#include "base/StateChanges.h"
#include "service/FileChoice.h"
#include "window/Capture.h"
#include "window/Menus.h"

#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

constexpr UINT_PTR playTimer = 1;
constexpr UINT_PTR saveTimer = 2;
constexpr UINT saveDelay = 1000; // milliseconds after a change of the study

constexpr UINT cursorMessage = WM_APP + 60; // of ShowCursorHelper

constexpr DWORD formStyles = WS_POPUP | WS_OVERLAPPEDWINDOW;

DWORD StyleOf(WindowForm form)
{
    return form == WindowForm::console ? WS_POPUP | WS_SYSMENU : WS_OVERLAPPEDWINDOW;
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
    ON_MESSAGE(WM_NCPAINT, OnFrameChange)
    ON_MESSAGE(WM_NCACTIVATE, OnFrameChange)
    ON_MESSAGE(WM_MEASUREITEM, OnMeasureItem)
    ON_MESSAGE(WM_DRAWITEM, OnDrawItem)
    ON_MESSAGE(WM_MENUCHAR, OnMenuChar)
    ON_WM_TIMER()
    ON_WM_SIZE()
    ON_WM_MOVE()
    ON_MESSAGE(WM_GETMINMAXINFO, OnMinMaxInfo)
    ON_MESSAGE(WM_DPICHANGED, OnDpiChanged)
    ON_MESSAGE(WM_DROPFILES, OnDropFiles)
    ON_WM_CLOSE()
    ON_MESSAGE(WM_QUERYENDSESSION, OnQueryEndSession)
    ON_MESSAGE(WM_ENDSESSION, OnEndSession)
    ON_MESSAGE(cursorMessage, OnCursorWanted)
    ON_WM_DESTROY()
END_MESSAGE_MAP()

MainWindow::MainWindow(ExamState& state, const std::wstring& folder)
    : m_state(state), m_exam(state, *this, folder), m_commands(m_exam),
      m_overlays(state, ToolButtons()),
      m_panel({[this](const ActionInfo& action) { m_commands.CarryOut(action); },
               [this](const CString& sentence) { m_state.SetStatus(sentence); },
               [this] { m_commands.BroadcastAll(); },
               [this] { ChangePanel(false, m_panelPlace.isFloating); }}),
      m_images({[this] { return m_exam.StudyImages(); },
                [this](const std::wstring& name) { return m_state.SourceNamed(name); },
                [this](const std::wstring& name) { m_exam.ShowStudyImage(name); },
                [this](const std::wstring& name) { return m_exam.RemoveStudyImage(name); }})
{
}

bool MainWindow::Open(WindowForm form)
{
    m_form = form;
    if (form == WindowForm::window) m_panelPlace = ReadPanelPlace();
    if (!Create(form)) return false;
    m_dpi = DpiOf(GetSafeHwnd());
    ShowMenuBar();
    Arrange();
    if (!m_overlays.Open(*this)) return false;
    BalloonMessageService::Create();
    DragAcceptFiles(GetSafeHwnd(), TRUE);
    const bool isMaximised = form == WindowForm::window && ReadWindowPlace().isMaximised;
    ShowWindow(isMaximised ? SW_SHOWMAXIMIZED : SW_SHOW);
    return true;
}

bool MainWindow::Create(WindowForm form)
{
    const CString windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW), nullptr,
                            LoadIcon(GetModuleHandle(nullptr), MAKEINTRESOURCE(IDI_EXAM)));
    const CRect area = form == WindowForm::console ? CRect(CPoint(0, 0), ConsoleLayout().client)
                                                   : ReadWindowPlace().area;
    if (!CreateEx(0, windowClass, GetStr("exam.title"), StyleOf(form) | WS_CLIPCHILDREN, area,
                  nullptr, 0))
        return false;
    DarkenFrame(GetSafeHwnd());
    return true;
}

void MainWindow::TakeForm(WindowForm form, const CRect& area)
{
    m_form = form;
    m_dpi = DpiOf(GetSafeHwnd());
    ModifyStyle(formStyles, StyleOf(form));
    ShowMenuBar();
    ::SetWindowPos(GetSafeHwnd(), nullptr, area.left, area.top, area.Width(), area.Height(),
                   SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    m_panelPlace = {};
    ChangePanel(true, false);
}

// Shows the menus in the current language. A console has none.
void MainWindow::ShowMenuBar()
{
    MenuHandle bar = m_form == WindowForm::console ? MenuHandle() : MakeMenuBar();
    const HMENU before = ::GetMenu(GetSafeHwnd());
    if ((!bar && !before) || !::SetMenu(GetSafeHwnd(), bar.get())) return;
    bar.release(); // it is the window's now
    if (before) DestroyMenu(before);
}

// Lays the window out anew, if anything that the layout follows from has changed.
void MainWindow::Arrange()
{
    CRect client;
    GetClientRect(&client);
    if (client.IsRectEmpty()) return; // it is minimised
    const bool hasPanel = m_panelPlace.isShown && !m_panelPlace.isFloating;
    const bool isOnSide = m_state.ImageOrientation().IsOnSide();
    m_state.SetLayout(
        m_form == WindowForm::console
            ? ConsoleLayout(isOnSide)
            : WindowLayout({client.Size(), m_dpi, hasPanel, m_state.IsStripShown(), isOnSide}),
        OnScreen({0, 0}));
}

// Puts the windows in this one into their places.
void MainWindow::PlaceParts()
{
    m_placed = m_state.Layout();
    m_overlays.Place();
    if (FormOfPanel() == PanelForm::docked && m_panel.GetSafeHwnd())
        m_panel.MoveWindow(&m_placed.controlPanel);
}

std::vector<ToolButton> MainWindow::ToolButtons()
{
    std::vector<ToolButton> buttons;
    for (const Command& command : Commands()) {
        if (!command.picture) continue;
        buttons.push_back(
            {command.picture, command.text.name, [&command] { return TipOf(command); },
             [this, &command] { m_commands.CarryOut(command); },
             [this, &command] {
                 if (!IsPossible(command, m_state)) return ButtonForm::disabled;
                 return IsOn(command, m_state) ? ButtonForm::framed : ButtonForm::normal;
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
        m_keys.FollowLanguage();
        m_images.FollowLanguage();
    }
    Arrange();
    const bool isPlaced = m_placed == m_state.Layout();
    if (!isPlaced) PlaceParts();
    if (type == stateMeasurementChanged && !m_savesSoon)
        m_savesSoon = SetTimer(saveTimer, saveDelay, nullptr) != 0;
    RunTimer();
    if (isPlaced && type != stateLanguageChanged && type != stateFitChanged)
        InvalidateParts();
    else
        Invalidate(FALSE);
    m_overlays.Refresh(); // the image is painted below them
}

// Lets what may have changed be painted: the parts that follow the frame, and the bars whose texts
// are others.
void MainWindow::InvalidateParts()
{
    const ScreenLayout& layout = m_state.Layout();
    const BarTexts texts = TextsOfBars(m_state);
    if (texts.title != m_texts.title) InvalidateRect(&layout.header, FALSE);
    if (texts.status != m_texts.status) InvalidateRect(&layout.status, FALSE);
    for (const CRect& part :
         {layout.imageArea, layout.strip, layout.panel, layout.timeline, layout.recordingMark})
        if (!part.IsRectEmpty()) InvalidateRect(&part, FALSE);
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
    BufferedPaint paint(*this);
    m_texts = TextsOfBars(m_state);
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

// No tool confines the cursor while a dialog or a menu needs it: the point in hand is put down.
LRESULT MainWindow::OnCursorWanted(WPARAM isWanted, LPARAM)
{
    if (isWanted) MouseCapture::Unlock();
    return 0;
}

LRESULT MainWindow::OnDropFiles(WPARAM dropped, LPARAM)
{
    for (const std::wstring& path : TakeDropped(reinterpret_cast<HDROP>(dropped)))
        m_exam.OpenImage(path);
    return 0;
}

void MainWindow::OnTimer(UINT_PTR id)
{
    if (id == playTimer) return m_exam.Play();
    KillTimer(saveTimer);
    m_savesSoon = false;
    m_exam.SaveChanges();
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
    // It may be larger than this screen, to be looked at as it is on others.
    reinterpret_cast<MINMAXINFO*>(info)->ptMaxTrackSize = {SHRT_MAX, SHRT_MAX};
    return 0;
}

// The platform proposes a place of the same size to the eye.
LRESULT MainWindow::OnDpiChanged(WPARAM dpi, LPARAM place)
{
    m_dpi = LOWORD(dpi);
    ShowMenuBar(); // its items are measured when it is made
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
    m_exam.SaveChanges();
    return TRUE;
}

LRESULT MainWindow::OnEndSession(WPARAM isEnding, LPARAM)
{
    if (isEnding) m_exam.EndSession();
    return 0;
}

void MainWindow::OnDestroy()
{
    m_exam.EndRecording();
    if (m_form == WindowForm::window) {
        KeepPanelPlace();
        WriteWindowPlace(GetSafeHwnd());
        WritePanelPlace(m_panelPlace);
    }
    BalloonMessageService::Destroy();
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
