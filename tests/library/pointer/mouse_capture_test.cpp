// The handlers of the pointer and its lock: registration, defaults, and who is told when the lock
// changes hands.
#include "MouseCaptureFixture.h"

#include <test_support/VirtualPlace.h>

namespace {

// Defines only the pure operations; the others are the default.
class BareTool : public IMouseHandler
{
public:
    bool OnMouseInput(unsigned int, unsigned int, int, int) override { return true; }
    void GetBackgroundRect(CRect& rect) override { rect = CRect(0, 0, 1, 1); }
};

// The state of the arbitration before first use. It is read at load, because every test sets it up.
struct InitialState
{
    bool locked = MouseCapture::IsLocked();
    InputType input = MouseCapture::GetInput();
    CRect area = MouseCapture::GetLockRect();
    bool wrapsAround = WrapsAround();
    bool wrapsAroundFrozen = (MouseCapture::SetFreeze(true), WrapsAround());

    // True when the next action of the only tool comes back to it.
    static bool WrapsAround()
    {
        Log log;
        Tool tool(log, "t");
        tool.points.resize(1);
        MouseCapture::Register(&tool);
        MouseCapture::Lock(&tool, 0);
        const bool wrapped = MouseCapture::LockNext();
        MouseCapture::Unlock();
        return wrapped;
    }
};
const InitialState initial;

TEST_F(MouseCaptureTest, StartsUnlockedInTrackballStyleWithoutAnAreaImagingAndNotFrozen)
{
    EXPECT_FALSE(initial.locked);
    EXPECT_EQ(initial.input, InputTrackball);
    EXPECT_TRUE(initial.area == CRect(0, 0, 0, 0));
    EXPECT_TRUE(initial.wrapsAround) << "not frozen";
    EXPECT_FALSE(initial.wrapsAroundFrozen) << "imaging";
}

// The order of the handlers in the list, found by stepping through them with one point each.
TEST_F(MouseCaptureTest, HandlersStandInLockOrderAndEqualOrdersInRegistrationOrder)
{
    Tool a(log, "a", 5), b(log, "b", -1), c(log, "c", 5), d(log, "d", 2), e(log, "e", -1);
    for (Tool* tool : {&a, &b, &c, &d, &e}) {
        tool->points = {{0, 0}};
        MouseCapture::Register(tool);
    }
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(MouseCapture::LockNext());
    const Log expected = {"b lock 0", "b release", "e lock 0", "e release", "d lock 0", "d release",
                          "a lock 0", "a release", "c lock 0", "c release", "b lock 0"};
    EXPECT_EQ(log, expected);
}

TEST_F(MouseCaptureTest, RegisteringAgainChangesNothingEvenWhenTheOrderChangedMeanwhile)
{
    Tool a(log, "a", 1), b(log, "b", 2);
    a.points = b.points = {{0, 0}};
    MouseCapture::Register(&a);
    MouseCapture::Register(&b);
    b.SetOrder(0);
    MouseCapture::Register(&b);
    MouseCapture::Register(nullptr);
    for (int i = 0; i < 3; ++i)
        MouseCapture::LockNext();
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "b lock 0", "b release", "a lock 0"}));
}

TEST_F(MouseCaptureTest, UnregisteringDoesNotTakeTheLockAway)
{
    Tool a(log, "a");
    MouseCapture::Register(&a);
    MouseCapture::Lock(&a, 0);
    MouseCapture::Unregister(&a);
    MouseCapture::Unregister(&a);
    MouseCapture::Unregister(nullptr);
    EXPECT_EQ(MouseCapture::GetLock(), &a);
    EXPECT_TRUE(Move(1, 2));
    EXPECT_EQ(log, (Log{"a lock 0", "a input 512 0 1,2"}));
}

TEST_F(MouseCaptureTest, DestroyingAHandlerUnregistersIt)
{
    Tool a(log, "a");
    {
        Tool b(log, "b");
        b.points = {{5, 5}};
        MouseCapture::Register(&b);
    }
    a.points = {{5, 5}};
    MouseCapture::Register(&a);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a);
}

