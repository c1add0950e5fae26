#pragma once

#include "geometry/ScanRegion.h"

#include <cstdint>
#include <vector>

namespace utils_statics {

// Tells a search of the imaged region which rows of a column are worth a look.
//
// The image is covered by cells of 16 x 8 pixels. A cell is taken to be uniform when its four
// corners agree and the region's outline, as the forward conversion gives it, does not come near.
// Every other cell is to be searched pixel by pixel.
class RegionGrid
{
public:
    enum class Cell : std::uint8_t
    {
        outside, // no pixel of the region
        inside,  // the region all over
        mixed    // to be searched
    };
    static constexpr int cellWidth = 16;
    static constexpr int cellHeight = 8;

    RegionGrid(const ScanRegion& region, int width, int height);

    // The cell that pixel (x, y) lies in.
    Cell At(int x, int y) const { return m_cells[Index(x / cellWidth, y / cellHeight)]; }

    // A row of the grid near column x where the line was before the region's last one; -1 if there
    // is none.
    int RowBeforeLastLine(int x) const
    {
        return m_rowsBeforeLastLine[static_cast<std::size_t>(x / cellWidth)];
    }

private:
    std::size_t Index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
               static_cast<std::size_t>(column);
    }
    void CompareCorners(const ScanRegion& region, int width, int height);
    void MarkOutline(const ScanRegion& region);
    void MarkSegment(const UPoint& from, const UPoint& to);
    void MarkAround(double x, double y);
    void MarkAll();

    int m_columns; // of cells
    int m_rows;
    std::vector<Cell> m_cells;
    std::vector<int> m_rowsBeforeLastLine; // by column of cells
};

} // namespace utils_statics
