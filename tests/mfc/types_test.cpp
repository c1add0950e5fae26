#include <gtest/gtest.h>

#include <atltypes.h>

#include <climits>
#include <random>

static_assert(sizeof(CPoint) == sizeof(POINT) && sizeof(CSize) == sizeof(SIZE) &&
              sizeof(CRect) == sizeof(RECT));

namespace {

// Static objects need no run-time construction.
constinit CRect s_constantInitialised(1, 2, 3, 4);

} // namespace

TEST(CPoint, AddsAndSubtracts)
{
    const CPoint point(10, 20);
    EXPECT_EQ(point + CSize(1, 2), CPoint(11, 22));
    EXPECT_EQ(point - CSize(1, 2), CPoint(9, 18));
    EXPECT_EQ(point - CPoint(1, 2), CSize(9, 18));
    EXPECT_EQ(point + CPoint(1, 2), CPoint(11, 22));
    EXPECT_EQ(-point, CPoint(-10, -20));
    CPoint moved = point;
    moved += CSize(1, 1);
    moved -= CPoint(2, 3);
    moved.Offset(5, 6);
    EXPECT_EQ(moved, CPoint(14, 24));
}

TEST(CPoint, UnpacksMouseParameters)
{
    EXPECT_EQ(CPoint(static_cast<LPARAM>(MAKELPARAM(5, 7))), CPoint(5, 7));
    EXPECT_EQ(CPoint(static_cast<LPARAM>(MAKELPARAM(0xFFFF, 0x8000))), CPoint(-1, -32768));
}

TEST(CPoint, WrapsAroundInsteadOfOverflowing)
{
    EXPECT_EQ(CPoint(INT_MAX, INT_MIN) + CSize(1, -1), CPoint(INT_MIN, INT_MAX));
    EXPECT_EQ(-CPoint(INT_MIN, 0), CPoint(INT_MIN, 0));
}

TEST(CRect, KnowsItsSizeAndCorners)
{
    EXPECT_EQ(s_constantInitialised.Width(), 2);
    EXPECT_EQ(s_constantInitialised.Height(), 2);
    const CRect rect(CPoint(10, 20), CSize(31, 41));
    EXPECT_EQ(rect, CRect(10, 20, 41, 61));
    EXPECT_EQ(rect.TopLeft(), CPoint(10, 20));
    EXPECT_EQ(rect.BottomRight(), CPoint(41, 61));
    EXPECT_EQ(rect.CenterPoint(), CPoint(25, 40));
    EXPECT_EQ(CRect(-10, -20, 7, -3).CenterPoint(), CPoint(-1, -11)) << "toward zero";
    EXPECT_EQ(CRect(-3, 5, -4, 0).CenterPoint(), CPoint(-3, 2)) << "reversed edges too";
    EXPECT_EQ(CRect(INT_MIN, 0, INT_MAX, 0).Width(), -1);
}

TEST(CRect, GivesItsCornersToChange)
{
    CRect rect(1, 2, 3, 4);
    rect.TopLeft() = CPoint(10, 20);
    rect.BottomRight() += CSize(100, 200);
    rect.TopLeft().x -= 3;
    EXPECT_EQ(rect, CRect(7, 20, 103, 204));
    CPoint& corner = rect.BottomRight();
    rect.right = 5;
    EXPECT_EQ(corner.x, 5);
    corner.x = 6;
    EXPECT_EQ(rect.right, 6);
}

TEST(CRect, TellsEmptyFromNull)
{
    EXPECT_TRUE(CRect().IsRectEmpty());
    EXPECT_TRUE(CRect().IsRectNull());
    EXPECT_TRUE(CRect(1, 1, 1, 5).IsRectEmpty());
    EXPECT_FALSE(CRect(1, 1, 1, 5).IsRectNull());
    EXPECT_TRUE(CRect(5, 0, 1, 5).IsRectEmpty());
    EXPECT_FALSE(CRect(0, 0, 1, 1).IsRectEmpty());
}

TEST(CRect, ExcludesItsRightAndBottomEdges)
{
    const CRect rect(0, 0, 10, 10);
    EXPECT_TRUE(rect.PtInRect(CPoint(0, 0)));
    EXPECT_TRUE(rect.PtInRect(CPoint(9, 9)));
    EXPECT_FALSE(rect.PtInRect(CPoint(10, 9)));
    EXPECT_FALSE(rect.PtInRect(CPoint(9, 10)));
    EXPECT_FALSE(rect.PtInRect(CPoint(-1, 0)));
}

TEST(CRect, MovesAndGrows)
{
    CRect rect(0, 0, 10, 20);
    rect.OffsetRect(5, -5);
    EXPECT_EQ(rect, CRect(5, -5, 15, 15));
    rect.MoveToXY(1, 2);
    EXPECT_EQ(rect, CRect(1, 2, 11, 22));
    rect.InflateRect(1, 2);
    EXPECT_EQ(rect, CRect(0, 0, 12, 24));
    rect.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(rect, CRect(1, 2, 9, 20));
    EXPECT_EQ(rect + CPoint(1, 1), CRect(2, 3, 10, 21));
    EXPECT_EQ(rect - CSize(1, 2), CRect(0, 0, 8, 18));
}

TEST(CRect, Normalizes)
{
    CRect rect(10, 20, 0, 5);
    rect.NormalizeRect();
    EXPECT_EQ(rect, CRect(0, 5, 10, 20));
}

TEST(CRect, IntersectsAndUnites)
{
    const CRect a(0, 0, 10, 10);
    const CRect b(5, 5, 20, 20);
    EXPECT_EQ(a & b, CRect(5, 5, 10, 10));
    EXPECT_EQ(a | b, CRect(0, 0, 20, 20));
    EXPECT_EQ(a & CRect(10, 10, 11, 11), CRect());
    EXPECT_EQ(a | CRect(), a);
    CRect result(1, 1, 1, 1);
    EXPECT_FALSE(result.IntersectRect(a, CRect(50, 50, 60, 60)));
    EXPECT_TRUE(result.IsRectNull());
    EXPECT_TRUE(result.UnionRect(a, b));
    EXPECT_TRUE(result.EqualRect(CRect(0, 0, 20, 20)));
}

TEST(CRect, PassesToThePlatform)
{
    CRect rect;
    EXPECT_TRUE(::SetRect(rect, 1, 2, 3, 4));
    EXPECT_TRUE(::EqualRect(rect, s_constantInitialised));
}

TEST(CRect, AgreesWithThePlatformOnRandomValues)
{
    std::mt19937 random(3);
    const auto value = [&] { return static_cast<int>(random() % 21) - 10; };
    for (int round = 0; round < 20000; ++round) {
        const CRect a(value(), value(), value(), value());
        const CRect b(value(), value(), value(), value());
        const POINT point = {value(), value()};
        RECT expected;
        ASSERT_EQ(a.IsRectEmpty(), ::IsRectEmpty(&a));
        ASSERT_EQ(a.PtInRect(point), ::PtInRect(&a, point));
        ::IntersectRect(&expected, &a, &b);
        ASSERT_EQ(a & b, CRect(expected));
        ::UnionRect(&expected, &a, &b);
        ASSERT_EQ(a | b, CRect(expected));
        expected = a;
        ::OffsetRect(&expected, point.x, point.y);
        ASSERT_EQ(a + point, CRect(expected));
        CRect inflated = a;
        inflated.InflateRect(point.x, point.y);
        expected = a;
        ::InflateRect(&expected, point.x, point.y);
        ASSERT_EQ(inflated, CRect(expected));
    }
}
