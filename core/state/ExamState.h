#pragma once

#include "base/ScreenLayout.h"
#include "image/FrameSource.h"
#include "image/ImageView.h"
#include "measure/BaselineHandle.h"
#include "measure/MarkBoard.h"
#include "measure/SpectralStrip.h"
#include "study/Study.h"

#include <phantom/PhantomSettings.h>

#include <atlstr.h>

#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace exam {

/// A recording that is being made.
struct RunningRecording
{
    bool isMovie = false;
    int frames = 0;
    std::int64_t seconds = 0;                     ///< whole ones since it began
    std::optional<std::int64_t> bytesLeft = {};   ///< that it can still take; none: not known
    std::optional<std::int64_t> secondsLeft = {}; ///< at its rate so far; none: not known
};

/// The control panel is shown in one of these ways.
struct PanelState
{
    bool isShown = true;
    bool isFloating = false;
    bool isLocked = true;
};

/// The state of the examination. It knows no window: windows paint it, commands change it, and the
/// state-change signal tells of each change.
class ExamState
{
public:
    /// The screen has the fixed form of a console at first.
    ExamState();
    ExamState(const ExamState&) = delete;
    ExamState& operator=(const ExamState&) = delete;

    /// Adds a recording of the images store; the first one is put on display. The result is empty,
    /// or one sentence that says what is wrong.
    std::wstring AddRecording(const std::wstring& name);

    /// Gives the screen another layout; `corner` is the client area's corner on the screen.
    void SetLayout(const ScreenLayout& layout, CPoint corner);
    const ScreenLayout& Layout() const { return m_layout; }
    /// Puts another study, which is kept in `folder`, in the place of this one. Its recordings
    /// that are not there yet are added from that folder or the images store. The result is empty,
    /// or one sentence that names the first one that cannot be.
    std::wstring OpenStudy(StudyContent content, const std::wstring& folder);
    const std::wstring& StudyFolder() const { return m_studyFolder; }
    /// The file that an object of the study has for its image: in the study's folder, or else in
    /// the images store. It may be missing.
    std::wstring ImagePath(const std::wstring& image) const;

    /// Change the study by its own operations; false when there is nothing to do. The file of a
    /// probe's frame goes and comes back with the frame.
    bool Undo();
    bool Redo();
    bool RemoveSelected();
    /// Removes all marks on display, in one step.
    void RemoveShown();

    /// Closes a recording that was opened, so that its file can be removed. The first one takes its
    /// place on display.
    void CloseImage(const std::wstring& name);
    /// Removes the object of an image, with its marks, from the study.
    void RemoveImage(const std::wstring& name);
    /// The name of the image on display; empty for a probe.
    std::wstring ImageName() const { return HasSource() ? m_sources[m_current].name : L""; }

    /// Adds a probe on a simulated patient. It runs when it is put on display.
    void AddSimulation(simulation::ProbeShape probe);

    /// The recording or probe, and the frame, on display. Source() needs one.
    bool HasSource() const { return !m_sources.empty(); }
    const FrameSource& Source() const { return *m_sources[m_current].source; }
    std::size_t Current() const { return m_current; }
    /// The recording that objects of a study have for their image; null when it is not there.
    const FrameSource* SourceNamed(const std::wstring& image) const;
    int Frame() const { return m_frame; }
    /// The frame's place among those that there are, from 1 on.
    int FramePosition() const { return m_frame - Source().FirstFrame() + 1; }

    const ImageView& View() const { return m_view; }
    MarkBoard& Marks() { return m_marks; }
    const MarkBoard& Marks() const { return m_marks; }
    Study& Document() { return m_study; }
    const Study& Document() const { return m_study; }
    const StudyContent& Content() const { return m_study.Content(); }
    const SpectralStrip& Strip() const { return m_strip; }

    /// Put another recording, from its first frame on, a probe, or another frame on display. A
    /// probe runs then, and a recording after it stands still. A frame that cannot be read leaves
    /// the image as it was, and the status line says so.
    void SelectImage(std::size_t index);
    void NextImage();
    /// Moves by a number of frames, backwards when it is negative, and wraps at both ends.
    void StepFrames(int frames);
    bool IsFrameReadable() const { return m_readable; }
    /// The number of frames that a running probe has made since the one on display.
    int FramesBehind() const;

    /// Shows the frame with this place, from 1 on.
    void ShowPosition(int position);
    /// Shows the next frame of a loop that plays.
    void PlayOn();
    /// Changes the speed of play by factors of 2; the result stays between a quarter and 4 times.
    void ChangeSpeed(int steps);
    double Speed() const { return std::ldexp(1, m_speed); }

    /// Let a loop that plays begin or end with the frame on display, or take in all frames again.
    void BeginLoop();
    void EndLoop();
    void ClearLoop();
    /// The places of the loop's first and last frame, from 1 on.
    std::pair<int, int> Loop() const;

