#pragma once

#include <Utils_Statics/GridInfo.h>
#include <Utils_Statics/export.h>

#include <string>

class zelXMLNode;

/// Where a button stands on a panel, and whether it is shown checked. The button's name is the one
/// of ButtonAction. The element that holds a placement is the client's, as are its file and its
/// list; docs/formats/button-placements.md describes the attributes.
struct UTILS_STATICS_API ButtonPlacement
{
    std::wstring name;
    GridInfo grid;
    bool check = false;

    ButtonPlacement() = default;
    ButtonPlacement(const std::wstring& buttonName, bool isChecked);
    ButtonPlacement(const wchar_t* buttonName, bool isChecked);

    /// Names are compared exactly, grids by GridInfo.
    bool operator==(const ButtonPlacement& other) const;
    bool operator!=(const ButtonPlacement& other) const;

    /// Reads "name" (empty when missing), "check" (not checked when missing) and the child "Grid".
    /// An invalid element reads as one that has none of them.
    ///
    /// Without that child the grid deliberately stays what it was: whoever reads several elements
    /// into one placement calls grid.Reset() in between.
    void Load(const zelXMLNode& node);

    /// Writes "name", "check" when checked, and the child "Grid"; of a grid that is not valid the
    /// child is removed. A "check" that the element already has is deliberately left when this
    /// placement is not checked: write onto fresh elements.
    void Save(const zelXMLNode& node) const;
};
