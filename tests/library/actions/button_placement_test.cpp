// The placement of a button, and the element that holds it.
#include "ActionsFixture.h"

#include <Utils_Statics/ButtonPlacement.h>
#include <Utils_Statics/GridInfo.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

using ButtonPlacementTest = ElementTest;

ButtonPlacement Placement(const wchar_t* name, bool check, int row, int column)
{
    ButtonPlacement placement(name, check);
    placement.grid.row = row;
    placement.grid.column = column;
    return placement;
}

TEST_F(ButtonPlacementTest, IsUnnamedUncheckedAndNotPlacedAtFirst)
{
    const ButtonPlacement placement;
    EXPECT_EQ(placement.name, L"");
    EXPECT_FALSE(placement.check);
    EXPECT_TRUE(placement.grid == GridInfo());
}

TEST_F(ButtonPlacementTest, TakesItsNameFromEitherKindOfText)
{
    for (const ButtonPlacement& placement :
         {ButtonPlacement(L"Freeze", true), ButtonPlacement(std::wstring(L"Freeze"), true)}) {
        EXPECT_EQ(placement.name, L"Freeze");
        EXPECT_TRUE(placement.check);
        EXPECT_FALSE(placement.grid.IsValid());
    }
    EXPECT_EQ(ButtonPlacement(static_cast<const wchar_t*>(nullptr), false).name, L"");
}

TEST_F(ButtonPlacementTest, EqualsWhenNameCheckAndGridDo)
{
    const ButtonPlacement placement = Placement(L"x", true, 1, 2);
    EXPECT_TRUE(placement == Placement(L"x", true, 1, 2));
    EXPECT_FALSE(placement != Placement(L"x", true, 1, 2));
    for (const ButtonPlacement& other :
         {Placement(L"X", true, 1, 2), Placement(L"x", false, 1, 2), Placement(L"x", true, 1, 3)}) {
        EXPECT_FALSE(placement == other);
        EXPECT_TRUE(placement != other);
    }
    ButtonPlacement close = placement;
    close.grid.height += 0.0009;
    EXPECT_TRUE(placement == close);
    close.grid.height = 1.001;
    EXPECT_TRUE(placement != close);
}

TEST_F(ButtonPlacementTest, ReadsNameCheckAndGrid)
{
    ButtonPlacement placement;
    placement.Load(Element("<any name='Freeze' check='1'><grid row='8'/><Grid row='2' "
                           "column='3' span='1.5'/><Grid row='9'/></any>"));
    EXPECT_EQ(placement.name, L"Freeze");
    EXPECT_TRUE(placement.check);
    EXPECT_EQ(placement.grid.row, 2);
    EXPECT_EQ(placement.grid.column, 3);
    EXPECT_EQ(placement.grid.span, 1.5);
}

TEST_F(ButtonPlacementTest, EveryIntegerButZeroMeansChecked)
{
    const std::pair<const char*, bool> texts[] = {{"0", false},   {"1", true},  {"-1", true},
                                                  {"2", true},    {"", false},  {"true", false},
                                                  {"1.0", false}, {" 1 ", true}};
    for (const auto& [text, check] : texts) {
        ButtonPlacement placement(L"x", !check);
        placement.Load(Element(std::string("<p check='") + text + "'/>"));
        EXPECT_EQ(placement.check, check) << text;
    }
}

TEST_F(ButtonPlacementTest, AMissingNameIsEmptyAndAMissingCheckIsNone)
{
    ButtonPlacement placement = Placement(L"x", true, 2, 3);
    placement.Load(Element("<p/>"));
    EXPECT_EQ(placement.name, L"");
    EXPECT_FALSE(placement.check);
}

TEST_F(ButtonPlacementTest, WithoutAGridElementTheGridStays)
{
    ButtonPlacement placement = Placement(L"x", true, 2, 3);
    placement.Load(Element("<p name='y'/>"));
    EXPECT_EQ(placement.grid.row, 2);
    EXPECT_EQ(placement.grid.column, 3);
    placement.Load(Element("<p name='y'><Grid/></p>"));
    EXPECT_FALSE(placement.grid.IsValid());
}