    /// Opens a recording by its path, or by its name in the study when it is open already, and puts
    /// it on display. The result is empty, or one sentence that names the file.
    std::wstring OpenImage(const std::wstring& path);

    /// Changes the image's gain by decibels; the sum stays within -20 and 20.
    void ChangeGain(int decibels);
    int Gain() const { return m_gain; }

    /// Change the image's grey levels, or show all of them again.
    void MoveGreyWindow(int byLevel, int byWidth);
    void ResetGreyWindow();
    const GreyWindow& Levels() const { return m_window; }

    /// Changes the shown depth by tenths of the recording's; the result stays between half and all
    /// of it.
    void ChangeDepth(int tenths);
    int DepthMillimetres() const;

    /// Change the part of the frame that is shown, as ImageView says.
    void ZoomAt(double factor, CPoint pixel);
    void Pan(CSize pixels);
    void ShowWhole();
    void ShowSamples();

    /// Frames run at their own rate unless they are frozen.
    void SetFrozen(bool frozen);
    bool IsFrozen() const { return m_frozen; }

    void ShowStrip(bool shown);
    bool IsStripShown() const { return m_stripShown; }
    /// True while the strip shows the spectra of a flow.
    bool IsFlowShown() const { return m_stripShown && m_strip.HasFlow(); }

    /// Mirror the image, as the probe has its sides, and turn it by degrees, clockwise: by as many
    /// whole quarters as hold them.
    void FlipSides();
    void FlipDepth();
    void Rotate(int degrees);
    const Orientation& ImageOrientation() const { return m_orientation; }

    /// Lets the frames stand still, and the next press begin a mark of a kind.
    void ChooseMark(MarkKind kind, const std::wstring& text = {});

    /// Passes a press of the mouse on, in client coordinates: to the strip's baseline, and then to
    /// the marks.
    void Press(UINT flags, CPoint at);

    /// Moves the strip's baseline by pixels, upwards when positive.
    void MoveBaseline(int pixels);

    /// Chooses trackball or pointer style, and lets go of a point that is held.
    void SetInput(InputType input);

    /// Switches to the other language of the string tables.
    void NextLanguage();

    void SetPanel(const PanelState& panel) { m_panel = panel; }
    const PanelState& Panel() const { return m_panel; }

    /// Sets the sentence of the status line.
    void SetStatus(const CString& sentence);
    const CString& Status() const { return m_status; }

    void SetRecording(const std::optional<RunningRecording>& recording);
    const std::optional<RunningRecording>& Recording() const { return m_recording; }

private:
    static constexpr int fullDepth = 10;

    // A recording or probe, and its name in studies: its file's, or nothing for a probe, of which
    // only single frames are kept.
    struct Entry
    {
        std::unique_ptr<FrameSource> source;
        std::wstring name;
        std::wstring path; // its file
    };

    // The frame of a probe that the study keeps: the name of its file in the study's folder, and
    // the bytes of that file while undo has taken it away.
    struct KeptFrame
    {
        std::wstring name;
        std::string bytes = {};
    };

    void FitImage();
    void Orient(const Orientation& orientation);
    void SetGreyWindow(const GreyWindow& window);
    void ShowAgain();
    void PlaceStrip();
    void ShowFrame();
    std::wstring AddOpenFile(const std::wstring& path, const std::wstring& name);
    std::wstring AddFile(const std::wstring& path, const std::wstring& name);
    void OpenChanged(Entry& entry);
    std::wstring AddImageOf(const StudyObject& object);
    std::wstring NameInStudy(const std::wstring& path) const;
    void ShowStudy();
    StudyFrame FindFrame() const;
    StudyFrame TakeUpFrame();
    bool KeepLiveFrame();
    void FollowKeptFrames();
    void Close(std::size_t index, std::size_t next);
    bool TakeAway(KeptFrame& kept, std::size_t probe);
    bool BringBack(KeptFrame& kept);

    ScreenLayout m_layout = ConsoleLayout();
    std::vector<Entry> m_sources;
    std::size_t m_current = 0;
    int m_frame = 0;
    ImageView m_view;
    std::optional<std::size_t> m_fitted; // the source that the view is fitted to
    bool m_readable = true;
    int m_speed = 0; // the power of 2
    int m_loopFirst = 0;
    std::optional<int> m_loopLast; // none: the last one that there is
    SpectralStrip m_strip;
    BaselineHandle m_baseline{m_strip};
    Study m_study;
    std::wstring m_studyFolder;
    std::map<std::pair<std::size_t, int>, KeptFrame> m_kept; // by the probe and its frame
    int m_lastKept = 0; // the number of the last one; undone ones come back under theirs
    MarkBoard m_marks;
    int m_gain = 0; // decibels
    GreyWindow m_window;
    Orientation m_orientation;
    int m_depth = fullDepth; // tenths of the recording's depth
    bool m_frozen = true;
    bool m_stripShown = false;
    PanelState m_panel;
    CString m_status;
    std::optional<RunningRecording> m_recording;
};

} // namespace exam
