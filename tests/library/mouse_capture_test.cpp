// The arbitration of the pointer: order, lock, next action, nearest point, forwarding.
#include "mouse_capture_fixture.h"

#include <climits>
#include <cstdint>
#include <cstring>

namespace {

// Only what is pure: all else is the default.
class BareTool : public IMouseHandler
{
public:
    bool OnMouseInput(unsigned int, unsigned int, int, int) override { return true; }
    void GetBackgroundRect(CRect& rect) override { rect = CRect(0, 0, 1, 1); }
};

// The arbitration before anybody used it: read at load, because every test sets it up for itself.
struct InitialState
{
    bool locked = MouseCapture::IsLocked();
    InputType input = MouseCapture::GetInput();
    CRect area = MouseCapture::GetLockRect();
    bool wrapsAround = WrapsAround();
    bool wrapsAroundFrozen = (MouseCapture::SetFreeze(true), WrapsAround());

    // Whether the next action of the only tool comes back to it.
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

// The order in which the handlers stand in the list, read off by stepping through them with one point each.
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

// A virtual member's pointer holds one more than the offset of its entry in the table.
template <typename Member>
std::size_t TableEntry(Member member)
{
    std::uintptr_t raw = 0;
    std::memcpy(&raw, &member, sizeof raw);
    EXPECT_EQ(raw % sizeof(void*), 1u);
    return static_cast<std::size_t>(raw / sizeof(void*));
}

TEST_F(MouseCaptureTest, TheTableOfAHandlerKeepsItsOrder)
{
    EXPECT_EQ(TableEntry(&IMouseHandler::OnMouseInput), 0u);
    EXPECT_EQ(TableEntry(&IMouseHandler::OnReleaseMouse), 1u);
    EXPECT_EQ(TableEntry(&IMouseHandler::GetAutoPoints), 2u);
    EXPECT_EQ(TableEntry(&IMouseHandler::SetLock), 3u);
    EXPECT_EQ(TableEntry(&IMouseHandler::HasBackgroundPoint), 4u);
    EXPECT_EQ(TableEntry(&IMouseHandler::GetLockType), 5u);
    EXPECT_EQ(TableEntry(&IMouseHandler::GetLockOrder), 6u);
    EXPECT_EQ(TableEntry(&IMouseHandler::GetBackgroundRect), 7u);
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
    EXPECT_EQ(log, (Log{"a lock 2", "a release", "b lock -7", "b release", "b lock 4", "b release"}));
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

TEST_F(MouseCaptureTest, APressGrabsFromNinetyNinePixelsButNotFromAHundred)
{
    Tool a(log, "a");
    a.points = {{300, 300}};
    MouseCapture::Register(&a);
    UsePointer();
    for (const POINT nearby : {POINT{399, 300}, POINT{201, 300}, POINT{300, 399}, POINT{370, 371}}) {
        EXPECT_TRUE(Press(nearby.x, nearby.y));
        EXPECT_TRUE(Let(nearby.x, nearby.y));
    }
    for (const POINT distant : {POINT{400, 300}, POINT{200, 300}, POINT{300, 200}, POINT{380, 360}})
        EXPECT_FALSE(Press(distant.x, distant.y));
}

TEST_F(MouseCaptureTest, APressThatGrabsNothingReleasesTheOwner)
{
    Tool a(log, "a");
    a.points = {{300, 300}};
    MouseCapture::Register(&a);
    UsePointer();
    MouseCapture::Lock(&a, 0);
    EXPECT_FALSE(Press(700, 700));
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(log, (Log{"a lock 0", "a release"}));
}

TEST_F(MouseCaptureTest, OfEquallyNearPointsTheEarliestWins)
{
    Tool late(log, "late", 2), early(log, "early", 1);
    late.points = {{110, 100}, {90, 100}};
    early.points = {{200, 200}, {100, 110}, {100, 90}};
    MouseCapture::Register(&late);
    MouseCapture::Register(&early);
    UsePointer();
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(log, (Log{"early lock 1"}));
    late.points[1] = {91, 100};
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(MouseCapture::GetLock(), &late);
}

TEST_F(MouseCaptureTest, APressOnTheBackgroundGrabsTheLastBackgroundHandler)
{
    Tool a(log, "a", 1), b(log, "b", 2);
    a.background = b.background = true;
    a.area = CRect(0, 0, 500, 500);
    b.area = CRect(100, 100, 200, 200);
    MouseCapture::Register(&a);
    MouseCapture::Register(&b);
    UsePointer();
    EXPECT_TRUE(Press(100, 199));
    EXPECT_EQ(TakeLog(), (Log{"b area", "b lock 0"}));
    EXPECT_FALSE(Press(200, 150)) << "the right edge lies outside, and the earlier handler is not asked";
    EXPECT_EQ(TakeLog(), (Log{"b area", "b release"}));
}

TEST_F(MouseCaptureTest, AnyPointAnywhereKeepsTheBackgroundOut)
{
    Tool points(log, "p"), background(log, "b");
    points.points = {{900, 700}};
    background.background = true;
    background.area = CRect(0, 0, 1000, 800);
    MouseCapture::Register(&points);
    MouseCapture::Register(&background);
    UsePointer();
    EXPECT_FALSE(Press(10, 10));
    EXPECT_TRUE(log.empty());
}

// 65536 squared is a multiple of 2 to the 32nd: the distance wraps to 0. 50000 squared wraps below zero.
TEST_F(MouseCaptureTest, DistancesWrapAroundAt32Bits)
{
    Tool a(log, "a"), b(log, "b");
    a.points = {{100, 100}, {65536 + 100, 100}};
    b.points = {{50000 + 100, 100}};
    MouseCapture::Register(&a);
    UsePointer();
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(TakeLog(), (Log{"a lock 0"}));
    a.points = {{90, 100}, {65536 + 100, 100}};
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(TakeLog(), (Log{"a release", "a lock 1"}));
    MouseCapture::Register(&b);
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(TakeLog(), (Log{"a release", "b lock 0"}));
    b.points = {{LONG_MIN, LONG_MAX}, {LONG_MAX, LONG_MIN}};
    Press(100, 100);
}

TEST_F(MouseCaptureTest, InPointerStyleReleasingAndMovingWithoutTheButtonLetGo)
{
    Tool a(log, "a");
    a.points = {{100, 100}};
    MouseCapture::Register(&a);
    UsePointer();
    EXPECT_FALSE(Let(100, 100));
    EXPECT_FALSE(Move(100, 100));
    Press(100, 100);
    EXPECT_TRUE(Move(120, 130, MK_LBUTTON));
    EXPECT_TRUE(MouseCapture::HandleMouse(WM_RBUTTONDOWN, MK_LBUTTON | MK_RBUTTON, POINT{1, 2}));
    EXPECT_TRUE(Let(120, 130));
    Press(100, 100);
    EXPECT_TRUE(Move(120, 130, MK_RBUTTON));
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_FALSE(Move(120, 130, MK_LBUTTON)) << "a drag without an owner is not consumed";
    EXPECT_EQ(log,
              (Log{"a lock 0", "a input 512 1 120,130", "a input 516 3 1,2", "a release", "a lock 0", "a release"}));
}

TEST_F(MouseCaptureTest, InTrackballStyleTheButtonsAreForwarded)
{
    Tool a(log, "a");
    EXPECT_FALSE(Press(1, 1));
    MouseCapture::Lock(&a, 0);
    EXPECT_TRUE(Press(1, 2));
    a.consumes = false;
    EXPECT_FALSE(Let(3, 4));
    EXPECT_FALSE(Move(5, 6));
    EXPECT_EQ(MouseCapture::GetLock(), &a);
    EXPECT_EQ(log, (Log{"a lock 0", "a input 513 1 1,2", "a input 514 0 3,4", "a input 512 0 5,6"}));
}

TEST_F(MouseCaptureTest, AMessageOutsideTheAreaIsNeverForwarded)
{
    Tool a(log, "a");
    MouseCapture::Lock(&a, 0);
    TakeLog();
    for (const POINT outside : {POINT{-1, 5}, POINT{5, -1}, POINT{1000, 5}, POINT{5, 800}})
        EXPECT_FALSE(Move(outside.x, outside.y));
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(Move(999, 799));
    UsePointer();
    EXPECT_FALSE(Let(1000, 5));
    EXPECT_TRUE(MouseCapture::IsLocked()) << "not even letting go is seen outside";
}

TEST_F(MouseCaptureTest, AMoveOnlyHandlerGetsMovesOnly)
{
    Tool a(log, "a");
    a.type = LockMoveOnly;
    MouseCapture::Lock(&a, 0);
    a.type = LockNormal; // the type counts that it had when it was locked
    EXPECT_FALSE(Press(1, 1));
    EXPECT_FALSE(MouseCapture::HandleMouse(WM_MOUSEWHEEL, 0, POINT{1, 1}));
    EXPECT_TRUE(Move(2, 2));
    EXPECT_EQ(log, (Log{"a lock 0", "a input 512 0 2,2"}));
}

TEST_F(MouseCaptureTest, ForwardedPointsAreConfinedToTheRectangleWithItsRightAndBottomEdge)
{
    Tool a(log, "a");
    MouseCapture::Lock(&a, 0);
    RECT clip = {100, 200, 300, 400};
    MouseCapture::ClipCursor(&clip);
    TakeLog();
    Move(0, 0);
    Move(999, 799);
    Move(300, 400);
    Move(150, 250);
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 100,200", "a input 512 0 300,400", "a input 512 0 300,400",
                              "a input 512 0 150,250"}));
    RECT reversed = {300, 200, 100, 400};
    MouseCapture::ClipCursor(&reversed);
    Move(7, 8);
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 7,8"})) << "a reversed rectangle is an empty one";
}

} // namespace
