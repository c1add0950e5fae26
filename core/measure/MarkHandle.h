#pragma once

#include <Utils_Statics/IMouseHandler.h>
#include <Utils_Statics/IPrecisionHandler.h>

#include <vector>

namespace exam {

class MarkBoard;

/// A mark on display, as the pointer works it: by its points, and as a whole by what lies between
/// them, whose place comes after those of the points.
class MarkHandle : public IMouseHandler, public IPrecisionHandler
{
public:
    MarkHandle(MarkBoard& board, int number) : m_board(board), m_number(number) {}

    int Number() const { return m_number; }
    /// The place in hand, or that was in hand last, as PointAtPlace() counts; -1: none. The
    /// precision mouse moves it.
    int Active() const { return m_active; }
    void LetGo() { m_active = -1; }

    void OnPrecisionMove(int dx, int dy) override;
    void OnPrecisionAccept() override;

protected:
    bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override;
    void OnReleaseMouse() override;
    void GetAutoPoints(std::vector<POINT>& points) override;
    void SetLock(int index) override;
    int GetLockOrder() const override { return m_number; }
    void GetBackgroundRect(CRect&) override {} // there is none

private:
    MarkBoard& m_board;
    int m_number;
    int m_active = -1;
};

} // namespace exam
