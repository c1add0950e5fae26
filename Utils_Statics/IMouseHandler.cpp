#include "Utils_Statics/IMouseHandler.h"

#include <Utils_Statics/MouseCapture.h>

IMouseHandler::IMouseHandler() = default;

// A copy is another handler and is not registered.
IMouseHandler::IMouseHandler(const IMouseHandler&) = default;

IMouseHandler::~IMouseHandler()
{
    MouseCapture::Unregister(this);
    MouseCapture::ForgetDestroyed(this);
}

void IMouseHandler::OnReleaseMouse() {}

void IMouseHandler::GetAutoPoints(std::vector<POINT>&) {}

void IMouseHandler::SetLock(int) {}

bool IMouseHandler::HasBackgroundPoint() const
{
    return false;
}

LockType IMouseHandler::GetLockType() const
{
    return LockNormal;
}

int IMouseHandler::GetLockOrder() const
{
    return 0;
}

int IMouseHandler::GetAutoCount()
{
    std::vector<POINT> points;
    GetAutoPoints(points);
    return static_cast<int>(points.size());
}
