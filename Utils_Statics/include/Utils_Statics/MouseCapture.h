#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IMouseHandler.h>

#include <atltypes.h>

#include <windows.h>

#include <optional>
#include <vector>

/// The way the user points.
enum InputType : int
{
    InputTrackball = 0, ///< the cursor stays confined; LockNext steps through the points
    InputPointer = 1    ///< pressing grabs the nearest point, releasing lets go
};

/// The arbitration of the pointer. It decides which of the registered handlers owns the pointer
/// (the lock), how the lock moves from handler to handler and from point to point, and how the
/// system cursor is confined meanwhile.
///
/// There is one arbitration per process, for the user-interface thread only, without a mutex. It
/// keeps handlers by pointer from Register to Unregister and owns none. No errors are reported; a
/// refused lock gives false.
///
/// Calls from inside a handler's operations are allowed. They follow these rules:
/// - A walk over the handlers visits those that were registered when it began, each once, unless
///   one is no longer registered when its turn comes.
/// - A handler that is destroyed is forgotten at once. It cannot win a walk that is under way, and
///   it is told nothing any more. If it held the lock, nobody holds it then. A handler that is only
///   unregistered can still win, because an unregistered handler can be locked.
/// - A handler that changes the lock inside OnReleaseMouse is not told again. The change that
///   called OnReleaseMouse goes on afterwards, so it decides who holds the lock.
class MouseCapture
{
public:
    /// Sets the area in which pointer messages are arbitrated (client pixels; right and bottom edge
    /// excluded) and the input style. Forgets the rectangle of ClipCursor; the lock, the registered
    /// handlers and the system cursor stay as they are.
    UTILS_STATICS_API static void Initialize(const CRect& lockRect, InputType input);

    /// Inserts h by its lock order, behind those of equal order. Does nothing for null or a handler
    /// that is already registered.
    UTILS_STATICS_API static void Register(IMouseHandler* h);

    /// Removes h if it is registered. Does not take the lock away from it.
    UTILS_STATICS_API static void Unregister(IMouseHandler* h);

    /// Gives the lock to h (registered or not), at its point index (not checked). The old owner is
    /// told first, even when it is h itself. Null only takes the lock away. The confinement of the
    /// cursor stays in every case. When h may not be locked in the current input style, the result
    /// is false and the old owner stays.
    UTILS_STATICS_API static bool Lock(IMouseHandler* h, int index);

    /// Takes the lock away and ends the confinement to a handler's rectangle. Always true.
    UTILS_STATICS_API static bool Unlock();

    /// True while a handler holds the lock.
    UTILS_STATICS_API static bool IsLocked();

    /// The handler that holds the lock, or null.
    UTILS_STATICS_API static const IMouseHandler* GetLock();

    /// The values of the last Initialize; at first trackball style and no area.
    UTILS_STATICS_API static InputType GetInput();
    UTILS_STATICS_API static CRect GetLockRect();

    /// Carries out the user's next action. It locks the owner's next point, or else the next
    /// handler that has points, or else one that has a background point, or else nobody. True when
    /// a point was locked. In pointer style it only unlocks.
    UTILS_STATICS_API static bool LockNext();

    /// Call it with every pointer message of the image view: message WM_..., flags MK_..., pt in
    /// client pixels. True when the message was consumed.
    UTILS_STATICS_API static bool HandleMouse(unsigned int message, unsigned int flags, POINT pt);

    /// Confines the pointer to rect (screen pixels), or with null only to the screen. In pointer
    /// style the system's cursor is only confined to the screen. In both styles it is not confined
    /// at all while utilsExam::CursorClippingDisabled is true. The result is that of the system's
    /// ClipCursor.
    UTILS_STATICS_API static int ClipCursor(RECT* rect);

    /// Set whether the image is frozen (at first it is not) and whether the imaging screen is
    /// active (at first it is). While both are true, LockNext does not wrap around.
    UTILS_STATICS_API static void SetFreeze(bool freeze);
    UTILS_STATICS_API static void SetImaging(bool imaging);

private:
    friend class IMouseHandler;

    static void LockNearest(POINT pt);
    static std::optional<bool> HandlePointerStyle(unsigned int message, unsigned int flags,
                                                  POINT pt);
    static void HandleClip(POINT& pt, LockType type);
    static bool LockNextPoint();
    static void TellOwnerOfRelease();
    static void ForgetDestroyed(IMouseHandler* h);

    // In ascending lock order; defined among the static objects.
    static std::vector<IMouseHandler*> m_handlers;
    static CRect m_clipRect; // empty while there is none
    static CRect m_lockRect;
    static int m_autoMethod; // index of the owner's current point
    static IMouseHandler* m_capture;
    static InputType m_input;
    static LockType m_lockType; // the owner's type at the time of the lock
    static bool m_freeze;
    static bool m_imaging;
};
