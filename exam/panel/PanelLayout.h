#pragma once

#include <Utils_Statics/ButtonPlacement.h>
#include <Utils_Statics/GridInfo.h>

#include <afxwin.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The grid of the control panel: its cells, and their places in pixels of the panel's client area,
/// which they fill.
struct PanelGrid
{
    static constexpr int columns = 12;
    static constexpr int rows = 3;

    /// The size of the client area on a console.
    static constexpr CSize consoleSize{1024, 200};

    /// The pixels of a client area that stand for one pixel of a console's panel.
    static double ScaleOf(CSize client);

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

    /// The pixels of a button on the grid of a client area, without the gap to its neighbours.
    static CRect AreaOf(const GridInfo& place, CSize client);

    /// The cell of a pixel; none outside the grid.
    static std::optional<Cell> CellAt(CPoint pixel, CSize client);
};

/// The place of each button on the control panel: the content of the protocol file "panel.xml"
/// (docs/formats/panel.md). Buttons whose place is not on the grid stay in the list, so that saving
/// loses none, and take no room.
class PanelLayout
{
public:
    /// Replaces the layout by a file's. Elements without a name are left out; of several with one
    /// name the first stays. False, with the layout unchanged, when the file cannot be read.
    bool Load(const std::wstring& path);

    /// Writes the file so that a failure leaves the old one whole. False when it failed.
    bool Save(const std::wstring& path) const;

    const std::vector<ButtonPlacement>& Placements() const { return m_placements; }

    /// Moves a button to a cell. The button that begins there takes the other's cell. False, with
    /// nothing changed, when either button does not fit into its new place, or the place is the old
    /// one.
    bool Move(std::size_t index, int row, int column);

    /// Sets the user's mark on a button, or removes it.
    void ToggleCheck(std::size_t index);

private:
    std::vector<ButtonPlacement> m_placements;
};

/// The name of the protocol file that holds the panel's layout.
inline constexpr const wchar_t* panelFileName = L"panel.xml";

/// The path of the copy that is in force: the user's, the factory's or the base copy.
std::wstring PanelFileInForce();

/// The first of the panel's files that are in force and cannot be read; empty when all can.
std::wstring UnreadablePanelFile();

/// The path that the user's copy is saved to.
std::wstring PanelSaveFile();

} // namespace exam
