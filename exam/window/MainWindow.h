#pragma once

#include "image/ImageView.h"
#include "image/Session.h"
#include "measure/MeasureTools.h"
#include "measure/SimulatedFlow.h"
#include "record/Recorder.h"
#include "screen/ScreenContent.h"

#include <Utils_Statics/IStateChangeConsumer.h>

#include <afxwin.h>

namespace exam {

/// The application's main window: 1024 x 768 pixels of client area at the screen's corner, as on a
/// console. It repaints when the state-change signal tells of a change, and only then.
class MainWindow : public CWnd, private IStateChangeConsumer
{
public:
    explicit MainWindow(Session& session);

    /// Creates and shows the window; false when the platform refuses.
    bool Open();

    const ImageView& View() const { return m_view; }
    MeasureTools& Tools() { return m_tools; }
    unsigned ChangesSeen() const { return m_changesSeen; }

    const CString& Status() const { return m_content.status; }
    void SetStatus(const CString& text);
    void ShowStrip(bool shown);

    /// Sets the angle of the turned outline in tenths of a degree. 0 hides it.
    void SetRotation(int angle);

    /// Sets the folder of the recordings.
    void SetRecordingFolder(const std::wstring& folder) { m_recorder.SetFolder(folder); }
    bool IsRecording() const { return m_recorder.IsRecording(); }
    int RecordedFrames() const { return m_recorder.Frames(); }

    /// Records the frame on display and shows the next one. The timer calls this during a
    /// recording.
    void AdvanceRecording();

    /// Switches to the other language of the string tables.
    void NextLanguage();

protected:
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnLButtonDown(UINT flags, CPoint point);
    void OnLButtonUp(UINT flags, CPoint point);
    void OnMouseMove(UINT flags, CPoint point);
    void OnTimer(UINT_PTR id);
    void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void ShowFrame();
    void ToggleTool(ImageTool& tool);
    void ToggleRecording(CString (Recorder::*start)());
    void EndRecording();
    void RecordingFinished(const FinishedRecording& recording);
    void ShowRecordingMark();

    Session& m_session;
    ImageView m_view;
    const CineFile* m_shown = nullptr; // the recording that the view is fitted to
    MeasureTools m_tools;
    SimulatedFlow m_flow;
    ScreenContent m_content;
    Recorder m_recorder;
    unsigned m_changesSeen = 0;
};

} // namespace exam
