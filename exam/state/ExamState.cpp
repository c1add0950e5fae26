#include "state/ExamState.h"

#include "base/ScreenLayout.h"
#include "base/StateChanges.h"

#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

constexpr int mostGain = 20;   // decibels
constexpr int leastDepth = 5;  // tenths of the recording's depth
constexpr int fullTurn = 3600; // tenths of a degree

} // namespace

ExamState::ExamState()
    : m_tools(m_view, ScreenLayout::Image()), m_flow(ScreenLayout::Strip().Size())
{
}

std::wstring ExamState::AddRecording(const std::wstring& name)
{
    std::wstring problem = m_session.Add(name);
    if (problem.empty() && m_session.Count() == 1) ShowFrame();
    return problem;
}

void ExamState::SelectImage(std::size_t index)
{
    m_session.Select(index);
    ShowFrame();
}

void ExamState::NextImage()
{
    m_session.NextImage();
    ShowFrame();
}

void ExamState::StepFrames(int frames)
{
    m_session.Step(frames);
    ShowFrame();
}

void ExamState::ShowFrame()
{
    if (m_session.IsEmpty()) return;
    if (m_fitted != m_session.Current()) FitImage();
    m_readable = m_view.Show(m_session.Cine(), m_session.Frame());
    if (!m_readable) m_status = GetStr("exam.image.unreadable", m_session.Frame() + 1);
    TellChange(stateImageChanged);
}

void ExamState::FitImage()
{
    m_fitted = m_session.Current();
    const CineFile& cine = m_session.Cine();
    m_view.SetRecording(cine, ScreenLayout::Image().Size(), cine.Samples() * m_depth / fullDepth);
    TellChange(stateFitChanged);
    m_tools.Reset();
}

void ExamState::ChangeGain(int decibels)
{
    m_gain = std::clamp(m_gain + decibels, -mostGain, mostGain);
    m_view.SetGain(m_gain);
    ShowFrame();
}

void ExamState::ChangeDepth(int tenths)
{
    const int depth = std::clamp(m_depth + tenths, leastDepth, fullDepth);
    if (depth == m_depth) return;
    m_depth = depth;
    m_fitted.reset();
    ShowFrame();
}

int ExamState::DepthMillimetres() const
{
    if (m_session.IsEmpty()) return 0;
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
