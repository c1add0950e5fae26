// Mouse messages: what a press grabs, what lets go, and what reaches the owner.
#include "MouseCaptureFixture.h"

#include <climits>

namespace {

TEST_F(MouseCaptureTest, APressGrabsFromNinetyNinePixelsButNotFromAHundred)
{
    Tool a(log, "a");
    a.points = {{300, 300}};
    MouseCapture::Register(&a);
    UsePointer();
    for (const POINT nearby :
         {POINT{399, 300}, POINT{201, 300}, POINT{300, 399}, POINT{370, 371}}) {
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
    EXPECT_FALSE(Press(200, 150))
        << "the right edge lies outside, and the earlier handler is not asked";
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

// 65536 squared is a multiple of 2 to the 32nd, so the distance wraps to 0. 50000 squared wraps
// below zero.
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
    EXPECT_EQ(log, (Log{"a lock 0", "a input 512 1 120,130", "a input 516 3 1,2", "a release",
                        "a lock 0", "a release"}));
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
    EXPECT_EQ(log,
              (Log{"a lock 0", "a input 513 1 1,2", "a input 514 0 3,4", "a input 512 0 5,6"}));
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
    a.type = LockNormal; // the type at the time of locking counts
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
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 100,200", "a input 512 0 300,400",
                              "a input 512 0 300,400", "a input 512 0 150,250"}));
    RECT reversed = {300, 200, 100, 400};
    MouseCapture::ClipCursor(&reversed);
    Move(7, 8);
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 7,8"})) << "a reversed rectangle is an empty one";
}

} // namespace
