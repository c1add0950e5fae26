// The window's parts have their places at every size and resolution.
#include "base/ScreenLayout.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace exam;

namespace {

using Part = std::pair<const char*, CRect>;

// The parts that have to lie beside each other.
std::vector<Part> PartsOf(const ScreenLayout& layout)
{
    CRect ruler = layout.imageArea;
    if (layout.image.bottom < ruler.bottom)
        ruler.top = layout.image.bottom;
    else
        ruler.left = layout.image.right;
    return {{"header", layout.header},
            {"status row", layout.statusRow},
            {"tools", layout.tools},
            {"dial", layout.dial},
            {"badge", layout.badge},
            {"image", layout.image},
            {"ruler", ruler},
            {"strip", layout.strip},
            {"panel", layout.panel},
            {"timeline", layout.timeline},
            {"recording mark", layout.recordingMark},
            {"control panel", layout.controlPanel},
            {"status", layout.status}};
}

bool IsWithin(const CRect& inner, const CRect& outer)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom && inner.left <= inner.right && inner.top <= inner.bottom;
}

void ExpectApart(const std::vector<Part>& parts)
{
    for (std::size_t i = 0; i < parts.size(); ++i)
        for (std::size_t j = i + 1; j < parts.size(); ++j) {
            CRect both;
            EXPECT_FALSE(both.IntersectRect(&parts[i].second, &parts[j].second))
                << parts[i].first << " and " << parts[j].first;
        }
}

std::string NameOf(const WindowRoom& room)
{
    return std::to_string(room.client.cx) + " x " + std::to_string(room.client.cy) + " at " +
           std::to_string(room.dpi) + (room.hasControlPanel ? " with panel" : "") +
           (room.hasStrip ? " with strip" : "") + (room.isOnSide ? " on its side" : "");
}

// The client areas of windows from 800 x 600 to 3840 x 2160, with and without border and menu, and
// of one that is smaller than it can be.
std::vector<WindowRoom> Rooms()
{
    std::vector<WindowRoom> rooms;
    for (const CSize client :
         {CSize(640, 400), CSize(786, 535), CSize(800, 600), CSize(1024, 768), CSize(1264, 741),
          CSize(1280, 800), CSize(1366, 768), CSize(1919, 1079), CSize(2560, 1440),
          CSize(3840, 2160), CSize(800, 2160), CSize(3840, 600)})
        for (const int dpi : {96, 120, 144, 192})
            for (const bool hasControlPanel : {false, true})
                for (const bool hasStrip : {false, true})
                    for (const bool isOnSide : {false, true})
                        rooms.push_back({client, dpi, hasControlPanel, hasStrip, isOnSide});
    return rooms;
}

} // namespace

TEST(WindowLayout, NoPartLeavesTheWindowOrCoversAnother)
{
    for (const WindowRoom& room : Rooms()) {
        SCOPED_TRACE(NameOf(room));
        const ScreenLayout layout = WindowLayout(room);
        for (const Part& part : PartsOf(layout))
            EXPECT_TRUE(IsWithin(part.second, CRect(CPoint(0, 0), room.client))) << part.first;
        ExpectApart(PartsOf(layout));
        EXPECT_TRUE(IsWithin(layout.image, layout.imageArea));
        EXPECT_TRUE(IsWithin(layout.imageArea, layout.movie));
        EXPECT_TRUE(IsWithin(layout.panel, layout.movie));
    }
}

TEST(WindowLayout, EveryPartHasRoomAndTheImageMost)
{
    for (const WindowRoom& room : Rooms()) {
        SCOPED_TRACE(NameOf(room));
        const ScreenLayout layout = WindowLayout(room);
        EXPECT_EQ(layout.strip.IsRectEmpty(), !room.hasStrip);
        EXPECT_EQ(layout.controlPanel.IsRectEmpty(), !room.hasControlPanel);
        for (const Part& part : PartsOf(layout)) {
            if (part.second.IsRectEmpty()) continue;
            EXPECT_GE(part.second.Width(), 14) << part.first;
            EXPECT_GE(part.second.Height(), 14) << part.first;
        }
        EXPECT_GT(layout.image.Width(), layout.panel.Width());
        EXPECT_GT(layout.imageArea.Height(), layout.controlPanel.Height());
        EXPECT_EQ(layout.image.Width() % 4, 0);
    }
}

TEST(WindowLayout, LengthsFollowTheResolutionWhereThereIsRoom)
{
    const ScreenLayout plain = WindowLayout({{1920, 1080}, 96});
    const ScreenLayout fine = WindowLayout({{3840, 2160}, 192});
    EXPECT_EQ(fine.scale, 2 * plain.scale);
    EXPECT_EQ(fine.header.Height(), 2 * plain.header.Height());
    EXPECT_EQ(fine.panel.Width(), 2 * plain.panel.Width());
    EXPECT_LT(WindowLayout({{800, 600}, 192}).scale, 1.2);
}

TEST(WindowLayout, ALargerWindowGivesItsRoomToTheImage)
{
    const ScreenLayout small = WindowLayout({{1280, 800}, 96});
    const ScreenLayout large = WindowLayout({{1920, 1080}, 96});
    EXPECT_EQ(large.image.Width() - small.image.Width(), 640);
    EXPECT_GT(large.image.Height(), small.image.Height() + 200);
}

TEST(ConsoleLayout, IsThatOfAConsole)
{
    const ScreenLayout layout = ConsoleLayout();
    EXPECT_EQ(layout.client, CSize(1024, 768));
    EXPECT_EQ(layout.image, CRect(0, 44, 712, 736));
    EXPECT_TRUE(layout.controlPanel.IsRectEmpty());
    EXPECT_TRUE(layout.timeline.IsRectEmpty());
    for (const Part& part : PartsOf(layout))
        EXPECT_TRUE(IsWithin(part.second, layout.movie)) << part.first;
}
