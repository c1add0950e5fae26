#pragma once

#include <Utils_Statics/export.h>

#include <atltypes.h>

#include <windows.h>

#include <vector>

/// The messages that a handler accepts while it holds the lock.
enum LockType : int
{
    LockNormal = 0,       ///< every pointer message
    LockMoveOnly = 1,     ///< move messages only
    LockTrackballOnly = 2 ///< every message; cannot be locked while the input is InputPointer
};

/// A tool that takes part in the arbitration of the pointer (see MouseCapture).
///
/// The application owns the handler and registers it with MouseCapture::Register; the base
/// destructor unregisters it. Unlock a handler that holds the lock before destroying it. All
/// operations are called on the user-interface thread. Inside any of them a handler may lock,
/// unlock, register, unregister or destroy handlers, itself included (MouseCapture.h states what
/// happens then).
class UTILS_STATICS_API IMouseHandler
{
public:
    /// Receives a pointer message as the owner of the lock. x and y are confined to the rectangle
    /// given to MouseCapture::ClipCursor, if there is one. True when the message was consumed.
    virtual bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) = 0;

    /// Called when the handler loses the lock. Does nothing by default.
    virtual void OnReleaseMouse();

    /// Adds the points that the lock can step through, in the handler's own order. points is empty
    /// at first and valid during the call only. Adds none by default.
    virtual void GetAutoPoints(std::vector<POINT>& points);

    /// Called when the handler gains the lock, or another of its points becomes the active one.
    /// index counts from 0 in the order of GetAutoPoints. Does nothing by default.
    virtual void SetLock(int index);

    /// True when the handler can also be grabbed anywhere inside its background area. False by
    /// default.
    virtual bool HasBackgroundPoint() const;

    /// LockNormal by default.
    virtual LockType GetLockType() const;

    /// The place in the arbitration order, smaller first. 0 by default.
    virtual int GetLockOrder() const;

    /// Sets rect to the area in which a background grab is allowed (right and bottom edge
    /// excluded). rect is empty at first.
    virtual void GetBackgroundRect(CRect& rect) = 0;

    /// The number of points that GetAutoPoints gives now.
    int GetAutoCount();

protected:
    IMouseHandler();
    /// Copies nothing: the copy is a handler of its own, which nobody has registered.
    IMouseHandler(const IMouseHandler&);
    IMouseHandler& operator=(const IMouseHandler&) = default;
    virtual ~IMouseHandler();
};
