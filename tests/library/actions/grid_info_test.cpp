// The grid position of a button: its validity, its equality and its element.
#include "ActionsFixture.h"

#include <Utils_Statics/GridInfo.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

using GridInfoTest = ElementTest;

constexpr double GridInfo::*reals[] = {&GridInfo::height, &GridInfo::span, &GridInfo::offset,
                                       &GridInfo::displacement};
constexpr const wchar_t* realNames[] = {L"height", L"span", L"offset", L"displacement"};
constexpr double realDefaults[] = {1.0, 1.0, 0.0, 0.0};

GridInfo Grid(int row, int column)
{
    GridInfo grid;
    grid.row = row;
    grid.column = column;
    return grid;
}

void ExpectDefault(const GridInfo& grid)
{
    EXPECT_EQ(grid.row, -1);
    EXPECT_EQ(grid.column, -1);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(grid.*reals[i], realDefaults[i]);
}

GridInfo Odd()
{
    GridInfo grid = Grid(3, 4);
    grid.height = 5;
    grid.span = 6;
    grid.offset = 7;
    grid.displacement = 8;
    return grid;
}

TEST_F(GridInfoTest, IsNotPlacedAtFirstAndAfterReset)
{
    ExpectDefault(GridInfo());
    GridInfo grid = Odd();
    grid.Reset();
    ExpectDefault(grid);
}

TEST_F(GridInfoTest, IsValidWhenRowAndColumnAreSet)
{
    EXPECT_FALSE(GridInfo().IsValid());
    EXPECT_FALSE(Grid(0, -1).IsValid());
    EXPECT_FALSE(Grid(-1, 0).IsValid());
    EXPECT_TRUE(Grid(0, 0).IsValid());
    EXPECT_TRUE(Grid(-2, std::numeric_limits<int>::min()).IsValid());
}

TEST_F(GridInfoTest, EqualsOnTheSameCellOnly)
{
    EXPECT_TRUE(Grid(1, 2) == Grid(1, 2));
    EXPECT_FALSE(Grid(1, 2) != Grid(1, 2));
    EXPECT_TRUE(Grid(1, 2) != Grid(1, 3));
    EXPECT_TRUE(Grid(1, 2) != Grid(0, 2));
    EXPECT_TRUE(GridInfo() == GridInfo());
}

TEST_F(GridInfoTest, EveryRealNumberMayDifferByLessThanAThousandth)
{
    for (const auto real : reals) {
        GridInfo a, b;
        a.*real = 1.0;
        b.*real = 1.0009;
        EXPECT_TRUE(a == b && b == a);
        EXPECT_FALSE(a != b || b != a);
        for (const double distant : {1.001, 0.999, 1.0011, 0.0, -1.0}) {
            b.*real = distant;
            EXPECT_FALSE(a == b || b == a) << distant;
            EXPECT_TRUE(a != b && b != a) << distant;
        }
    }
}

TEST_F(GridInfoTest, WhatIsNoNumberEqualsNothing)
{
    GridInfo a = Grid(0, 0), b = a;
    a.height = b.height = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    a.height = std::numeric_limits<double>::infinity();
    b.height = 1;
    EXPECT_TRUE(a != b);
}

TEST_F(GridInfoTest, ReadsItsSixAttributes)
{
    GridInfo grid;
    grid.Load(Element("<g displacement='0.75' offset='-0.5' span='2' height='1e1' column='7' "
                      "row='-3'/>"));
    EXPECT_EQ(grid.row, -3);
    EXPECT_EQ(grid.column, 7);
    EXPECT_EQ(grid.height, 10.0);
    EXPECT_EQ(grid.span, 2.0);
    EXPECT_EQ(grid.offset, -0.5);
    EXPECT_EQ(grid.displacement, 0.75);
}

TEST_F(GridInfoTest, AMissingOrUnreadableAttributeTakesItsFieldBack)
{
    GridInfo grid = Odd();
    grid.Load(Element("<g/>"));
    ExpectDefault(grid);
    grid = Odd();
    grid.Load(Element("<g row='1.5' column='' height='1,5' span='x' offset='1e999' "
                      "displacement=' '/>"));
    ExpectDefault(grid);
}

TEST_F(GridInfoTest, AnInvalidElementIsNeitherReadNorWritten)
{
    GridInfo grid = Odd();
    grid.Load(zelXMLNode());
    EXPECT_TRUE(grid == Odd());
    grid.Save(zelXMLNode());
}

