#pragma once

#include <Utils_Statics/ButtonPlacement.h>

#include <cstddef>
#include <string>
#include <vector>

namespace exam {

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

} // namespace exam
