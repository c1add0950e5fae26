#include "panel/PanelGrid.h"

#include <cmath>

namespace exam {

namespace {

constexpr int cellWidth = 84;
constexpr int cellHeight = 62;
constexpr int left = (PanelGrid::width - PanelGrid::columns * cellWidth) / 2;
constexpr int top = (PanelGrid::height - PanelGrid::rows * cellHeight) / 2;
constexpr int halfGap = 3;

// Numbers that differ by less are the same to a placement.
constexpr double resolution = 0.001;

// A button's edges in cells.
struct Extent
{
    explicit Extent(const GridInfo& place)
        : left(place.column + place.offset), top(place.row + place.displacement),
          right(left + place.span), bottom(top + place.height)
    {
    }

    double left, top, right, bottom;
};

int ToPixel(int origin, int cell, double position)
{
    return origin + static_cast<int>(std::lround(cell * position));
}

} // namespace

bool PanelGrid::Holds(const GridInfo& place)
{
    const Extent extent(place);
    // The comparisons are written so that no grid holds a NaN.
    return place.IsValid() && place.span >= smallestExtent && place.height >= smallestExtent &&
           extent.left >= -resolution && extent.right <= columns + resolution &&
           extent.top >= -resolution && extent.bottom <= rows + resolution;
}

bool PanelGrid::Overlap(const GridInfo& a, const GridInfo& b)
{
    const Extent first(a);
    const Extent second(b);
    return first.left < second.right - resolution && second.left < first.right - resolution &&
           first.top < second.bottom - resolution && second.top < first.bottom - resolution;
}

CRect PanelGrid::AreaOf(const GridInfo& place)
{
    const Extent extent(place);
    CRect area(ToPixel(left, cellWidth, extent.left), ToPixel(top, cellHeight, extent.top),
               ToPixel(left, cellWidth, extent.right), ToPixel(top, cellHeight, extent.bottom));
    area.DeflateRect(halfGap, halfGap);
    return area;
}

std::optional<PanelGrid::Cell> PanelGrid::CellAt(CPoint pixel)
{
    const CRect grid(left, top, left + columns * cellWidth, top + rows * cellHeight);
    if (!grid.PtInRect(pixel)) return std::nullopt;
    return Cell{(pixel.y - top) / cellHeight, (pixel.x - left) / cellWidth};
}

} // namespace exam
