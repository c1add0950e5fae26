// The user's next action: from point to point and from handler to handler.
#include "MouseCaptureFixture.h"

#include <climits>

namespace {

TEST_F(MouseCaptureTest, ARefusedLockStillSetsThePointIndex)
{
    Tool a(log, "a"), t(log, "t");
    a.points.assign(9, POINT{0, 0});
    t.type = LockTrackballOnly;
    MouseCapture::Lock(&a, 1);
    UsePointer();
    EXPECT_FALSE(MouseCapture::Lock(&t, 6));
    MouseCapture::Initialize(CRect(0, 0, 1000, 800), InputTrackball);
    TakeLog();
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"a lock 7"}));
}

TEST_F(MouseCaptureTest, NextStepsThroughThePointsOfAToolThenToTheNextTool)
{
    Tool a(log, "a", 1), b(log, "b", 2), c(log, "c", 3);
    a.points.resize(2);
    c.points.resize(1);
    for (Tool* tool : {&a, &b, &c})
        MouseCapture::Register(tool);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"a lock 0", "a lock 1", "a release", "c lock 0", "c release", "a lock 0"}));
}

TEST_F(MouseCaptureTest, NextOnTheOnlyToolComesBackToIt)
{
    Tool a(log, "a");
    a.points.resize(1);
    MouseCapture::Register(&a);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "a lock 0"}));
}

TEST_F(MouseCaptureTest, NextDoesNotWrapAroundWhenFrozenAndImaging)
{
    Tool a(log, "a", 1), b(log, "b", 2), g(log, "g", 3);
    a.points = b.points = {{0, 0}};
    for (Tool* tool : {&a, &b})
        MouseCapture::Register(tool);
    MouseCapture::Lock(&b, 0);
    MouseCapture::SetFreeze(true);
    TakeLog();
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(TakeLog(), (Log{"b release"}));

    g.background = true;
    MouseCapture::Register(&g);
    MouseCapture::Lock(&b, 0);
    TakeLog();
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &g);
    EXPECT_EQ(TakeLog(), (Log{"b release", "g lock 0"}));

    MouseCapture::Lock(&b, 0);
    MouseCapture::SetImaging(false);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a) << "frozen alone does not keep it from wrapping around";
    MouseCapture::Lock(&b, 0);
    MouseCapture::SetFreeze(false);
    MouseCapture::SetImaging(true);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a) << "nor does imaging alone";
}

TEST_F(MouseCaptureTest, NextDoesNotWrapAroundInResearchMode)
{
    Tool a(log, "a", 1), b(log, "b", 2);
    a.points = b.points = {{0, 0}};
    MouseCapture::Register(&a);
    MouseCapture::Register(&b);
    MouseCapture::Lock(&b, 0);
    utilsExam::ResearchMode = true;
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a) << "without an owner the walk starts at the first";
}

TEST_F(MouseCaptureTest, NextFromAnOwnerThatIsNotRegisteredStartsAtTheFirstAndDoesNotWrap)
{
    Tool a(log, "a"), stranger(log, "s");
    a.points.resize(1);
    MouseCapture::Register(&a);
    MouseCapture::Lock(&stranger, 0);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &a);
    EXPECT_EQ(a.pointQueries, 1);

    a.points.clear();
    a.pointQueries = 0;
    MouseCapture::Lock(&stranger, 0);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_EQ(a.pointQueries, 1) << "no second pass";
    EXPECT_FALSE(MouseCapture::IsLocked());
}

TEST_F(MouseCaptureTest, NextTakesTheLastBackgroundHandlerWhenNobodyHasPoints)
{
    Tool a(log, "a", 1), b(log, "b", 2), c(log, "c", 3);
    a.background = b.background = true;
    for (Tool* tool : {&a, &b, &c})
        MouseCapture::Register(tool);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &b);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), nullptr)
        << "the owner comes last in the wrap-around and replaces a, then drops out";
    MouseCapture::Lock(&c, 0);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), &b);
}

TEST_F(MouseCaptureTest, NextInPointerStyleOnlyUnlocks)
{
    Tool a(log, "a");
    a.points.resize(3);
    MouseCapture::Register(&a);
    UsePointer();
    MouseCapture::Lock(&a, 0);
    TakeLog();
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(log, (Log{"a release"}));
}

TEST_F(MouseCaptureTest, ThePointIndexWrapsAroundAtTheEndOfItsRange)
{
    Tool a(log, "a");
    a.points.resize(1);
    MouseCapture::Lock(&a, INT_MAX);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"a lock 2147483647", "a lock -2147483648"}));
}

TEST_F(MouseCaptureTest, NextEndsTheConfinementOnlyWhenTheToolChanges)
{
    Tool a(log, "a");
    a.points.resize(2);
    MouseCapture::Register(&a);
    MouseCapture::Lock(&a, 0);
    RECT clip = {100, 200, 300, 400};
    MouseCapture::ClipCursor(&clip);
    MouseCapture::LockNext();
    TakeLog();
    Move(0, 0);
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 100,200"}));
    MouseCapture::LockNext();
    TakeLog();
    Move(0, 0);
    EXPECT_EQ(TakeLog(), (Log{"a input 512 0 0,0"}));
}

} // namespace