TEST_F(ButtonPlacementTest, AnInvalidElementReadsAsOneWithoutAnything)
{
    ButtonPlacement placement = Placement(L"x", true, 2, 3);
    placement.Load(zelXMLNode());
    EXPECT_TRUE(placement == Placement(L"", false, 2, 3));
    placement.Save(zelXMLNode());
}

TEST_F(ButtonPlacementTest, WritesNameCheckAndGrid)
{
    const zelXMLNode node = Element("<p/>");
    Placement(L"Freeze", true, 2, 3).Save(node);
    EXPECT_EQ(node.getAttribute(L"name"), L"Freeze");
    EXPECT_EQ(node.getAttribute(L"check"), L"1");
    const zelXMLNode grid = node.getChildByName(L"Grid", false);
    ASSERT_TRUE(grid.isValid());
    EXPECT_EQ(grid.getAttribute(L"row"), L"2");
    EXPECT_EQ(grid.getAttribute(L"column"), L"3");
    EXPECT_FALSE(zel_xml::HasAttribute(grid, L"height"));
}

TEST_F(ButtonPlacementTest, AnUncheckedOneLeavesTheCheckThatIsThere)
{
    const zelXMLNode fresh = Element("<p/>");
    Placement(L"x", false, 0, 0).Save(fresh);
    EXPECT_FALSE(zel_xml::HasAttribute(fresh, L"check"));
    const zelXMLNode used = Element("<p check='1'/>");
    Placement(L"x", false, 0, 0).Save(used);
    EXPECT_EQ(used.getAttribute(L"check"), L"1");
}

TEST_F(ButtonPlacementTest, AnExistingGridElementIsUsedAgainOrRemoved)
{
    const zelXMLNode node = Element("<p><Grid row='5' height='2' other='x'/></p>");
    Placement(L"x", false, 0, 0).Save(node);
    const zelXMLNode grid = node.getChildByName(L"Grid", false);
    EXPECT_EQ(grid.getAttribute(L"row"), L"0");
    EXPECT_EQ(grid.getAttribute(L"other"), L"x");
    EXPECT_FALSE(zel_xml::HasAttribute(grid, L"height"));
    Placement(L"x", false, 0, -1).Save(node);
    EXPECT_FALSE(node.getChildByName(L"Grid", false).isValid());
    Placement(L"x", false, -1, 0).Save(node);
    EXPECT_FALSE(node.getChildByName(L"Grid", false).isValid());
}

TEST_F(ButtonPlacementTest, ANameThatXmlCannotHoldIsNotWritten)
{
    const zelXMLNode node = Element("<p name='before'/>");
    Placement(L"a\x01", true, 0, 0).Save(node);
    EXPECT_EQ(node.getAttribute(L"name"), L"before");
}

// Does a client's work: it writes a list of placements to a file, and reads it after a restart.
TEST_F(ButtonPlacementTest, AListComesBackFromItsFile)
{
    std::mt19937 random(5);
    const std::wstring path = m_folder / L"panel.xml";
    std::vector<ButtonPlacement> written;
    zelXMLFile file;
    ASSERT_TRUE(zel_xml::CreateDocument(file, path.c_str(), L"panel"));
    for (int i = 0; i < 500; ++i) {
        ButtonPlacement placement(L"Key \u20AC\U0001F600 <" + std::to_wstring(i),
                                  random() % 2 == 0);
        if (random() % 4 != 0) {
            placement.grid.row = static_cast<int>(random() % 20);
            placement.grid.column = static_cast<int>(random() % 20);
            placement.grid.height = (1 + random() % 400) / 100.0;
            placement.grid.offset = std::generate_canonical<double, 53>(random) - 0.5;
        }
        placement.Save(zel_xml::AppendChild(file.getRootElement(), L"button"));
        written.push_back(placement);
    }
    ASSERT_TRUE(zel_xml::SaveDocument(file));
    ASSERT_TRUE(file.open(path, true));
    zelXMLNode element = file.getRootElement().getFirstChild();
    for (const ButtonPlacement& expected : written) {
        ButtonPlacement read;
        read.Load(element);
        EXPECT_TRUE(read == expected);
        ++element;
    }
    EXPECT_FALSE(element.isValid());
}

// The grid position of a button: its validity, its equality and its element.

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
