#include "Utils_Statics/ButtonPlacement.h"

#include "text/TextView.h"

#include <zel_xml/zelXMLNode.h>

#include <new>

namespace {

constexpr const wchar_t* gridElement = L"Grid";

} // namespace

// NOLINTNEXTLINE(modernize-pass-by-value): contract
ButtonPlacement::ButtonPlacement(const std::wstring& buttonName, bool isChecked)
    : name(buttonName), check(isChecked)
{
}

ButtonPlacement::ButtonPlacement(const wchar_t* buttonName, bool isChecked)
    : name(utils_statics::OrEmpty(buttonName)), check(isChecked)
{
}

bool ButtonPlacement::operator==(const ButtonPlacement& other) const
{
    return check == other.check && grid == other.grid && name == other.name;
}

bool ButtonPlacement::operator!=(const ButtonPlacement& other) const
{
    return !(*this == other);
}

void ButtonPlacement::Load(const zelXMLNode& node)
{
    try {
        name = node.getAttribute(L"name");
    } catch (const std::bad_alloc&) {
        name.clear();
    }
    check = node.getAttributeInt(L"check", 0) != 0;
    grid.Load(node.getChildByName(gridElement, false)); // without the child the grid stays
}

void ButtonPlacement::Save(const zelXMLNode& node) const
{
    node.setAttribute(L"name", name);
    if (check) node.setAttributeInt(L"check", 1); // no else: an existing "check" stays
    if (grid.IsValid())
        grid.Save(node.getChildByName(gridElement, true));
    else
        node.removeChildByName(gridElement);
}
