// MainWindow: the user's controls besides recordings and tools.
#include "window/MainWindow.h"

#include "base/StateChanges.h"

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

constexpr int mostGain = 20;  // decibels
constexpr int leastDepth = 5; // tenths of the recording's depth

} // namespace

void MainWindow::SetFrozen(bool frozen)
{
    m_frozen = frozen;
    RunTimer();
    TellChange(stateDisplayChanged);
}

void MainWindow::ChangeGain(int decibels)
{
    m_gain = std::clamp(m_gain + decibels, -mostGain, mostGain);
    m_view.SetGain(m_gain);
    TellChange(stateImageChanged);
}

void MainWindow::ChangeDepth(int tenths)
{
    const int depth = std::clamp(m_depth + tenths, leastDepth, fullDepth);
    if (depth == m_depth) return;
    m_depth = depth;
    m_shown = nullptr; // makes the view fit the image again
    TellChange(stateImageChanged);
}

int MainWindow::DepthMillimetres() const
{
    return m_session.IsEmpty()
               ? 0
               : static_cast<int>(std::lround(m_view.Parameters().DepthMillimetres()));
}

void MainWindow::NextImage()
{
    m_session.NextImage();
    TellChange(stateImageChanged);
}

void MainWindow::SelectImage(std::size_t index)
{
    m_session.Select(index);
    TellChange(stateImageChanged);
}

void MainWindow::StepFrames(int frames)
{
    m_session.Step(frames);
    TellChange(stateImageChanged);
}

void MainWindow::TogglePanel()
{
    if (m_panel) m_panel->ShowWindow(m_panel->IsWindowVisible() ? SW_HIDE : SW_SHOWNOACTIVATE);
}

} // namespace exam
