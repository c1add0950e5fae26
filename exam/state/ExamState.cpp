#include "state/ExamState.h"

#include "base/NumberedFiles.h"
#include "base/StateChanges.h"
#include "image/CineFile.h"
#include "image/LiveProbe.h"

#include <base/Folders.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

namespace exam {

namespace {

constexpr int mostGain = 20;   // decibels
constexpr int leastDepth = 5;  // tenths of the recording's depth
constexpr int fullTurn = 3600; // tenths of a degree

} // namespace

ExamState::ExamState()
    : m_marks(m_study, m_view, m_strip, m_layout.image, [this] { return TakeUpFrame(); })
{
}

void ExamState::SetLayout(const ScreenLayout& layout, CPoint corner)
{
    m_marks.SetArea(layout.image, corner);
    m_baseline.SetOrigin(corner);
    if (layout == m_layout) return;
    m_layout = layout;
    PlaceStrip();
    m_fitted.reset();
    if (HasSource())
        ShowFrame();
    else
        TellChange(stateFitChanged);
}

std::wstring ExamState::AddRecording(const std::wstring& name)
{
    return AddFile(std::wstring(utilsExam::GetImage(name.c_str())), name);
}

// Adds a recording whose objects in a study have this name.
std::wstring ExamState::AddFile(const std::wstring& path, const std::wstring& name)
{
    auto cine = std::make_unique<CineFile>();
    if (std::wstring problem = cine->Open(path); !problem.empty()) return path + L": " + problem;
    m_sources.push_back({std::move(cine), name});
    if (m_sources.size() == 1) ShowFrame();
    return {};
}

void ExamState::AddSimulation(simulation::ProbeShape probe)
{
    m_sources.push_back({std::make_unique<LiveProbe>(probe), {}});
}

std::wstring ExamState::OpenStudy(StudyContent content, const std::wstring& folder)
{
    MouseCapture::Unlock();
    m_study.Open(std::move(content));
    m_studyFolder = folder;
    m_kept.clear();
    std::wstring problem;
    for (const auto& object : Content().objects) {
        std::wstring own = AddImageOf(*object);
        if (problem.empty()) problem = std::move(own);
    }
    ShowStudy();
    return problem;
}

std::wstring ExamState::AddImageOf(const StudyObject& object)
{
    if (object.image.empty() || SourceNamed(object.image)) return {};
    const std::filesystem::path inStudy = std::filesystem::path(m_studyFolder) / object.image;
    if (AddFile(inStudy.wstring(), object.image).empty()) return {};
    return AddRecording(object.image);
}

const FrameSource* ExamState::SourceNamed(const std::wstring& image) const
{
    const auto found = std::ranges::find(m_sources, image, &Entry::name);
    return found == m_sources.end() || image.empty() ? nullptr : found->source.get();
}

// Shows the marks that the study has now for the frame on display.
void ExamState::ShowStudy()
{
    m_marks.Follow(FindFrame());
    m_marks.Refresh();
}

bool ExamState::Undo()
{
    MouseCapture::Unlock();
    const bool done = m_study.Undo();
    ShowStudy();
    return done;
}

bool ExamState::Redo()
{
    MouseCapture::Unlock();
    const bool done = m_study.Redo();
    ShowStudy();
    return done;
}

bool ExamState::RemoveSelected()
{
    m_study.EndGesture();
    const bool done = m_study.RemoveMark(m_marks.Selected());
    ShowStudy();
    return done;
}

void ExamState::RemoveShown()
{
    m_marks.Cancel();
    m_study.BeginGesture();
    for (const int number : m_marks.Shown())
        m_study.RemoveMark(number);
    m_study.EndGesture();
    ShowStudy();
}

// The frame on display as the study names it; without an id when the study does not know it.
StudyFrame ExamState::FindFrame() const
{
    if (!HasSource()) return {};
    std::wstring name = m_sources[m_current].name;
    if (const auto kept = m_kept.find({m_current, m_frame}); kept != m_kept.end())
        name = kept->second;
    const int frame = Source().IsLive() ? 0 : m_frame; // a live frame is kept as one of its own
    for (const auto& object : Content().objects)
        if (!name.empty() && object->image == name) return {object->id, frame};
    return {};
}

StudyFrame ExamState::TakeUpFrame()
{
    if (!HasSource()) return {};
    if (StudyFrame found = FindFrame(); !found.object.empty()) return found;
    const std::pair key(m_current, m_frame);
    if (Source().IsLive() && !m_kept.contains(key) && !KeepLiveFrame()) {
        SetStatus(GetStr("exam.measure.unkept", m_studyFolder.c_str()));
        return {};
    }
    StudyObject object;
    object.image = Source().IsLive() ? m_kept[key] : m_sources[m_current].name;
    const CineDescription& cine = Source().Description();
    object.acquisition = {cine.stream, cine.steerAngle, cine.apexAngle};
    m_study.AddObject(std::move(object));
    return FindFrame();
}

// Writes the frame on display, which a probe will have no more, into the study's folder, and adds
// it to the recordings.
bool ExamState::KeepLiveFrame()
{
    const std::wstring path = FindNumbered(m_studyFolder, L"simulated-%03d.cine").next;
    base::MakeFolders(m_studyFolder);
    if (!WriteFrame(Source(), m_frame, path)) return false;
    const std::wstring name = std::filesystem::path(path).filename().wstring();
    m_kept[{m_current, m_frame}] = name;
    return AddFile(path, name).empty();
}

void ExamState::SelectImage(std::size_t index)
{
    if (index >= m_sources.size()) return;
    if (index != m_current) m_view.ShowWhole();
    const bool wasLive = Source().IsLive();
    m_sources[m_current].source->Run(false);
    m_current = index;
    const FrameSource& source = Source();
    m_frame = source.IsLive() ? source.FirstFrame() + source.Frames() - 1 : 0;
    m_loopFirst = 0;
    m_loopLast.reset();
    ShowFrame();
    if (wasLive || source.IsLive()) SetFrozen(!source.IsLive());
}

void ExamState::NextImage()
{
    if (HasSource()) SelectImage((m_current + 1) % m_sources.size());
}

void ExamState::StepFrames(int frames)
{
    const int count = HasSource() ? Source().Frames() : 0;
    if (count == 0) return;
    const int first = Source().FirstFrame();
    m_frame = first + ((m_frame - first + frames) % count + count) % count;
    ShowFrame();
}

void ExamState::ShowPosition(int position)
{
    if (HasSource()) StepFrames(position - FramePosition());
}

void ExamState::PlayOn()
{
    if (!HasSource() || Source().Frames() == 0) return;
    const auto [first, last] = Loop();
    const int next = FramePosition() + 1;
    ShowPosition(next > last || next < first ? first : next);
}

void ExamState::ChangeSpeed(int steps)
{
    constexpr int most = 2;
    m_speed = std::clamp(m_speed + std::clamp(steps, -2 * most, 2 * most), -most, most);
    TellChange(stateDisplayChanged);
}

void ExamState::BeginLoop()
{
    m_loopFirst = m_frame;
    if (m_loopLast && *m_loopLast < m_frame) m_loopLast.reset();
    TellChange(stateDisplayChanged);
}

void ExamState::EndLoop()
{
    m_loopLast = m_frame;
    if (m_loopFirst > m_frame) m_loopFirst = 0;
    TellChange(stateDisplayChanged);
}

void ExamState::ClearLoop()
{
    m_loopFirst = 0;
    m_loopLast.reset();
    TellChange(stateDisplayChanged);
}

std::pair<int, int> ExamState::Loop() const
{
    if (!HasSource()) return {1, 1};
    const int count = Source().Frames();
    const int offset = 1 - Source().FirstFrame();
    return {std::clamp(m_loopFirst + offset, 1, std::max(1, count)),
            std::clamp(m_loopLast.value_or(count - offset) + offset, 1, std::max(1, count))};
}

std::wstring ExamState::OpenImage(const std::wstring& path)
{
    if (!SourceNamed(path))
        if (std::wstring problem = AddFile(path, path); !problem.empty()) return problem;
    const auto found = std::ranges::find(m_sources, path, &Entry::name);
    SelectImage(static_cast<std::size_t>(found - m_sources.begin()));
    return {};
}

int ExamState::FramesBehind() const
{
    if (!HasSource() || !Source().IsLive()) return 0;
    return std::max(0, Source().FirstFrame() + Source().Frames() - 1 - m_frame);
}

void ExamState::ShowFrame()
{
    if (m_fitted != m_current) FitImage();
    const bool isThere = Source().Frames() > 0; // a probe's first frame takes a moment
    m_readable = !isThere || m_view.Show(Source(), m_frame);
    if (!m_readable) m_status = GetStr("exam.image.unreadable", FramePosition());
    if (m_stripShown) m_strip.Show(Source().Flow(m_strip.Room()));
    m_marks.Follow(FindFrame());
    TellChange(stateImageChanged);
}

void ExamState::FitImage()
{
    m_fitted = m_current;
    m_view.SetSource(Source(), m_layout.image.Size(), Source().Samples() * m_depth / fullDepth);
    TellChange(stateFitChanged);
}

void ExamState::ChangeGain(int decibels)
{
    m_gain = std::clamp(m_gain + decibels, -mostGain, mostGain);
    m_view.SetGain(m_gain);
    if (HasSource()) ShowFrame();
}

void ExamState::ChangeDepth(int tenths)
{
    const int depth = std::clamp(m_depth + tenths, leastDepth, fullDepth);
    if (depth == m_depth) return;
    m_depth = depth;
    m_fitted.reset();
    if (HasSource()) ShowFrame();
}

void ExamState::ZoomAt(double factor, CPoint pixel)
{
    m_view.ZoomAt(factor, pixel);
    ShowAgain();
}

void ExamState::Pan(CSize pixels)
{
    m_view.Pan(pixels);
    ShowAgain();
}

void ExamState::ShowWhole()
{
    m_view.ShowWhole();
    ShowAgain();
}

void ExamState::ShowSamples()
{
    m_view.ShowSamples();
    ShowAgain();
}

void ExamState::ShowAgain()
{
    if (HasSource()) ShowFrame();
}

int ExamState::DepthMillimetres() const
{
    if (!HasSource()) return 0;
    return static_cast<int>(std::lround(m_view.Parameters().DepthMillimetres()));
}

void ExamState::SetFrozen(bool frozen)
{
    m_frozen = frozen;
    if (HasSource()) m_sources[m_current].source->Run(!frozen);
    TellChange(stateDisplayChanged);
}

void ExamState::PlaceStrip()
{
    m_strip.Place(m_stripShown ? m_layout.strip : CRect());
    if (m_stripShown && HasSource()) m_strip.Show(Source().Flow(m_strip.Room()));
}

void ExamState::ShowStrip(bool shown)
{
    m_stripShown = shown;
    PlaceStrip();
    m_marks.Refresh();
    TellChange(stateDisplayChanged);
}

void ExamState::Rotate(int angle)
{
    m_rotation = ((m_rotation + angle) % fullTurn + fullTurn) % fullTurn;
    TellChange(stateDisplayChanged);
}

void ExamState::ChooseMark(MarkKind kind, const std::wstring& text)
{
    if (!m_recording) SetFrozen(true);
    m_marks.Choose(kind, text);
}

void ExamState::Press(UINT flags, CPoint at)
{
    if (m_marks.Chosen() && Content().marks.size() >= Study::mostMarks)
        SetStatus(GetStr("exam.marks.full", static_cast<int>(Study::mostMarks)));
    if (m_marks.Chosen() || !m_baseline.Press(at)) m_marks.Press(flags, at);
}

void ExamState::MoveBaseline(int pixels)
{
    m_strip.MoveBaseline(pixels);
    TellChange(stateDisplayChanged);
}

void ExamState::SetInput(InputType input)
{
    m_marks.SetInput(input);
    TellChange(stateDisplayChanged);
}

void ExamState::NextLanguage()
{
    zel_string_convert::SetLanguage(zel_string_convert::CurrentLanguage() == L"en" ? L"de" : L"en");
    TellChange(stateLanguageChanged);
}

void ExamState::SetStatus(const CString& sentence)
{
    m_status = sentence;
    TellChange(stateDisplayChanged);
}

void ExamState::SetRecording(const std::optional<RunningRecording>& recording)
{
    m_recording = recording;
    TellChange(stateDisplayChanged);
}

} // namespace exam
