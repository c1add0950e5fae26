// CImgGeometry: the mask of the imaged region.
#include <Utils_Statics/CImgGeometry.h>

#include "geometry/MaskStrip.h"
#include "geometry/RegionGrid.h"
#include "geometry/ScanRegion.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <optional>

using namespace utils_statics;

namespace {

// Smaller images are searched pixel by pixel, which is quick enough there.
constexpr std::int64_t fewPixels = 16384;

// Finds the region's run in each column of the image. The scan converter decides wherever the grid
// says that an edge of the region may be near. Without a grid it decides everywhere.
class RunSearch
{
public:
    RunSearch(const ScanRegion& region, const RegionGrid* grid, int height)
        : m_region(region), m_grid(grid), m_height(height)
    {
    }

    // Empty when every row of the column is at or past the region's last line.
    std::optional<MaskRun> Column(int x) const
    {
        bool seen = m_grid && HintIsBeforeLastLine(x);
        MaskRun run;
        run.bottom = FindBottom(x, m_grid, seen);
        // Rows that were not asked could still lie before the last line.
        if (!seen && m_grid) run.bottom = FindBottom(x, nullptr, seen);
        if (!seen) return std::nullopt;
        if (run.bottom >= 0) run.top = FindTop(x, run.bottom);
        return run;
    }

private:
    bool HintIsBeforeLastLine(int x) const
    {
        const int hint = m_grid->RowBeforeLastLine(x);
        return hint >= 0 && m_region.At(x, hint, false).line < m_region.LineEnd();
    }

    // The lowest inside pixel of a column, or -1. Sets `seen` when a line before the last one is
    // met on the way up.
    int FindBottom(int x, const RegionGrid* grid, bool& seen) const
    {
        for (int y = m_height - 1; y >= 0; --y) {
            if (grid && grid->At(x, y) == RegionGrid::Cell::outside) {
                y -= y % RegionGrid::cellHeight; // the cell's first row
                continue;
            }
            const ScanRegion::Pixel pixel = m_region.At(x, y, false);
            seen = seen || pixel.line < m_region.LineEnd();
            if (pixel.inside) return y;
        }
        return -1;
    }

    int FindTop(int x, int bottom) const
    {
        int outside = -1;
        int inside = bottom;
        while (outside < inside - 1) {
            const int middle = (outside + inside) / 2;
            if (IsInside(x, middle))
                inside = middle;
            else
                outside = middle;
        }
        return inside;
    }

    bool IsInside(int x, int y) const
    {
        const RegionGrid::Cell cell = m_grid ? m_grid->At(x, y) : RegionGrid::Cell::mixed;
        if (cell == RegionGrid::Cell::mixed) return m_region.At(x, y, true).inside;
        return cell == RegionGrid::Cell::inside;
    }

    const ScanRegion& m_region;
    const RegionGrid* m_grid;
    int m_height;
};

// Null where every row is to be asked: in small images, for regions that have no simple outline,
// and without memory for a grid.
std::unique_ptr<const RegionGrid> MakeGrid(const ScanRegion& region, int width, int height)
try {
    if (std::int64_t{width} * height <= fewPixels || !region.IsPartOfFrame()) return nullptr;
    return std::make_unique<const RegionGrid>(region, width, height);
} catch (const std::bad_alloc&) {
    return nullptr;
}

} // namespace

bool CImgGeometry::CreateImageMask(unsigned char* mask, int width, int height, int samplingFreq,
                                   int steerAngle, int lines, CRect imageRect, int scanB,
                                   const ZelProbe* probe, int soundSpeed, const UPoint& origin,
                                   const UPoint& micronsPerPixel, unsigned char value)
{
    if (width < 1 || height < 1) return true;
    if (!mask) return false;
    const ScanRegion region(
        {probe, soundSpeed, samplingFreq, steerAngle, scanB, lines, origin, micronsPerPixel},
        {imageRect.left, imageRect.top, imageRect.right, imageRect.bottom});
    const std::unique_ptr<const RegionGrid> grid = MakeGrid(region, width, height);
    const RunSearch search(region, grid.get(), height);

    std::memset(mask, 0, static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    MaskStrip strip;
    for (int x = 0, first = 0; x < width; ++x) {
        const std::optional<MaskRun> run = search.Column(x);
        strip.Add(run.value_or(MaskRun{}));
        if (run && !strip.IsFull() && x + 1 < width) continue;
        strip.Fill(mask + first, width, value);
        if (!run) break; // what follows lies past the imaged region too
        first = x + 1;
    }
    return true;
}
