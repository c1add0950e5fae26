#include "base/ScreenLayout.h"

#include <algorithm>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int headerHeight = 44;
constexpr int statusRowWidth = 460;
constexpr int panelWidth = 248;
constexpr int rulerWidth = 64;
constexpr int rulerHeight = 34; // below the image
constexpr int stripHeight = 200;

// The fixed form.
constexpr int consoleWidth = 1024;
constexpr int consoleHeight = 768;
constexpr int consoleStatusHeight = 32;

// The window. Where it is smaller than this, all lengths shrink with it.
constexpr int fullWidth = 780;
constexpr int fullHeight = 520;
constexpr int statusHeight = 26;
constexpr int timelineHeight = 36;
constexpr int toolsWidth = 56;
constexpr int toolsMargin = 8;
constexpr int markWidth = 150;
constexpr int badgeWidth = 96;
constexpr int gap = 6;
constexpr int leastControlPanel = 108;
constexpr int mostControlPanel = 200;

// Cuts a part off a rectangle and returns it.
CRect CutTop(CRect& from, int height)
{
    CRect cut = from;
    from.top = cut.bottom = cut.top + std::min<int>(height, from.Height());
    return cut;
}
CRect CutBottom(CRect& from, int height)
{
    CRect cut = from;
    from.bottom = cut.top = cut.bottom - std::min<int>(height, from.Height());
    return cut;
}
CRect CutLeft(CRect& from, int width)
{
    CRect cut = from;
    from.left = cut.right = cut.left + std::min<int>(width, from.Width());
    return cut;
}
CRect CutRight(CRect& from, int width)
{
    CRect cut = from;
    from.right = cut.left = cut.right - std::min<int>(width, from.Width());
    return cut;
}

double ScaleOf(const WindowRoom& room)
{
    return std::min(
        {room.dpi / 96.0, 1.0 * room.client.cx / fullWidth, 1.0 * room.client.cy / fullHeight});
}

// The parts of the line below the image: recording mark, dial, timeline and depth.
void DivideTimeline(ScreenLayout& layout, CRect line)
{
    const int between = layout.Scaled(gap);
    line.DeflateRect(between, between / 2);
    layout.dial = CutLeft(line, line.Height());
    CutLeft(line, between);
    layout.recordingMark = CutLeft(line, layout.Scaled(markWidth));
    CutLeft(line, between);
    layout.badge = CutRight(line, layout.Scaled(badgeWidth));
    CutRight(line, between);
    layout.timeline = line;
}

// Parts the image from the room of the depth scale.
void DivideImageArea(ScreenLayout& layout, bool isOnSide)
{
    layout.image = layout.imageArea;
    if (isOnSide)
        CutBottom(layout.image, layout.Scaled(rulerHeight));
    else
        CutRight(layout.image, layout.Scaled(rulerWidth));
    layout.image.right -= layout.image.Width() % 4; // rows of pixels need no padding
}

} // namespace

ScreenLayout ConsoleLayout(bool isOnSide)
{
    ScreenLayout layout;
    layout.client = {consoleWidth, consoleHeight};
    layout.movie = CRect(CPoint(0, 0), layout.client);
    CRect rest = layout.movie;
    layout.header = CutTop(rest, headerHeight);
    layout.statusRow = CutRight(layout.header, statusRowWidth);
    layout.status = CutBottom(rest, consoleStatusHeight);
    layout.panel = CutRight(rest, panelWidth);
    layout.imageArea = rest;
    layout.strip = CutBottom(rest, stripHeight);
    DivideImageArea(layout, isOnSide);
    // The corners are those in which a sector leaves room.
    const CPoint corner = layout.image.TopLeft();
    layout.recordingMark = CRect(corner + CPoint(16, 12), CSize(160, 24));
    layout.tools = CRect(corner + CPoint(12, 132), CSize(40, 400));
    layout.dial = CRect(CPoint(layout.image.right - 73, corner.y + 16), CSize(57, 57));
    layout.badge = CRect(CPoint(layout.image.right - 136, corner.y + 84), CSize(120, 26));
    return layout;
}

ScreenLayout WindowLayout(const WindowRoom& room)
{
    ScreenLayout layout;
    layout.client = room.client;
    layout.scale = ScaleOf(room);
    CRect rest(CPoint(0, 0), room.client);
    layout.header = CutTop(rest, layout.Scaled(headerHeight));
    layout.statusRow =
        CutRight(layout.header, std::min<int>(layout.Scaled(statusRowWidth), rest.Width() / 2));
    layout.status = CutBottom(rest, layout.Scaled(statusHeight));
    if (room.hasControlPanel)
        layout.controlPanel =
            CutBottom(rest, std::clamp<int>(room.client.cy / 5, layout.Scaled(leastControlPanel),
                                            layout.Scaled(mostControlPanel)));
    DivideTimeline(layout, CutBottom(rest, layout.Scaled(timelineHeight)));
    layout.movie = CRect(0, 0, room.client.cx, rest.bottom);
    layout.panel =
        CutRight(rest, std::min<int>(layout.Scaled(panelWidth), room.client.cx * 3 / 10));
    layout.tools = CutLeft(rest, layout.Scaled(toolsWidth));
    layout.tools.DeflateRect(layout.Scaled(toolsMargin), layout.Scaled(toolsMargin));
    if (room.hasStrip)
        layout.strip =
            CutBottom(rest, std::min<int>(layout.Scaled(stripHeight), rest.Height() * 2 / 5));
    layout.imageArea = rest;
    DivideImageArea(layout, room.isOnSide);
    return layout;
}

} // namespace exam
