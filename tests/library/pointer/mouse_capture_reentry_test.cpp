// Calls of the arbitration from inside a handler's operations.
#include "MouseCaptureFixture.h"

#include <memory>

namespace {

class MouseCaptureReentryTest : public MouseCaptureTest
{
protected:
    std::unique_ptr<Tool> Make(const char* name, int order, std::vector<POINT> points = {})
    {
        auto tool = std::make_unique<Tool>(log, name, order);
        tool->points = std::move(points);
        MouseCapture::Register(tool.get());
        return tool;
    }
};

TEST_F(MouseCaptureReentryTest, UnlockingInOnReleaseTellsTheOwnerOnce)
{
    auto a = Make("a", 0), b = Make("b", 1);
    a->onRelease = [] { MouseCapture::Unlock(); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Unlock());
    EXPECT_FALSE(MouseCapture::IsLocked());
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Lock(b.get(), 1));
    EXPECT_EQ(MouseCapture::GetLock(), b.get());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "a lock 0", "a release", "b lock 1"}));
}

TEST_F(MouseCaptureReentryTest, LockingInOnReleaseIsDoneBeforeTheChangeUnderWay)
{
    auto a = Make("a", 0, {{1, 1}}), b = Make("b", 1, {{3, 3}}), c = Make("c", 2);
    a->onRelease = [&] { EXPECT_TRUE(MouseCapture::Lock(b.get(), 4)); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Lock(c.get(), 7));
    EXPECT_EQ(MouseCapture::GetLock(), c.get());
    EXPECT_EQ(TakeLog(), (Log{"a lock 0", "a release", "b lock 4", "c lock 4"}))
        << "the point index is one for all";

    MouseCapture::Lock(a.get(), 0);
    TakeLog();
    a->onRelease = [] { EXPECT_TRUE(MouseCapture::LockNext()); };
    EXPECT_TRUE(MouseCapture::Unlock());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(TakeLog(), (Log{"a release", "b lock 0"}));
}

TEST_F(MouseCaptureReentryTest, AHandlerThatLocksItselfWhenItIsReleasedIsToldOnce)
{
    auto a = Make("a", 0);
    a->onRelease = [&] { EXPECT_TRUE(MouseCapture::Lock(a.get(), 3)); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Unlock());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "a lock 3"}));
}

TEST_F(MouseCaptureReentryTest, HandlersThatTakeTheLockFromEachOtherComeToAnEnd)
{
    auto a = Make("a", 0), b = Make("b", 1), c = Make("c", 2);
    a->onRelease = [&] {
        MouseCapture::Lock(b.get(), 1);
        MouseCapture::Lock(c.get(), 2);
    };
    b->onRelease = [&] {
        MouseCapture::Lock(a.get(), 3);
        MouseCapture::Unlock();
    };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Unlock());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "b lock 1", "b release", "a lock 3", "c lock 3"}));
}

TEST_F(MouseCaptureReentryTest, AHandlerMayPassTheLockOnInSetLock)
{
    auto a = Make("a", 0, {{1, 1}}), b = Make("b", 1);
    a->onLock = [&] { MouseCapture::Lock(b.get(), 5); };
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), b.get());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "b lock 5"}));
}

TEST_F(MouseCaptureReentryTest, AHandlerMayDestroyTheNextOwnerWhenItIsReleased)
{
    auto a = Make("a", 0), b = Make("b", 1);
    a->onRelease = [&] { b.reset(); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Lock(b.get(), 0));
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(log, (Log{"a lock 0", "a release"}));
}

