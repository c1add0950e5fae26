// The layout of the control panel has a grid and a file, and its buttons move.
#include "panel/PanelLayout.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

#include <cmath>
#include <limits>
#include <random>

using namespace exam;

namespace {

GridInfo Place(int row, int column, double span = 1, double height = 1)
{
    GridInfo place;
    place.row = row;
    place.column = column;
    place.span = span;
    place.height = height;
    return place;
}

class PanelLayoutTest : public testing::Test
{
protected:
    bool Load(const std::string& text)
    {
        test_support::WriteFile(File(), text);
        return m_layout.Load(File());
    }

    // Three buttons in the upper row, the last one two columns wide, and one that is not placed.
    void LoadThree()
    {
        ASSERT_TRUE(Load("<panel><Button name='A'><Grid row='0' column='0'/></Button>"
                         "<Button name='B' check='1'><Grid row='0' column='1'/></Button>"
                         "<Button name='C'><Grid row='0' column='2' span='2'/></Button>"
                         "<Button name='D'/></panel>"));
    }

    std::wstring File() const { return m_folder / L"panel.xml"; }
    const GridInfo& PlaceOf(std::size_t index) const { return m_layout.Placements()[index].grid; }

    test_support::TemporaryFolder m_folder;
    PanelLayout m_layout;
};

TEST(PanelGrid, HoldsWhatLiesOnItAsAWhole)
{
    EXPECT_TRUE(PanelGrid::Holds(Place(0, 0)));
    EXPECT_TRUE(PanelGrid::Holds(Place(2, 11)));
    EXPECT_TRUE(PanelGrid::Holds(Place(0, 0, 12, 3)));
    EXPECT_FALSE(PanelGrid::Holds(GridInfo()));
    EXPECT_FALSE(PanelGrid::Holds(Place(3, 0)));
    EXPECT_FALSE(PanelGrid::Holds(Place(0, 12)));
    EXPECT_FALSE(PanelGrid::Holds(Place(0, 11, 1.1)));
    EXPECT_FALSE(PanelGrid::Holds(Place(-2, 0)));
}

TEST(PanelGrid, HoldsNothingThatCannotBeHitOrIsNoNumber)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double size : {0.0, -1.0, 0.2, 1e308, infinity, -infinity, nan}) {
        EXPECT_FALSE(PanelGrid::Holds(Place(0, 0, size))) << size;
        EXPECT_FALSE(PanelGrid::Holds(Place(0, 0, 1, size))) << size;
    }
    for (const double shift : {1e308, infinity, -infinity, nan, -0.5}) {
        GridInfo place = Place(0, 0);
        place.offset = shift;
        EXPECT_FALSE(PanelGrid::Holds(place)) << shift;
        place.offset = 0;
        place.displacement = shift;
        EXPECT_FALSE(PanelGrid::Holds(place)) << shift;
    }
    EXPECT_FALSE(PanelGrid::Holds(Place(INT_MAX, INT_MAX)));
    EXPECT_FALSE(PanelGrid::Holds(Place(INT_MIN, INT_MIN)));
}

TEST(PanelGrid, ShiftsAndSizesCountInCells)
{
    GridInfo shifted = Place(1, 3, 2, 1.5);
    shifted.offset = 0.5;
    shifted.displacement = -0.5;
    const CRect cell = PanelGrid::AreaOf(Place(0, 0), PanelGrid::consoleSize);
    const CRect next = PanelGrid::AreaOf(Place(1, 1), PanelGrid::consoleSize);
    const int width = next.left - cell.left;
    const int height = next.top - cell.top;
    const CRect area = PanelGrid::AreaOf(shifted, PanelGrid::consoleSize);
    EXPECT_EQ(area.left, cell.left + 3 * width + width / 2);
    EXPECT_EQ(area.top, cell.top + height / 2);
    EXPECT_EQ(area.Width(), cell.Width() + width);
    EXPECT_EQ(area.Height(), cell.Height() + height / 2);
}

