#include "state/ExamState.h"

#include "base/StateChanges.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace exam {

namespace {

constexpr int mostGain = 20;   // decibels
constexpr int leastDepth = 5;  // tenths of the recording's depth
constexpr int fullTurn = 3600; // tenths of a degree

} // namespace

ExamState::ExamState() : m_tools(m_view, m_layout.image), m_flow(m_layout.strip.Size()) {}

void ExamState::SetLayout(const ScreenLayout& layout, CPoint corner)
{
    m_tools.SetArea(layout.image + corner);
    if (layout == m_layout) return;
    m_layout = layout;
    m_flow.emplace(m_layout.strip.Size());
    m_fitted.reset();
    if (HasRecording())
        ShowFrame();
    else
        TellChange(stateFitChanged);
}

std::wstring ExamState::AddRecording(const std::wstring& name)
{
    const std::wstring path = utilsExam::GetImage(name.c_str());
    CineFile cine;
    if (std::wstring problem = cine.Open(path); !problem.empty()) return path + L": " + problem;
    m_recordings.push_back(std::move(cine));
    if (m_recordings.size() == 1) ShowFrame();
    return {};
}

void ExamState::SelectImage(std::size_t index)
{
    if (index >= m_recordings.size()) return;
    if (index != m_current) m_view.ShowWhole();
    m_current = index;
    m_frame = 0;
    ShowFrame();
}

void ExamState::NextImage()
{
    if (HasRecording()) SelectImage((m_current + 1) % m_recordings.size());
}

void ExamState::StepFrames(int frames)
{
    if (!HasRecording()) return;
    const int count = Cine().Frames();
    m_frame = (m_frame + frames % count + count) % count;
    ShowFrame();
}

void ExamState::ShowFrame()
{
    if (m_fitted != m_current) FitImage();
    m_readable = m_view.Show(Cine(), m_frame);
    if (!m_readable) m_status = GetStr("exam.image.unreadable", m_frame + 1);
    m_tools.Follow({m_current, m_frame});
    TellChange(stateImageChanged);
}

void ExamState::FitImage()
{
    m_fitted = m_current;
    m_view.SetRecording(Cine(), m_layout.image.Size(), Cine().Samples() * m_depth / fullDepth);
    TellChange(stateFitChanged);
}

void ExamState::ChangeGain(int decibels)
{
    m_gain = std::clamp(m_gain + decibels, -mostGain, mostGain);
    m_view.SetGain(m_gain);
    if (HasRecording()) ShowFrame();
}

void ExamState::ChangeDepth(int tenths)
{
    const int depth = std::clamp(m_depth + tenths, leastDepth, fullDepth);
    if (depth == m_depth) return;
    m_depth = depth;
    m_fitted.reset();
    if (HasRecording()) ShowFrame();
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
    if (HasRecording()) ShowFrame();
}

int ExamState::DepthMillimetres() const
{
    if (!HasRecording()) return 0;
    return static_cast<int>(std::lround(m_view.Parameters().DepthMillimetres()));
}

void ExamState::SetFrozen(bool frozen)
{
    m_frozen = frozen;
    TellChange(stateDisplayChanged);
}

void ExamState::ShowStrip(bool shown)
{
    m_stripShown = shown;
    TellChange(stateDisplayChanged);
}

void ExamState::Rotate(int angle)
{
    m_rotation = ((m_rotation + angle) % fullTurn + fullTurn) % fullTurn;
    TellChange(stateDisplayChanged);
}

void ExamState::SetInput(InputType input)
{
    m_tools.SetInput(input);
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
