// The effect of the arbitration of the pointer on the system's cursor.
#include "MouseCaptureFixture.h"

namespace {

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
