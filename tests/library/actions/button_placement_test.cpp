// The placement of a button, and the element that holds it.
#include "ActionsFixture.h"

#include <Utils_Statics/ButtonPlacement.h>

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

} // namespace
