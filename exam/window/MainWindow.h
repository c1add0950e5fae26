#pragma once

#include "base/GdiPlusSession.h"
#include "image/ImageView.h"
#include "image/Session.h"
#include "measure/MeasureTools.h"
#include "measure/SimulatedFlow.h"
#include "overlay/Notices.h"
#include "overlay/Overlays.h"
#include "record/Recorder.h"
#include "screen/ScreenContent.h"
#include "service/ServiceDesk.h"

#include <Utils_Statics/IStateChangeConsumer.h>

#include <afxwin.h>

namespace exam {

/// The application's main window: 1024 x 768 pixels of client area at the screen's corner, as on a
/// console. It repaints only when the state-change signal tells of a change.
class MainWindow : public CWnd, private IStateChangeConsumer
{
public:
    explicit MainWindow(Session& session);

    /// Creates and shows the window; false when the platform refuses.
    bool Open();

    const ImageView& View() const { return m_view; }
    MeasureTools& Tools() { return m_tools; }
    const MeasureTools& Tools() const { return m_tools; }
    Overlays& OverImage() { return m_overlays; }
    unsigned ChangesSeen() const { return m_changesSeen; }

    const CString& Status() const { return m_content.status; }
    void SetStatus(const CString& text);
    void ShowStrip(bool shown);
    bool IsStripShown() const { return m_content.stripShown; }

    /// Sets the angle of the turned outline in tenths of a degree. 0 hides it.
    void SetRotation(int angle);
    int Rotation() const { return m_content.rotation; }

    /// Stops the frames, or lets them run at the rate of their recording.
    void SetFrozen(bool frozen);
    bool IsFrozen() const { return m_frozen; }

    /// Changes the image's gain by decibels; the sum stays within -20 and 20.
    void ChangeGain(int decibels);
    int Gain() const { return m_gain; }

    /// Changes the shown depth by tenths of the recording's; the result stays between half and all
    /// of it.
    void ChangeDepth(int tenths);
    int DepthMillimetres() const;

    void NextImage();
    void SelectImage(std::size_t index);
    void StepFrames(int frames);

    /// Shows or hides a measuring tool.
    void ToggleTool(ImageTool& tool);

    /// Begins a recording, or ends the current one, whatever it records.
    void ToggleRawRecording();
    void ToggleMovieRecording();
    void EndRecording();
    bool IsRecordingMovie() const { return IsRecording() && m_recordsMovie; }

    /// Sets the window that the key K shows and hides; null: none.
    void SetPanel(CWnd* panel) { m_panel = panel; }

    /// Sets the folder of the recordings, and of the archives of studies.
    void SetRecordingFolder(const std::wstring& folder);
    bool IsRecording() const { return m_recorder.IsRecording(); }
    int RecordedFrames() const { return m_recorder.Frames(); }

    /// Records the frame on display and shows the next one. The timer calls this during a
    /// recording.
    void AdvanceRecording();

    const ServiceDesk& Service() const { return m_service; }

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
    static constexpr int fullDepth = 10;

    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void ShowFrame();
    std::vector<ToolButton> ToolButtons();
    ToolButton MeasureButton(ImageTool& tool, const wchar_t* picture, const char* tipKey);
    ButtonForm RecordForm(bool isMovie) const;
    void ToggleRecording(CString (Recorder::*start)());
    void TogglePanel();
    void RunTimer();
    void RecordingFinished(const FinishedRecording& recording);
    void Report(NoticeKind kind, const CString& sentence);
    void ShowRecordingMark();

    GdiPlusSession m_gdiPlus; // runs while the buttons' pictures live
    Session& m_session;
    ImageView m_view;
    const CineFile* m_shown = nullptr; // the recording that the view is fitted to
    MeasureTools m_tools;
    SimulatedFlow m_flow;
    ScreenContent m_content;
    Recorder m_recorder;
    bool m_recordsMovie = false;
    bool m_frozen = true;
    int m_gain = 0;          // decibels
    int m_depth = fullDepth; // tenths of the recording's depth
    CWnd* m_panel = nullptr;
    ServiceDesk m_service;
    Overlays m_overlays;
    unsigned m_changesSeen = 0;
};

} // namespace exam
