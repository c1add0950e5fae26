#include "Utils_Statics/MouseCapture.h"

#include "pointer/HandlerWalk.h"

#include <base/WrapArithmetic.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>

using namespace utils_statics;

constinit CRect MouseCapture::m_clipRect;
constinit CRect MouseCapture::m_lockRect;
constinit int MouseCapture::m_autoMethod = 0;
constinit IMouseHandler* MouseCapture::m_capture = nullptr;
constinit InputType MouseCapture::m_input = InputTrackball;
constinit LockType MouseCapture::m_lockType = LockNormal;
constinit bool MouseCapture::m_freeze = false;
constinit bool MouseCapture::m_imaging = true;

namespace {

// Squared pixels: a point is grabbed from less than 100 pixels away.
constexpr std::int32_t grabDistance = 10000;

// Marks a handler as being told that it loses the lock, for the scope's lifetime.
class ReleaseScope
{
public:
    explicit ReleaseScope(const IMouseHandler* told) : m_told(told), m_outer(s_innermost)
    {
        s_innermost = this;
    }
    ~ReleaseScope() { s_innermost = m_outer; }
    ReleaseScope(const ReleaseScope&) = delete;
    ReleaseScope& operator=(const ReleaseScope&) = delete;

    static bool IsBeingTold(const IMouseHandler* handler)
    {
        for (const ReleaseScope* scope = s_innermost; scope; scope = scope->m_outer)
            if (scope->m_told == handler) return true;
        return false;
    }

private:
    const IMouseHandler* m_told; // only compared: it may be gone
    const ReleaseScope* m_outer;