TEST_F(MouseCaptureReentryTest, AHandlerMayUnregisterTheNextOwnerWhichIsLockedNevertheless)
{
    auto a = Make("a", 0), b = Make("b", 1);
    a->onRelease = [&] { MouseCapture::Unregister(b.get()); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_TRUE(MouseCapture::Lock(b.get(), 0));
    EXPECT_EQ(MouseCapture::GetLock(), b.get());
}

TEST_F(MouseCaptureReentryTest, AHandlerMayDestroyItselfInEveryOperation)
{
    std::unique_ptr<Tool> victim;
    const auto destroy = [&] { victim.reset(); };
    const auto renew = [&] { victim = Make("v", 0, {{100, 100}, {200, 200}}); };

    renew();
    MouseCapture::Lock(victim.get(), 0);
    victim->onRelease = destroy;
    EXPECT_TRUE(MouseCapture::Unlock());

    renew();
    victim->onLock = destroy;
    EXPECT_TRUE(MouseCapture::Lock(victim.get(), 0));
    EXPECT_FALSE(MouseCapture::IsLocked());

    renew();
    victim->onType = destroy;
    EXPECT_TRUE(MouseCapture::Lock(victim.get(), 0));
    EXPECT_FALSE(MouseCapture::IsLocked());

    renew();
    MouseCapture::Lock(victim.get(), 0);
    victim->onInput = destroy;
    EXPECT_TRUE(Move(1, 1));
    EXPECT_FALSE(Move(1, 1));

    renew();
    MouseCapture::Lock(victim.get(), 0);
    victim->onPoints = destroy;
    EXPECT_FALSE(MouseCapture::LockNext());

    renew();
    MouseCapture::Unregister(victim.get());
    victim->onOrder = destroy;
    MouseCapture::Register(victim.get());
    EXPECT_EQ(victim, nullptr);

    UsePointer();
    renew();
    victim->onPoints = destroy;
    EXPECT_FALSE(Press(100, 100));

    renew();
    victim->onBackground = destroy;
    EXPECT_FALSE(Press(100, 100)) << "its point had won, but it is gone";

    renew();
    victim->points.clear();
    victim->background = true;
    victim->area = CRect(0, 0, 500, 500);
    victim->onArea = destroy;
    EXPECT_FALSE(Press(100, 100));
    EXPECT_FALSE(MouseCapture::IsLocked());
}

TEST_F(MouseCaptureReentryTest, AHandlerMayRemoveOthersWhileThePointsAreCollected)
{
    auto a = Make("a", 0, {{500, 500}}), b = Make("b", 1, {{300, 300}}),
         c = Make("c", 2, {{100, 100}}), d = Make("d", 3, {{101, 100}});
    UsePointer();
    c->onPoints = [&] { // one behind the walk, the visited one, and one ahead of it
        a.reset();
        MouseCapture::Unregister(c.get());
        d.reset();
    };
    EXPECT_TRUE(Press(101, 100));
    EXPECT_EQ(log, (Log{"c lock 0"}));
    EXPECT_EQ(b->pointQueries, 1);
    EXPECT_EQ(c->pointQueries, 1);
    EXPECT_TRUE(Let(0, 0));
    EXPECT_FALSE(Press(101, 100));
    EXPECT_EQ(b->pointQueries, 2);
}

TEST_F(MouseCaptureReentryTest, HandlersRegisteredDuringAWalkAreNotVisited)
{
    auto a = Make("a", 10, {{100, 100}});
    Tool before(log, "before", 5), behind(log, "behind", 15);
    before.points = {{100, 100}};
    behind.points = {{101, 100}};
    UsePointer();
    a->onPoints = [&] {
        MouseCapture::Register(&before);
        MouseCapture::Register(&behind);
    };
    EXPECT_TRUE(Press(101, 100));
    EXPECT_EQ(log, (Log{"a lock 0"}));
    EXPECT_EQ(a->pointQueries, 1);
    EXPECT_EQ(before.pointQueries, 0);
    EXPECT_EQ(behind.pointQueries, 0);
}

TEST_F(MouseCaptureReentryTest, HandlersThatRegisterThemselvesAnewWhenAskedAreAskedOnce)
{
    const auto renew = [](Tool& tool) {
        MouseCapture::Unregister(&tool);
        MouseCapture::Register(&tool);
    };
    auto a = Make("a", 1), b = Make("b", 1), c = Make("c", 1, {{100, 100}});
    for (Tool* tool : {a.get(), b.get()}) {
        tool->onPoints = [tool, renew] { renew(*tool); };
        tool->onBackground = [tool, renew] { renew(*tool); };
    }
    UsePointer();
    EXPECT_TRUE(Press(100, 100));
    EXPECT_EQ(log, (Log{"c lock 0"}));
    EXPECT_EQ(a->pointQueries, 1);
    EXPECT_EQ(b->pointQueries, 1);
}

TEST_F(MouseCaptureReentryTest, AHandlerThatRegistersItselfAnewWhenAskedForItsOrderIsAskedOnce)
{
    auto a = Make("a", 1), b = Make("b", 1);
    Tool x(log, "x", 2);
    x.points = {{1, 1}};
    int asked = 0;
    a->onOrder = [&] {
        if (++asked > 1) return;
        MouseCapture::Unregister(a.get());
        MouseCapture::Register(a.get());
    };
    MouseCapture::Register(&x);
    EXPECT_LE(asked, 3);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"x lock 0"}));
}

