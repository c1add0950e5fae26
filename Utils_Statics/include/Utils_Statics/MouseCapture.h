#pragma once

#include <Utils_Statics/IMouseHandler.h>
#include <Utils_Statics/export.h>

#include <windows.h>
#include <atltypes.h>

#include <optional>
#include <vector>

/// How the user points.
enum InputType : int
{
    InputTrackball = 0, // the cursor stays confined; a next action steps through the points
    InputPointer = 1    // pressing grabs the nearest point, releasing lets go; nothing else
};

/// The arbitration of the pointer: which of the registered handlers owns it (the lock), how the
/// lock moves from handler to handler and from point to point, and how the system cursor is
/// confined meanwhile.
///
/// One arbitration per process, for the user-interface thread only; nothing is locked. Handlers are
/// kept by pointer from Register to Unregister and never owned. Nothing here reports errors: a
/// refused lock answers false.
///
/// Calls from inside a handler's operations are allowed, and behave so:
/// - A walk over the handlers visits those that were registered when it began, each once, as far as
///   they still are when their turn comes.
/// - A handler that is destroyed is forgotten at once. It cannot win a walk that is under way, and
///   it is told nothing any more. If it held the lock, nobody holds it. One that is only
///   unregistered can still win, as it can be locked.
/// - A handler that changes the lock while it is told that it loses it (OnReleaseMouse) is not told
///   again. The change that it is told of then goes on, and so decides who holds the lock.
class MouseCapture
{
public:
    /// Starts over with the area in which pointer messages are arbitrated (client pixels; right and
    /// bottom edge excluded) and the input style. Nothing is confined afterwards; the lock and the
    /// registered handlers stay.
    UTILS_STATICS_API static void Initialize(const CRect& lockRect, InputType input);

    /// Inserts h by its lock order, behind those of equal order. Null, or one that is already
    /// registered, changes nothing.
    UTILS_STATICS_API static void Register(IMouseHandler* h);

    /// Removes h if it is registered. Does not take the lock away from it.
    UTILS_STATICS_API static void Unregister(IMouseHandler* h);

    /// Gives the lock to h (registered or not), at its point index (not checked); the old owner is
    /// told first, also when it is h itself. Null only takes the lock away; the confinement of the
    /// cursor stays in any case. False, and the old owner stays, when h may not be locked in the
    /// current input style.
    UTILS_STATICS_API static bool Lock(IMouseHandler* h, int index);

    /// Takes the lock away and ends the confinement to a handler's rectangle. Always true.
    UTILS_STATICS_API static bool Unlock();

    UTILS_STATICS_API static bool IsLocked();

    /// The handler that holds the lock, or null.
    UTILS_STATICS_API static const IMouseHandler* GetLock();

    /// What Initialize was given last; before that trackball style and no area.
    UTILS_STATICS_API static InputType GetInput();
    UTILS_STATICS_API static CRect GetLockRect();

    /// The user's next action: the owner's next point, or else the next handler that has points, or
    /// else one that has a background point, or else nobody. True when a point was locked. In
    /// pointer style it only unlocks.
    UTILS_STATICS_API static bool LockNext();

    /// To be called with every pointer message of the image view: message WM_..., flags MK_..., pt
    /// in client pixels. Whether the message was consumed.
    UTILS_STATICS_API static bool HandleMouse(unsigned int message, unsigned int flags, POINT pt);

    /// Confines the pointer to rect (screen pixels), or with null only to the screen. In pointer
    /// style the system's cursor is confined to the screen at most, and not at all while
    /// utilsExam::CursorClippingDisabled is true. The answer is the one of the system's ClipCursor.
    UTILS_STATICS_API static int ClipCursor(RECT* rect);

    /// Whether the image is frozen (at first not), and whether the imaging screen is active (at
    /// first it is): with both, LockNext does not wrap around.
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

    static std::vector<IMouseHandler*>
        m_handlers;          // in ascending lock order, defined among the static objects
    static CRect m_clipRect; // empty: none
    static CRect m_lockRect;
    static int m_autoMethod; // index of the current point of the owner
    static IMouseHandler* m_capture;
    static InputType m_input;
    static LockType m_lockType; // of the owner, as it was when it was locked
    static bool m_freeze;
    static bool m_imaging;
};