    static constinit inline const ReleaseScope* s_innermost = nullptr;
};

// The result deliberately has 32 bits: beyond about 32,000 pixels it wraps, possibly below zero,
// and then counts as near.
std::int32_t SquaredDistance(POINT a, POINT b)
{
    const int dx = base::wrap::Subtract(a.x, b.x);
    const int dy = base::wrap::Subtract(a.y, b.y);
    return base::wrap::Add(base::wrap::Multiply(dx, dx), base::wrap::Multiply(dy, dy));
}

// False when there is no memory for one more.
bool TryAppend(std::vector<IMouseHandler*>& handlers, IMouseHandler* handler) noexcept
try {
    handlers.push_back(handler);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

// The result of LockNearest so far.
struct NearestPoint
{
    HandlerWatch best;
    int bestIndex = 0;
    std::int32_t bestDistance = grabDistance;
    bool anyPointSeen = false;
    HandlerWatch background;

    void Consider(IMouseHandler* handler, const std::vector<POINT>& points, POINT pt)
    {
        for (std::size_t i = 0; i < points.size(); ++i) {
            anyPointSeen = true;
            const std::int32_t distance = SquaredDistance(points[i], pt);
            if (distance >= bestDistance) continue; // at equal distance the earlier point wins
            best = handler;
            bestIndex = static_cast<int>(i);
            bestDistance = distance;
        }
    }

    // The background counts only when no handler offers a point. Deliberately, even a point that is
    // too far away excludes it.
    void ConsiderBackground(POINT pt)
    {
        if (best.get() || anyPointSeen || !background.get()) return;
        CRect area(0, 0, 0, 0);
        background.get()->GetBackgroundRect(area);
        if (PtInRect(&area, pt)) best = background.get();
    }
};

// The first handler of the walk that has points, or null. The last one without points but with a
// background point becomes the candidate.
IMouseHandler* FindHandlerWithPoints(HandlerWalk& walk, HandlerWatch& candidate)
{
    while (walk.Next()) {
        const int count = walk.Visited()->GetAutoCount();
        if (!walk.Visited()) continue;
        if (count != 0) return walk.Visited();
        const bool hasBackground = walk.Visited()->HasBackgroundPoint();
        if (hasBackground && walk.Visited()) candidate = walk.Visited();
    }
    return nullptr;
}

} // namespace

void MouseCapture::Initialize(const CRect& lockRect, InputType input)
{
    SetRectEmpty(&m_clipRect);
    m_lockRect = lockRect;
    m_input = input;
}

void MouseCapture::Register(IMouseHandler* h)
{
    if (!h || std::find(m_handlers.begin(), m_handlers.end(), h) != m_handlers.end()) return;
    if (!TryAppend(m_handlers, h)) return; // first: it may register itself when asked
    const int order = h->GetLockOrder();
    std::size_t place = 0;
    while (place < m_handlers.size() && m_handlers[place] != h &&
           m_handlers[place]->GetLockOrder() <= order)
        ++place;

    // The handlers that were asked may have changed the list.
    const auto own = std::find(m_handlers.begin(), m_handlers.end(), h);
    if (own != m_handlers.end() && place < static_cast<std::size_t>(own - m_handlers.begin()))
        std::rotate(m_handlers.begin() + static_cast<std::ptrdiff_t>(place), own, own + 1);
}

void MouseCapture::Unregister(IMouseHandler* h)
{
    std::erase(m_handlers, h);
}

bool MouseCapture::Lock(IMouseHandler* h, int index)
{
    m_autoMethod = index; // even if the lock is then refused
    HandlerWatch next(h);
    const LockType type = h ? h->GetLockType() : LockNormal;
    if (m_input == InputPointer && type == LockTrackballOnly) return false;
    m_lockType = type;
    TellOwnerOfRelease();
    m_capture = next.get();
    if (m_capture) m_capture->SetLock(m_autoMethod);
    return true;
}

bool MouseCapture::Unlock()
{
    TellOwnerOfRelease();
    m_capture = nullptr;
    ClipCursor(nullptr);
    return true;
}

bool MouseCapture::IsLocked()
{
    return m_capture != nullptr;
}

const IMouseHandler* MouseCapture::GetLock()
{
    return m_capture;
}

InputType MouseCapture::GetInput()
{
    return m_input;
}

CRect MouseCapture::GetLockRect()
{
    return m_lockRect;
}

void MouseCapture::SetFreeze(bool freeze)
{
    m_freeze = freeze;
}

void MouseCapture::SetImaging(bool imaging)
{
    m_imaging = imaging;
}

bool MouseCapture::LockNext()
{
    if (m_input == InputPointer) {
        Unlock();
        ClipCursor(nullptr);
        return false;
    }
    if (LockNextPoint()) return true;

    ClipCursor(nullptr);
    m_autoMethod = 0;
    const auto owner = std::find(m_handlers.begin(), m_handlers.end(), m_capture);
    const bool ownerFound = owner != m_handlers.end();
    const std::size_t afterOwner =
        ownerFound ? static_cast<std::size_t>(owner - m_handlers.begin()) + 1 : 0;

    HandlerWatch candidate;
    HandlerWalk upToOwner(m_handlers, 0, afterOwner);
    HandlerWalk behindOwner(m_handlers, afterOwner, m_handlers.size());
    if (IMouseHandler* handler = FindHandlerWithPoints(behindOwner, candidate))
        return Lock(handler, 0);
    if (!utilsExam::ResearchMode && ownerFound && !(m_freeze && m_imaging))
        if (IMouseHandler* handler = FindHandlerWithPoints(upToOwner, candidate))
            return Lock(handler, 0);

    Lock(candidate.get() == m_capture ? nullptr : candidate.get(), 0);
    return false;
}

// Steps to the owner's next point, if there is one.
bool MouseCapture::LockNextPoint()
{
    m_autoMethod = base::wrap::Add(m_autoMethod, 1);
    HandlerWatch owner(m_capture);
    if (!owner.get()) return false;
    const int count = owner.get()->GetAutoCount();
    if (!owner.get() || owner.get() != m_capture || count <= m_autoMethod)
        return false; // the owner may have let go meanwhile
    m_capture->SetLock(m_autoMethod);
    return true;
}

void MouseCapture::LockNearest(POINT pt)
{
    NearestPoint nearest;
    std::vector<POINT> points; // local, because a handler's operation may come back here
    for (HandlerWalk walk(m_handlers, 0, m_handlers.size()); walk.Next();) {
        points.clear();
        walk.Visited()->GetAutoPoints(points);
        if (!walk.Visited()) continue;
        nearest.Consider(walk.Visited(), points, pt);
        const bool hasBackground = walk.Visited()->HasBackgroundPoint();
        if (hasBackground && walk.Visited()) nearest.background = walk.Visited();
    }
    nearest.ConsiderBackground(pt);
    Lock(nearest.best.get(), nearest.bestIndex); // also null, which releases the owner
}

bool MouseCapture::HandleMouse(unsigned int message, unsigned int flags, POINT pt)
{
    if (!PtInRect(&m_lockRect, pt)) return false;
    if (m_input == InputPointer)
        if (const std::optional<bool> consumed = HandlePointerStyle(message, flags, pt))
            return *consumed;
    if (!m_capture) return false;
    if (m_lockType == LockMoveOnly && message != WM_MOUSEMOVE) return false;
    HandleClip(pt, m_lockType);
    return m_capture->OnMouseInput(message, flags, pt.x, pt.y);
}

// Handles pressing and letting go; the result is empty for any other message.
std::optional<bool> MouseCapture::HandlePointerStyle(unsigned int message, unsigned int flags,
                                                     POINT pt)
{
    if (message == WM_LBUTTONDOWN) {
        LockNearest(pt);
        return IsLocked();
    }
    // A move without the button means that the button was released where no message came from.
    if (message == WM_LBUTTONUP || (message == WM_MOUSEMOVE && (flags & MK_LBUTTON) == 0))
        return IsLocked() && Unlock();
    return std::nullopt;
}

// Unlike a rectangle's usual meaning, the right and bottom edges belong to the area.
void MouseCapture::HandleClip(POINT& pt, LockType)
{
    if (IsRectEmpty(&m_clipRect)) return;
    pt.x = std::clamp(pt.x, m_clipRect.left, m_clipRect.right);
    pt.y = std::clamp(pt.y, m_clipRect.top, m_clipRect.bottom);
}

int MouseCapture::ClipCursor(RECT* rect)
{
    if (rect)
        CopyRect(&m_clipRect, rect);
    else
        SetRectEmpty(&m_clipRect);

    DEVMODEW mode = {};
    static_assert(sizeof mode == 220);
    mode.dmSize = sizeof mode;
    EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode);
    const LONG width = static_cast<LONG>(mode.dmPelsWidth);
    const LONG height = static_cast<LONG>(mode.dmPelsHeight);

    // Without a rectangle the cursor is kept on the screen, not freed.
    RECT screen = {0, 0, width, height};
    if (rect && GetInput() != InputPointer)
        screen = {std::max(0L, m_clipRect.left), std::max(0L, m_clipRect.top),
                  std::min(width, m_clipRect.right), std::min(height, m_clipRect.bottom)};
    return ::ClipCursor(utilsExam::CursorClippingDisabled ? nullptr : &screen);
}

void MouseCapture::TellOwnerOfRelease()
{
    // Otherwise a handler that changes the lock while it is told would be told for ever.
    if (!m_capture || ReleaseScope::IsBeingTold(m_capture)) return;
    const ReleaseScope scope(m_capture);
    m_capture->OnReleaseMouse();
}

// The owner cannot be told any more; the application should have unlocked it.
void MouseCapture::ForgetDestroyed(IMouseHandler* h)
{
    HandlerWatch::Destroyed(h);
    if (m_capture == h) m_capture = nullptr;
}
