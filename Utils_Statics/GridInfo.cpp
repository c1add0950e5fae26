#include "Utils_Statics/GridInfo.h"

#include <zel_xml/zelXMLNode.h>

#include <cmath>

namespace {

constexpr int notPlaced = -1;
constexpr double defaultExtent = 1.0;
constexpr double defaultShift = 0.0;

// Numbers that differ by less count as equal.
constexpr double resolution = 0.001;

// Binary numbers only approximate thousandths: 1.001 - 1.0 is below 0.001, 1.0 - 0.999 above it.
// Differences this near to the resolution therefore count as exactly the resolution.
constexpr double rounding = 1e-9;

bool DifferByLess(double a, double b) noexcept
{
    return std::abs(a - b) < resolution - rounding;
}

bool DifferByMore(double a, double b) noexcept
{
    return std::abs(a - b) > resolution + rounding;
}

void SaveReal(const zelXMLNode& node, const wchar_t* name, double value, double defaultValue)
{
    if (DifferByMore(value, defaultValue))
        node.setAttributeDouble(name, value, -1);
    else
        node.removeAttribute(name);
}

} // namespace

GridInfo::GridInfo() noexcept
{
    Reset();
}

void GridInfo::Reset() noexcept
{
    row = notPlaced;
    column = notPlaced;
    height = defaultExtent;
    span = defaultExtent;
    offset = defaultShift;
    displacement = defaultShift;
}

bool GridInfo::IsValid() const noexcept
{
    return row != notPlaced && column != notPlaced;
}

bool GridInfo::operator==(const GridInfo& other) const noexcept
{
    return row == other.row && column == other.column && DifferByLess(height, other.height) &&
           DifferByLess(span, other.span) && DifferByLess(offset, other.offset) &&
           DifferByLess(displacement, other.displacement);
}

bool GridInfo::operator!=(const GridInfo& other) const noexcept
{
    return !(*this == other);
}

void GridInfo::Load(const zelXMLNode& node)
{
    if (!node.isValid()) return;
    row = node.getAttributeInt(L"row", notPlaced);
    column = node.getAttributeInt(L"column", notPlaced);
    height = node.getAttributeDouble(L"height", defaultExtent);
    span = node.getAttributeDouble(L"span", defaultExtent);
    offset = node.getAttributeDouble(L"offset", defaultShift);
    displacement = node.getAttributeDouble(L"displacement", defaultShift);
}

void GridInfo::Save(const zelXMLNode& node) const
{
    if (!node.isValid()) return;
    node.setAttributeInt(L"row", row);
    node.setAttributeInt(L"column", column);
    SaveReal(node, L"height", height, defaultExtent);
    SaveReal(node, L"span", span, defaultExtent);
    SaveReal(node, L"offset", offset, defaultShift);
    SaveReal(node, L"displacement", displacement, defaultShift);
}