TEST_F(GridInfoTest, RowAndColumnAreAlwaysWritten)
{
    const zelXMLNode node = Element("<g/>");
    GridInfo().Save(node);
    EXPECT_EQ(node.getAttribute(L"row"), L"-1");
    EXPECT_EQ(node.getAttribute(L"column"), L"-1");
    for (const wchar_t* const name : realNames)
        EXPECT_FALSE(zel_xml::HasAttribute(node, name));
}

TEST_F(GridInfoTest, OnlyDeparturesFromTheDefaultsAreWritten)
{
    GridInfo grid = Grid(0, 0);
    grid.offset = -0.5;
    grid.span = 2.0;
    const zelXMLNode node = Element("<g height='3' displacement='4' other='5'/>");
    grid.Save(node);
    EXPECT_EQ(node.getAttribute(L"offset"), L"-0.5");
    EXPECT_EQ(node.getAttribute(L"span"), L"2");
    EXPECT_FALSE(zel_xml::HasAttribute(node, L"height"));
    EXPECT_FALSE(zel_xml::HasAttribute(node, L"displacement"));
    EXPECT_EQ(node.getAttribute(L"other"), L"5");
}

TEST_F(GridInfoTest, WhatIsWithinAThousandthOfTheDefaultComesBackAsTheDefault)
{
    for (int i = 0; i < 4; ++i)
        for (const double shift : {0.0005, -0.0005, 0.001, -0.001}) {
            const zelXMLNode node = Element("<g height='9' span='9' offset='9' displacement='9'/>");
            GridInfo grid = Grid(0, 0);
            grid.*reals[i] = realDefaults[i] + shift;
            grid.Save(node);
            EXPECT_FALSE(zel_xml::HasAttribute(node, realNames[i])) << shift;
            grid.Load(node);
            EXPECT_EQ(grid.*reals[i], realDefaults[i]) << shift;
        }
}

TEST_F(GridInfoTest, ThousandthsWrittenInDecimalsAreTakenAsWritten)
{
    const zelXMLNode node = Element("<g/>");
    for (const double height : {1.001, 0.999}) { // one is nearer than the other in binary
        GridInfo grid;
        grid.height = height;
        grid.Save(node);
        EXPECT_FALSE(zel_xml::HasAttribute(node, L"height")) << height;
        EXPECT_TRUE(grid != GridInfo()) << height;
    }
    for (const double height : {1.0011, 0.9989}) {
        GridInfo grid;
        grid.height = height;
        grid.Save(node);
        EXPECT_EQ(node.getAttributeDouble(L"height", 0), height);
    }
}

// Compares numbers of four decimals with whole ten-thousandths.
TEST_F(GridInfoTest, AgreesWithDecimalArithmetic)
{
    std::mt19937 random(1);
    const zelXMLNode node = Element("<g/>");
    for (int round = 0; round < 20000; ++round) {
        const int range = 1 << random() % 30;
        const int first = static_cast<int>(random() % (2u * range)) - range;
        const int second = first + static_cast<int>(random() % 41) - 20;
        GridInfo a, b;
        a.offset = first / 10000.0;
        b.offset = second / 10000.0;
        ASSERT_EQ(a == b, std::abs(first - second) < 10) << first << ' ' << second;
        b.Save(node);
        ASSERT_EQ(zel_xml::HasAttribute(node, L"offset"), std::abs(second) > 10) << second;
        a.Load(node);
        ASSERT_EQ(a.offset, std::abs(second) > 10 ? b.offset : 0.0) << second;
    }
}

TEST_F(GridInfoTest, OddNumbersComeBackOrAreLeftOut)
{
    const zelXMLNode node = Element("<g/>");
    for (const double value :
         {1e300, -1e-300, 5e-324, 123456789.125, 1.0 / 3, -0.0,
          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::max()}) {
        GridInfo grid = Grid(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
        grid.displacement = value;
        grid.Save(node);
        GridInfo back;
        back.Load(node);
        EXPECT_EQ(back.row, grid.row);
        EXPECT_EQ(back.column, grid.column);
        EXPECT_EQ(back.displacement, std::abs(value) > 0.001 ? value : 0.0);
    }
    GridInfo grid;
    grid.displacement = std::numeric_limits<double>::quiet_NaN();
    grid.Save(node); // a NaN is no departure from the default
    EXPECT_FALSE(zel_xml::HasAttribute(node, L"displacement"));
}

} // namespace
