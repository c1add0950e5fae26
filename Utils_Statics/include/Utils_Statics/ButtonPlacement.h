#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/GridInfo.h>

#include <string>

class zelXMLNode;

/// The place of a button on a panel, and its check mark. `name` is the name of its ButtonAction.
/// The client chooses the element that holds a placement, its list and its file;
/// docs/formats/button-placements.md describes the attributes.
struct UTILS_STATICS_API ButtonPlacement
{
    std::wstring name;  ///< that of the button's ButtonAction
    GridInfo grid;      ///< where the button is
    bool check = false; ///< whether it carries a check mark

    ButtonPlacement() = default;
    /// A button that is not placed yet. A null name counts as an empty one.
    ButtonPlacement(const std::wstring& buttonName, bool isChecked);
    ButtonPlacement(const wchar_t* buttonName, bool isChecked);

    /// Names are compared exactly, grids by GridInfo.
    bool operator==(const ButtonPlacement& other) const;
    bool operator!=(const ButtonPlacement& other) const;

    /// Reads "name" (empty when missing), "check" (not checked when missing) and the child "Grid".
    /// An invalid element reads like one without any of them.
    ///
    /// Without that child the grid deliberately stays as it is. A caller that reads several
    /// elements into one placement therefore calls grid.Reset() in between.
    void Load(const zelXMLNode& node);

    /// Writes "name", "check" when checked, and the child "Grid"; removes the child when the grid
    /// is not valid. When this placement is not checked, a "check" that the element already has
    /// deliberately stays: write onto fresh elements.
    void Save(const zelXMLNode& node) const;
};
