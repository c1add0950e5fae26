#include "window/MainWindow.h"

#include "base/BufferedPaint.h"
#include "base/Resources.h"
#include "base/ScreenLayout.h"
#include "base/StateChanges.h"
#include "screen/Screen.h"

#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>

namespace exam {

namespace {

constexpr UINT_PTR playTimer = 1;
constexpr double shortestInterval = 10; // milliseconds

// Tenths of a degree.
constexpr int rotationStep = 150;
constexpr int fullTurn = 3600;

} // namespace

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_TIMER()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

MainWindow::MainWindow(Session& session)
    : m_session(session), m_tools(m_view, ScreenLayout::Image()),
      m_flow(ScreenLayout::Strip().Size()), m_content{m_session, m_view, m_tools, m_flow},
      m_recorder(m_content,
                 [this](const FinishedRecording& recording) { RecordingFinished(recording); }),
      m_overlays(m_session, m_view, ToolButtons())
{
    m_content.overlays = &m_overlays;
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

void MainWindow::SetRecordingFolder(const std::wstring& folder)
{
    m_recorder.SetFolder(folder);
    m_service.SetFolder(folder);
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
    zel_string_convert::SetLanguage(zel_string_convert::CurrentLanguage() == L"en" ? L"de" : L"en");
    TellChange(stateLanguageChanged);
}

void MainWindow::OnStateChange(StateChangeType type, unsigned int, long)
{
    ++m_changesSeen;
    if (type == stateImageChanged && !m_session.IsEmpty()) ShowFrame();
    if (!GetSafeHwnd()) return;
    if (type == stateLanguageChanged) SetWindowText(GetStr("exam.title"));
    Invalidate(FALSE);
    m_overlays.Refresh(); // the image is painted below them
}

void MainWindow::ShowFrame()
{
    const CineFile& cine = m_session.Cine();
    if (m_shown != &cine) {
        EndRecording(); // a recording holds frames of one size
        m_shown = &cine;
        m_view.SetRecording(cine, ScreenLayout::Image().Size(),
                            cine.Samples() * m_depth / fullDepth);
        m_tools.Reset();
    }
    if (!m_view.Show(cine, m_session.Frame()))
        Report(NoticeKind::warning, GetStr("exam.image.unreadable", m_session.Frame() + 1));
}

BOOL MainWindow::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything; erasing first would flicker
}

void MainWindow::OnPaint()
{
    BufferedPaint paint(*this, CSize(ScreenLayout::width, ScreenLayout::height));
    DrawScreen(paint.Context(), m_content);
}

void MainWindow::ToggleTool(ImageTool& tool)
{
    tool.Show(!tool.IsVisible());
}

void MainWindow::OnKeyDown(UINT key, UINT, UINT)
{
    switch (key) {
    case VK_SPACE: return NextImage();
    case 'F': return StepFrames(1);
    case 'L': return NextLanguage();
    case '1': return ToggleTool(m_tools.Distance());
    case '2': return ToggleTool(m_tools.Angle());
    case '3': return ToggleTool(m_tools.Region());
    case 'P':
        return m_tools.SetInput(MouseCapture::GetInput() == InputPointer ? InputTrackball
                                                                         : InputPointer);
    case VK_TAB: MouseCapture::LockNext(); return;
    case 'S': return ShowStrip(!m_content.stripShown);
    case 'R': return SetRotation((m_content.rotation + rotationStep) % fullTurn);
    case 'C': return ToggleRawRecording();
    case 'V': return ToggleMovieRecording();
    case 'K': return TogglePanel();
    case VK_ESCAPE: DestroyWindow(); return;
    default:
        if (const auto text = m_service.OnKey(*this, key)) SetStatus(*text);
        return;
    }
}

void MainWindow::ToggleRecording(CString (Recorder::*start)())
{
    if (m_recorder.IsRecording()) return EndRecording();
    m_content.status = (m_recorder.*start)();
    if (!m_recorder.IsRecording())
        RaiseNotice(NoticeKind::error, m_content.status); // why nothing is recorded
    RunTimer();
    ShowRecordingMark();
}

void MainWindow::ToggleRawRecording()
{
    if (!IsRecording()) m_recordsMovie = false;
    ToggleRecording(&Recorder::StartRaw);
}

void MainWindow::ToggleMovieRecording()
{
    if (!IsRecording()) m_recordsMovie = true;
    ToggleRecording(&Recorder::StartMovie);
}

// Frames advance by themselves while they are recorded or not frozen.
void MainWindow::RunTimer()
{
    if (m_session.IsEmpty() || (!m_recorder.IsRecording() && m_frozen)) {
        KillTimer(playTimer);
        return;
    }
    const double interval = 1000 / m_session.Cine().FramesPerSecond();
    SetTimer(playTimer, static_cast<UINT>(std::max(shortestInterval, interval)), nullptr);
}

void MainWindow::EndRecording()
{
    m_recorder.Stop();
    RunTimer();
    ShowRecordingMark();
}

void MainWindow::RecordingFinished(const FinishedRecording& recording)
{
    if (!recording.whole)
        Report(NoticeKind::error, GetStr("exam.record.damaged", recording.path.c_str()));
    else if (recording.cutShort)
        Report(NoticeKind::warning, GetStr("exam.record.broken", recording.frames));
    else
        Report(NoticeKind::finished,
               GetStr("exam.record.finished", recording.frames, recording.path.c_str()));
}

void MainWindow::Report(NoticeKind kind, const CString& sentence)
{
    m_content.status = sentence;
    RaiseNotice(kind, sentence);
}

void MainWindow::AdvanceRecording()
{
    if (!m_recorder.IsRecording()) return;
    if (!m_recorder.AddFrame()) {
        RunTimer();
        return ShowRecordingMark();
    }
    m_session.NextFrame();
    TellChange(stateImageChanged);
    ShowRecordingMark();
}

void MainWindow::ShowRecordingMark()
{
    m_content.recordedFrames.reset();
    if (m_recorder.IsRecording()) m_content.recordedFrames = m_recorder.Frames();
    CStatusRecording::setState(m_recorder.IsRecording());
    TellChange(stateDisplayChanged);
}

void MainWindow::OnTimer(UINT_PTR)
{
    if (IsRecording()) return AdvanceRecording();
    StepFrames(1);
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
    EndRecording();
    BalloonMessageService::Destroy();
    CWnd::OnDestroy();
    utilsExam::AppExiting = true;
    PostQuitMessage(0);
}

} // namespace exam
