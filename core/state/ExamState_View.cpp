// The part of the frame that is shown, how it lies on the screen, and its grey levels.
#include "state/ExamState.h"

namespace exam {

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

void ExamState::FlipSides()
{
    Orientation next = m_orientation;
    next.flipsSides = !next.flipsSides;
    Orient(next);
}

void ExamState::FlipDepth()
{
    Orientation next = m_orientation;
    next.flipsDepth = !next.flipsDepth;
    Orient(next);
}

void ExamState::Rotate(int degrees)
{
    constexpr int quarter = 90;
    const int rest = degrees > 0 ? quarter - 1 : 1 - quarter;
    const int quarters = m_orientation.quarters + (degrees + rest) / quarter;
    Orientation next = m_orientation;
    next.quarters = (quarters % 4 + 4) % 4;
    Orient(next);
}

void ExamState::Orient(const Orientation& orientation)
{
    m_orientation = orientation;
    m_view.SetOrientation(orientation);
    m_fitted.reset();
    ShowAgain();
}

void ExamState::MoveGreyWindow(int byLevel, int byWidth)
{
    SetGreyWindow(m_window.Moved(byLevel, byWidth));
}

void ExamState::ResetGreyWindow()
{
    SetGreyWindow({});
}

void ExamState::SetGreyWindow(const GreyWindow& window)
{
    m_window = window;
    m_view.SetGreyWindow(window);
    ShowAgain();
}

} // namespace exam
