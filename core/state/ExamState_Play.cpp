// The frame on display: steps, speed and loop.
#include "state/ExamState.h"

#include "base/StateChanges.h"

#include <algorithm>

namespace exam {

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

int ExamState::FramesBehind() const
{
    if (!HasSource() || !Source().IsLive()) return 0;
    return std::max(0, Source().FirstFrame() + Source().Frames() - 1 - m_frame);
}

} // namespace exam