TEST_F(MouseCaptureTest, ACopyOfAHandlerIsNotRegistered)
{
    Tool a(log, "a");
    MouseCapture::Register(&a);
    {
        const Tool copy = a;
    }
    a.points = {{5, 5}};
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a);
}

TEST_F(MouseCaptureTest, DefaultsOfAHandler)
{
    BareTool bare;
    IMouseHandler& handler = bare;
    std::vector<POINT> points;
    handler.GetAutoPoints(points);
    EXPECT_TRUE(points.empty());
    EXPECT_EQ(handler.GetAutoCount(), 0);
    EXPECT_FALSE(handler.HasBackgroundPoint());
    EXPECT_EQ(handler.GetLockType(), LockNormal);
    EXPECT_EQ(handler.GetLockOrder(), 0);
    handler.SetLock(3);
    handler.OnReleaseMouse();
    Tool tool(log, "t");
    tool.points.resize(7);
    EXPECT_EQ(tool.GetAutoCount(), 7);
}

TEST_F(MouseCaptureTest, TheTableOfAHandlerKeepsItsOrder)
{
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::OnMouseInput), 0u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::OnReleaseMouse), 1u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::GetAutoPoints), 2u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::SetLock), 3u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::HasBackgroundPoint), 4u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::GetLockType), 5u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::GetLockOrder), 6u);
    EXPECT_EQ(test_support::VirtualPlace(&IMouseHandler::GetBackgroundRect), 7u);
    EXPECT_EQ(sizeof(BareTool), sizeof(void*)) << "a handler has no data of its own";
}

TEST_F(MouseCaptureTest, InitializeStoresAreaAndStyleAndLeavesTheLock)
{
    Tool a(log, "a");
    a.points = {{1, 1}};
    MouseCapture::Register(&a);
    MouseCapture::Lock(&a, 0);
    RECT clip = {10, 10, 20, 20};
    MouseCapture::ClipCursor(&clip);
    MouseCapture::Initialize(CRect(-5, -6, 7, 8), InputPointer);
    EXPECT_EQ(MouseCapture::GetInput(), InputPointer);
    EXPECT_TRUE(MouseCapture::GetLockRect() == CRect(-5, -6, 7, 8));
    EXPECT_TRUE(MouseCapture::IsLocked());
    EXPECT_EQ(MouseCapture::GetLock(), &a);
    TakeLog();
    EXPECT_TRUE(Move(-5, -6, MK_LBUTTON));
    EXPECT_EQ(log, (Log{"a input 512 1 -5,-6"})) << "the confinement must be gone";
}

TEST_F(MouseCaptureTest, LockTellsTheOldOwnerFirst)
{
    Tool a(log, "a"), b(log, "b");
    EXPECT_TRUE(MouseCapture::Lock(&a, 2));
    a.onRelease = [&] { EXPECT_EQ(MouseCapture::GetLock(), &a); };
    b.onLock = [&] { EXPECT_EQ(MouseCapture::GetLock(), &b); };
    EXPECT_TRUE(MouseCapture::Lock(&b, -7));
    EXPECT_TRUE(MouseCapture::Lock(&b, 4));
    EXPECT_TRUE(MouseCapture::Lock(nullptr, 0));
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(MouseCapture::GetLock(), nullptr);
    EXPECT_EQ(log,
              (Log{"a lock 2", "a release", "b lock -7", "b release", "b lock 4", "b release"}));
}

TEST_F(MouseCaptureTest, LockOfNullKeepsTheConfinementAndUnlockEndsIt)
{
    Tool a(log, "a");
    MouseCapture::Lock(&a, 0);
    RECT clip = {10, 10, 20, 20};
    MouseCapture::ClipCursor(&clip);
    MouseCapture::Lock(nullptr, 0);
    MouseCapture::Lock(&a, 0);
    TakeLog();
    Move(0, 0);
    EXPECT_TRUE(MouseCapture::Unlock());
    MouseCapture::Lock(&a, 0);
    Move(0, 0);
    EXPECT_EQ(log, (Log{"a input 512 0 10,10", "a release", "a lock 0", "a input 512 0 0,0"}));
}