TEST(PanelGrid, FindsTheCellOfEachOfItsPixels)
{
    for (int row = 0; row < PanelGrid::rows; ++row)
        for (int column = 0; column < PanelGrid::columns; ++column) {
            const CRect area = PanelGrid::AreaOf(Place(row, column), PanelGrid::consoleSize);
            for (const CPoint pixel : {area.TopLeft(), area.CenterPoint()}) {
                const auto cell = PanelGrid::CellAt(pixel, PanelGrid::consoleSize);
                ASSERT_TRUE(cell);
                EXPECT_EQ(cell->row, row);
                EXPECT_EQ(cell->column, column);
            }
        }
    EXPECT_FALSE(PanelGrid::CellAt({0, 0}, PanelGrid::consoleSize));
    EXPECT_FALSE(PanelGrid::CellAt({-50, 50}, PanelGrid::consoleSize));
    EXPECT_FALSE(PanelGrid::CellAt({1024, 200}, PanelGrid::consoleSize));
}

TEST(PanelGrid, NeighboursDoNotOverlap)
{
    EXPECT_FALSE(PanelGrid::Overlap(Place(0, 0), Place(0, 1)));
    EXPECT_FALSE(PanelGrid::Overlap(Place(0, 0), Place(1, 0)));
    EXPECT_TRUE(PanelGrid::Overlap(Place(0, 0, 1.5), Place(0, 1)));
    EXPECT_TRUE(PanelGrid::Overlap(Place(0, 0, 3, 3), Place(1, 1)));
    EXPECT_TRUE(PanelGrid::Overlap(Place(1, 1), Place(1, 1)));
}

TEST_F(PanelLayoutTest, ReadsPlacementsInTheirOrder)
{
    LoadThree();
    ASSERT_EQ(m_layout.Placements().size(), 4u);
    EXPECT_EQ(m_layout.Placements()[1].name, L"B");
    EXPECT_TRUE(m_layout.Placements()[1].check);
    EXPECT_EQ(PlaceOf(2), Place(0, 2, 2));
    EXPECT_FALSE(PlaceOf(3).IsValid());
}

TEST_F(PanelLayoutTest, LeavesOutNamelessAndRepeatedPlacements)
{
    ASSERT_TRUE(Load("<p><a/><a name=''/><a name='A'><Grid row='1' column='1'/></a>"
                     "<a name='A'><Grid row='2' column='2'/></a><a name='a'/></p>"));
    ASSERT_EQ(m_layout.Placements().size(), 2u);
    EXPECT_EQ(PlaceOf(0), Place(1, 1));
    EXPECT_EQ(m_layout.Placements()[1].name, L"a");
    EXPECT_FALSE(PlaceOf(1).IsValid()); // does not take the place of the button before
}

TEST_F(PanelLayoutTest, TheExampleOfItsPageIsReadAsItSays)
{
    const std::string page = test_support::ReadFile(L"" FORMAT_PAGE);
    const std::size_t begin = page.find("```xml") + 7;
    ASSERT_TRUE(Load(page.substr(begin, page.find("```", begin) - begin)));
    ASSERT_EQ(m_layout.Placements().size(), 3u);
    EXPECT_EQ(PlaceOf(0), Place(0, 0, 2, 2));
    EXPECT_EQ(PlaceOf(1), Place(0, 2, 2));
    EXPECT_EQ(PlaceOf(2).offset, 0.5);
    EXPECT_TRUE(m_layout.Placements()[2].check);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_TRUE(PanelGrid::Holds(PlaceOf(i)));
}

TEST_F(PanelLayoutTest, AFileThatCannotBeReadChangesNothing)
{
    LoadThree();
    EXPECT_FALSE(Load("<panel>"));
    EXPECT_FALSE(m_layout.Load(m_folder / L"missing.xml"));
    EXPECT_EQ(m_layout.Placements().size(), 4u);
    EXPECT_TRUE(Load("<panel/>"));
    EXPECT_TRUE(m_layout.Placements().empty());
}

TEST_F(PanelLayoutTest, ComesBackFromItsFile)
{
    ASSERT_TRUE(Load("<panel><b name='\xC3\xA4 &amp; &lt;' check='5'><Grid row='1' column='2' "
                     "height='0.5' span='2.25' offset='-0.125' displacement='1e-2'/></b>"
                     "<b name='B'/><b name='C'><Grid row='70' column='-5'/></b></panel>"));
    ASSERT_TRUE(m_layout.Save(File()));
    PanelLayout again;
    ASSERT_TRUE(again.Load(File()));
    EXPECT_EQ(again.Placements(), m_layout.Placements());
}

