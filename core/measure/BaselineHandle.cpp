#include "measure/BaselineHandle.h"

#include "base/StateChanges.h"

#include <Utils_Statics/MouseCapture.h>

#include <cstdlib>

namespace exam {

namespace {

constexpr int reach = 5; // pixels

} // namespace

BaselineHandle::~BaselineHandle()
{
    if (MouseCapture::GetLock() == this) MouseCapture::Unlock();
}

bool BaselineHandle::Press(CPoint at)
{
    const bool isHit = m_strip.HasFlow() && m_strip.Plot().PtInRect(at) &&
                       std::abs(at.y - m_strip.BaselineRow()) <= reach;
    return isHit && MouseCapture::GetInput() == InputPointer && MouseCapture::Lock(this, 0);
}

bool BaselineHandle::OnMouseInput(unsigned int message, unsigned int, int, int y)
{
    if (message != WM_MOUSEMOVE) return false;
    m_strip.MoveBaseline(m_strip.BaselineRow() - (y - m_origin.y));
    TellChange(stateDisplayChanged);
    return true;
}

} // namespace exam
