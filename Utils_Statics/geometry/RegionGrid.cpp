#include "geometry/RegionGrid.h"

#include <base/WrapArithmetic.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace utils_statics {

namespace {

constexpr int CellsOver(int size, int cell)
{
    return (size + cell - 1) / cell;
}

// Half a cell's height all round covers the rounding of the conversion and the bend of the outline
// between two lines.
constexpr double margin = RegionGrid::cellHeight / 2.0;

// An outline that reaches farther, or has more lines, is not followed.
constexpr int farthestPixel = 100000;
constexpr int mostLines = 4096;

bool IsNear(const UPoint& p)
{
    return p.x > -farthestPixel && p.x < farthestPixel && p.y > -farthestPixel &&
           p.y < farthestPixel;
}

} // namespace

RegionGrid::RegionGrid(const ScanRegion& region, int width, int height)
    : m_columns(CellsOver(width, cellWidth)), m_rows(CellsOver(height, cellHeight)),
      m_cells(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows)),
      m_rowsBeforeLastLine(static_cast<std::size_t>(m_columns), -1)
{
    CompareCorners(region, width, height);
    MarkOutline(region);
}

// Tests the corner pixels of all cells, row by row of the grid.
void RegionGrid::CompareCorners(const ScanRegion& region, int width, int height)
{
    const auto corners = static_cast<std::size_t>(m_columns) + 1;
    std::vector<char> above(corners);
    std::vector<char> below(corners);
    for (int row = 0; row <= m_rows; ++row) {
        const int y = std::min(row * cellHeight, height - 1);
        for (int column = 0; column <= m_columns; ++column) {
            const ScanRegion::Pixel pixel =
                region.At(std::min(column * cellWidth, width - 1), y, false);
            below[static_cast<std::size_t>(column)] = pixel.inside;
            if (column < m_columns && pixel.line < region.LineEnd())
                m_rowsBeforeLastLine[static_cast<std::size_t>(column)] = y;
        }
        for (int column = 0; row > 0 && column < m_columns; ++column) {
            const auto c = static_cast<std::size_t>(column);
            const int inside = above[c] + above[c + 1] + below[c] + below[c + 1];
            m_cells[Index(column, row - 1)] = inside == 0   ? Cell::outside
                                              : inside == 4 ? Cell::inside
                                                            : Cell::mixed;
        }
        above.swap(below);
    }
}

// The outline: the first and the last line between the first and the last sample, and the first and
// the last sample from line to line.
void RegionGrid::MarkOutline(const ScanRegion& region)
{
    const URect& rect = region.Rect();
    if (region.LineEnd() < 1 || region.LineEnd() > mostLines) return MarkAll();
    const int firstLine = base::wrap::Add(rect.left, 1);
    const int firstSample = base::wrap::Add(rect.top, 1);
    for (const int line : {firstLine, rect.right})
        MarkSegment(region.ToPixel(line, firstSample), region.ToPixel(line, rect.bottom));
    for (const int sample : {firstSample, rect.bottom})
        for (int i = 0; i < region.LineEnd() - 1; ++i)
            MarkSegment(region.ToPixel(base::wrap::Add(firstLine, i), sample),
                        region.ToPixel(base::wrap::Add(firstLine, i + 1), sample));
}

void RegionGrid::MarkSegment(const UPoint& from, const UPoint& to)
{
    if (!IsNear(from) || !IsNear(to)) return MarkAll();
    const int steps =
        1 + std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)) / (cellHeight / 2);
    for (int i = 0; i <= steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        MarkAround(from.x + part * (to.x - from.x), from.y + part * (to.y - from.y));
    }
}

void RegionGrid::MarkAround(double x, double y)
{
    const auto cell = [](double position, int size, int cells) {
        return static_cast<int>(std::clamp(std::floor(position / size), -1.0, cells * 1.0));
    };
    const int firstColumn = std::max(cell(x - margin, cellWidth, m_columns), 0);
    const int lastColumn = std::min(cell(x + margin, cellWidth, m_columns), m_columns - 1);
    const int firstRow = std::max(cell(y - margin, cellHeight, m_rows), 0);
    const int lastRow = std::min(cell(y + margin, cellHeight, m_rows), m_rows - 1);
    for (int row = firstRow; row <= lastRow; ++row)
        for (int column = firstColumn; column <= lastColumn; ++column)
            m_cells[Index(column, row)] = Cell::mixed;
}

void RegionGrid::MarkAll()
{
    std::fill(m_cells.begin(), m_cells.end(), Cell::mixed);
}

} // namespace utils_statics