TEST_F(PanelLayoutTest, AButtonMovesToAFreeCell)
{
    LoadThree();
    EXPECT_TRUE(m_layout.Move(0, 2, 11));
    EXPECT_EQ(PlaceOf(0), Place(2, 11));
    EXPECT_EQ(PlaceOf(1), Place(0, 1));
}

TEST_F(PanelLayoutTest, AButtonThatIsThereTakesTheOthersCell)
{
    LoadThree();
    EXPECT_TRUE(m_layout.Move(0, 0, 1));
    EXPECT_EQ(PlaceOf(0), Place(0, 1));
    EXPECT_EQ(PlaceOf(1), Place(0, 0));
}

TEST_F(PanelLayoutTest, WhatDoesNotFitStaysWhereItIs)
{
    LoadThree();
    EXPECT_FALSE(m_layout.Move(2, 0, 11)); // too wide for the last column
    EXPECT_FALSE(m_layout.Move(2, 0, 1));  // B would lie on it
    EXPECT_FALSE(m_layout.Move(0, 0, 3));  // C covers it
    EXPECT_FALSE(m_layout.Move(0, 0, 0));  // its own place
    EXPECT_FALSE(m_layout.Move(0, 3, 0));
    EXPECT_FALSE(m_layout.Move(0, -1, -1));
    EXPECT_FALSE(m_layout.Move(4, 0, 5)); // there is no such button
    EXPECT_EQ(PlaceOf(0), Place(0, 0));
    EXPECT_EQ(PlaceOf(1), Place(0, 1));
    EXPECT_EQ(PlaceOf(2), Place(0, 2, 2));
}

TEST_F(PanelLayoutTest, AMarkIsSetAndTakenAway)
{
    LoadThree();
    m_layout.ToggleCheck(0);
    m_layout.ToggleCheck(1);
    m_layout.ToggleCheck(99);
    ASSERT_TRUE(m_layout.Save(File()));
    ASSERT_TRUE(m_layout.Load(File()));
    EXPECT_TRUE(m_layout.Placements()[0].check);
    EXPECT_FALSE(m_layout.Placements()[1].check);
}

TEST_F(PanelLayoutTest, AFailureToSaveLeavesTheOldFileWhole)
{
    LoadThree();
    const std::string before = test_support::ReadFile(File());
    ASSERT_TRUE(m_layout.Move(0, 2, 2));
    {
        const base::File held(CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(held);
        EXPECT_FALSE(m_layout.Save(File()));
    }
    EXPECT_EQ(test_support::ReadFile(File()), before);
    EXPECT_FALSE(m_layout.Save(m_folder / L"no\\such\\folder\\panel.xml"));
    EXPECT_TRUE(m_layout.Save(File()));
    EXPECT_NE(test_support::ReadFile(File()), before);
}

// No sequence of moves loses a button, takes one off the grid or puts two on one place.
TEST_F(PanelLayoutTest, RandomMovesKeepTheGridInOrder)
{
    LoadThree();
    std::mt19937 random(9);
    int moves = 0;
    for (int round = 0; round < 2000; ++round) {
        const auto index = random() % 3;
        const int row = static_cast<int>(random() % 5) - 1;
        const int column = static_cast<int>(random() % 14) - 1;
        if (m_layout.Move(index, row, column)) ++moves;
        for (std::size_t a = 0; a < 3; ++a) {
            ASSERT_TRUE(PanelGrid::Holds(PlaceOf(a)));
            for (std::size_t b = 0; b < a; ++b)
                ASSERT_FALSE(PanelGrid::Overlap(PlaceOf(a), PlaceOf(b)));
        }
    }
    EXPECT_GT(moves, 500);
    EXPECT_EQ(PlaceOf(2).span, 2);
    EXPECT_EQ(m_layout.Placements().size(), 4u);
}

TEST_F(PanelLayoutTest, AHundredThousandPlacementsAreReadAndSaved)
{
    std::string text = "<panel>";
    for (int i = 0; i < 100000; ++i)
        text += "<b name='" + std::to_string(i) + "'><Grid row='1' column='1'/></b>";
    ASSERT_TRUE(Load(text + "</panel>"));
    EXPECT_EQ(m_layout.Placements().size(), 100000u);
    EXPECT_TRUE(m_layout.Save(File()));
    EXPECT_TRUE(m_layout.Load(File()));
    EXPECT_EQ(m_layout.Placements().size(), 100000u);
}

} // namespace