TEST_F(MouseCaptureTest, UnlockWithoutOwnerSucceeds)
{
    EXPECT_TRUE(MouseCapture::Unlock());
    EXPECT_FALSE(MouseCapture::IsLocked());
}

TEST_F(MouseCaptureTest, ATrackballOnlyHandlerIsRefusedInPointerStyle)
{
    Tool a(log, "a"), t(log, "t");
    a.points.assign(9, POINT{0, 0});
    t.type = LockTrackballOnly;
    EXPECT_TRUE(MouseCapture::Lock(&t, 0));
    UsePointer();
    MouseCapture::Lock(&a, 1);
    TakeLog();
    EXPECT_FALSE(MouseCapture::Lock(&t, 6));
    EXPECT_EQ(MouseCapture::GetLock(), &a);
    EXPECT_TRUE(log.empty());

    t.points = {{50, 50}};
    MouseCapture::Register(&t);
    EXPECT_TRUE(Press(50, 50)) << "the old owner stays, so something is locked";
    EXPECT_EQ(MouseCapture::GetLock(), &a);
}

// The effect of the arbitration of the pointer on the system's cursor.

class SystemCursorTest : public MouseCaptureTest
{
protected:
    void SetUp() override
    {
        MouseCaptureTest::SetUp();
        // Tries twice, because a session that cannot confine may find out only after the first
        // time.
        if (!Confines(CRect(40, 50, 260, 270)) || !Confines(CRect(50, 60, 160, 170)))
            GTEST_SKIP() << "this session does not honour ClipCursor (under Wine it needs the X "
                            "input extension library)";
    }

    static bool Confines(const CRect& rect) { return ::ClipCursor(&rect) && CRect(Now()) == rect; }

    static const RECT& Now()
    {
        static RECT rect;
        GetClipCursor(&rect);
        return rect;
    }
    static CRect Screen()
    {
        return CRect(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    }
};

TEST_F(SystemCursorTest, TrackballStyleConfinesToTheRectangleWithinTheScreen)
{
    RECT inside = {100, 110, 200, 210};
    EXPECT_NE(MouseCapture::ClipCursor(&inside), 0);
    EXPECT_TRUE(CRect(Now()) == CRect(inside));
    RECT beyond = {-50, -60, 100000, 300};
    EXPECT_NE(MouseCapture::ClipCursor(&beyond), 0);
    EXPECT_TRUE(CRect(Now()) == CRect(0, 0, Screen().right, 300));
}

TEST_F(SystemCursorTest, WithoutARectangleTheCursorIsKeptOnTheScreen)
{
    EXPECT_NE(MouseCapture::ClipCursor(nullptr), 0);
    EXPECT_TRUE(CRect(Now()) == Screen());
}

TEST_F(SystemCursorTest, PointerStyleDoesNotConfine)
{
    UsePointer();
    RECT inside = {100, 110, 200, 210};
    EXPECT_NE(MouseCapture::ClipCursor(&inside), 0);
    EXPECT_TRUE(CRect(Now()) == Screen());
}

TEST_F(SystemCursorTest, ClippingCanBeDisabledButStillConfinesForwardedPoints)
{
    utilsExam::CursorClippingDisabled = true;
    RECT inside = {100, 110, 200, 210};
    EXPECT_NE(MouseCapture::ClipCursor(&inside), 0);
    RECT free;
    GetClipCursor(&free);
    EXPECT_LE(free.left, 0);
    EXPECT_GE(free.right, Screen().right);
    Tool a(log, "a");
    MouseCapture::Lock(&a, 0);
    Move(0, 0);
    EXPECT_EQ(log.back(), "a input 512 0 100,110");
}

TEST_F(SystemCursorTest, UnlockEndsTheConfinement)
{
    Tool a(log, "a");
    MouseCapture::Lock(&a, 0);
    RECT inside = {100, 110, 200, 210};
    MouseCapture::ClipCursor(&inside);
    MouseCapture::Unlock();
    EXPECT_TRUE(CRect(Now()) == Screen());
}

} // namespace