TEST_F(MouseCaptureReentryTest, AHandlerMayRegisterItselfWhenItIsAskedForItsOrder)
{
    auto a = Make("a", 1, {{1, 1}}), c = Make("c", 3, {{1, 1}});
    Tool x(log, "x", 2), y(log, "y", 2);
    x.points = y.points = {{1, 1}};
    x.onOrder = [&] {
        MouseCapture::Register(&x);
        MouseCapture::Register(&y);
    };
    y.onOrder = [&] { MouseCapture::Register(&x); };
    MouseCapture::Register(&x);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(log, (Log{"a lock 0", "a release", "y lock 0", "y release", "x lock 0", "x release",
                        "c lock 0", "c release", "a lock 0"}))
        << "y was there first";
}

TEST_F(MouseCaptureReentryTest, TheWrapAroundStillEndsWithTheOwnerWhenHandlersAreRegisteredBeforeIt)
{
    auto a = Make("a", 1), owner = Make("o", 5, {{1, 1}}), c = Make("c", 9);
    Tool before(log, "before", 3);
    before.points = {{1, 1}};
    c->onPoints = [&] { MouseCapture::Register(&before); };
    MouseCapture::Lock(owner.get(), 0);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), owner.get());
    EXPECT_EQ(before.pointQueries, 0);
}

TEST_F(MouseCaptureReentryTest, TheWrapAroundDoesNotReachHandlersRegisteredBehindTheOwner)
{
    auto a = Make("a", 1), owner = Make("o", 5), c = Make("c", 9);
    Tool behind(log, "behind", 6);
    behind.points = {{1, 1}};
    c->onPoints = [&] { MouseCapture::Register(&behind); };
    MouseCapture::Lock(owner.get(), 0);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(behind.pointQueries, 0);
}

TEST_F(MouseCaptureReentryTest, RegisteringSurvivesHandlersThatAnswerTheirOrderWithChanges)
{
    auto a = Make("a", 1, {{1, 1}}), b = Make("b", 3, {{1, 1}}), c = Make("c", 5, {{1, 1}});
    Tool x(log, "x", 2);
    x.points = {{1, 1}};
    b->onOrder = [&] { b.reset(); };
    MouseCapture::Register(&x); // belongs before b, which ends when asked for its order
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(TakeLog(), (Log{"a lock 0", "a release", "x lock 0", "x release", "c lock 0",
                              "c release", "a lock 0"}));

    Tool y(log, "y", 9);
    y.points = {{1, 1}};
    c->onOrder = [&] {
        c->onOrder = nullptr;
        MouseCapture::Register(&y);
    };
    MouseCapture::Register(&y); // is registered when its turn comes
    MouseCapture::Unregister(&y);
    MouseCapture::Lock(c.get(), 0);
    EXPECT_TRUE(MouseCapture::LockNext());
    EXPECT_EQ(MouseCapture::GetLock(), a.get()) << "y was registered once only";
}

TEST_F(MouseCaptureReentryTest, APressFromInsideThePointsOfAHandlerKeepsBothWalksApart)
{
    auto a = Make("a", 0, {{100, 100}, {110, 100}}), b = Make("b", 1, {{400, 400}});
    UsePointer();
    bool nested = false;
    a->onPoints = [&] {
        if (std::exchange(nested, true)) return;
        EXPECT_TRUE(Press(400, 400));
    };
    EXPECT_TRUE(Press(111, 100));
    EXPECT_EQ(log, (Log{"b lock 0", "b release", "a lock 1"}));
}

TEST_F(MouseCaptureReentryTest, AnOwnerDestroyedWithoutUnlockingLeavesNothingLocked)
{
    auto a = Make("a", 0);
    MouseCapture::Lock(a.get(), 0);
    a.reset();
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_EQ(MouseCapture::GetLock(), nullptr);
    EXPECT_FALSE(Move(1, 1));
}

TEST_F(MouseCaptureReentryTest, ADestroyedCandidateOfTheNextActionIsForgotten)
{
    auto a = Make("a", 0), b = Make("b", 1), c = Make("c", 2);
    b->background = true;
    c->onPoints = [&] { b.reset(); };
    MouseCapture::Lock(a.get(), 0);
    EXPECT_FALSE(MouseCapture::LockNext());
    EXPECT_FALSE(MouseCapture::IsLocked());
}

} // namespace
