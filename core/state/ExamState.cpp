#include "state/ExamState.h"

#include "base/StateChanges.h"
#include "image/LiveProbe.h"
#include "image/OpenFrames.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace exam {

namespace {

constexpr int mostGain = 20;  // decibels
constexpr int leastDepth = 5; // tenths of the recording's depth

} // namespace

ExamState::ExamState()
    : m_marks(m_study, m_view, m_strip, m_layout.image, [this] { return TakeUpFrame(); })
{
    MouseCapture::SetFreeze(m_frozen);
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

// Adds a file whose objects in a study have this name, open.
std::wstring ExamState::AddOpenFile(const std::wstring& path, const std::wstring& name)
{
    OpenedFrames opened = OpenFrames(path);
    if (!opened.source) return opened.problem;
    m_sources.push_back({std::move(opened.source), name, path});
    if (m_sources.size() == 1) ShowFrame();
    return {};
}

// The same for a file that need not be shown now.
std::wstring ExamState::AddFile(const std::wstring& path, const std::wstring& name)
{
    std::wstring problem = AddOpenFile(path, name);
    if (problem.empty() && m_sources.size() > 1) m_sources.back().source->Rest();
    return problem;
}

// Opens a file anew that was changed since it was shown, if it can be shown now.
void ExamState::OpenChanged(Entry& entry)
{
    std::vector<std::uint8_t> bytes;
    if (entry.source->IsLive() || entry.source->ReadFrame(0, bytes)) return;
    OpenedFrames opened = OpenFrames(entry.path);
    if (!opened.source) return;
    entry.source = std::move(opened.source);
    m_fitted.reset();
}

void ExamState::AddSimulation(simulation::ProbeShape probe)
{
    m_sources.push_back({std::make_unique<LiveProbe>(probe), {}, {}});
}

void ExamState::SelectImage(std::size_t index)
{
    if (index >= m_sources.size()) return;
    if (index != m_current) m_view.ShowWhole();
    const bool wasLive = Source().IsLive();
    m_sources[m_current].source->Run(false);
    Source().Rest();
    m_current = index;
    OpenChanged(m_sources[index]);
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

std::wstring ExamState::OpenImage(const std::wstring& path)
{
    const auto found = std::ranges::find_if(m_sources, [&](const Entry& each) {
        return !path.empty() && (each.name == path || each.path == path);
    });
    const auto index = static_cast<std::size_t>(found - m_sources.begin());
    if (index == m_sources.size())
        if (std::wstring problem = AddOpenFile(path, NameInStudy(path)); !problem.empty())
            return problem;
    SelectImage(index);
    return {};
}

void ExamState::ShowFrame()
{
    if (m_fitted != m_current) FitImage();
    const bool isThere = Source().Frames() > 0; // a probe's first frame takes a moment
    m_readable = !isThere || m_view.Show(Source(), m_frame);
    if (!m_readable)
        m_status =
            GetStr("exam.image.unreadable", FramePosition(), m_sources[m_current].name.c_str());
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
    ShowAgain();
}

void ExamState::ChangeDepth(int tenths)
{
    const int depth = std::clamp(m_depth + tenths, leastDepth, fullDepth);
    if (depth == m_depth) return;
    m_depth = depth;
    m_fitted.reset();
    ShowAgain();
}

void ExamState::ShowAgain()
{
    if (HasSource()) ShowFrame();
}

int ExamState::DepthMillimetres() const
{
    if (!HasSource() || Source().IsPicture()) return 0;
    return static_cast<int>(std::lround(m_view.Parameters().DepthMillimetres()));
}

void ExamState::SetFrozen(bool frozen)
{
    m_frozen = frozen;
    MouseCapture::SetFreeze(frozen);
    if (HasSource()) m_sources[m_current].source->Run(!frozen);
    TellChange(stateDisplayChanged);
}

void ExamState::PlaceStrip()
{
    m_strip.Place(m_stripShown ? m_layout.strip : CRect(), m_layout.scale);
    if (m_stripShown && HasSource()) m_strip.Show(Source().Flow(m_strip.Room()));
}

void ExamState::ShowStrip(bool shown)
{
    m_stripShown = shown;
    PlaceStrip();
    m_marks.Refresh();
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
