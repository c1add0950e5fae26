#pragma once

#include <Utils_Statics/GridInfo.h>

#include <afxwin.h>

#include <optional>

namespace exam {

/// The grid of the control panel: its cells, and their places in pixels of the panel's client area.
struct PanelGrid
{
    static constexpr int columns = 12;
    static constexpr int rows = 3;
    static constexpr int width = 1024; ///< size of the client area
    static constexpr int height = 200;

    /// A button's sides must be at least this part of a cell, so that it can be hit.
    static constexpr double smallestExtent = 0.25;

    struct Cell
    {
        int row;
        int column;
    };

    /// True when a button with this place lies wholly on the grid and is large enough.
    static bool Holds(const GridInfo& place);

    /// True when two buttons on the grid overlap.
    static bool Overlap(const GridInfo& a, const GridInfo& b);

    /// The pixels of a button on the grid, without the gap to its neighbours.
    static CRect AreaOf(const GridInfo& place);

    /// The cell of a pixel; none outside the grid.
    static std::optional<Cell> CellAt(CPoint pixel);
};

} // namespace exam
