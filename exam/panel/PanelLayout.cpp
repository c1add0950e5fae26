#include "panel/PanelLayout.h"

#include "base/FileReader.h"

#include <Utils_Statics/MfcConversions.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_xml/XMLEditing.h>
#include <zel_xml/zelXMLFile.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace exam {

namespace {

// Pixels on a console; they grow and shrink with the client area.
constexpr int marginX = 8;
constexpr int marginY = 7;
constexpr int halfGap = 3;

// The cells in pixels of a client area.
struct Cells
{
    explicit Cells(CSize client)
        : left(marginX * PanelGrid::ScaleOf(client)), top(marginY * PanelGrid::ScaleOf(client)),
          width((client.cx - 2 * left) / PanelGrid::columns),
          height((client.cy - 2 * top) / PanelGrid::rows)
    {
    }

    double left, top, width, height;
};

// Numbers that differ by less are the same to a placement.
constexpr double resolution = 0.001;

// A button's edges in cells.
struct Extent
{
    explicit Extent(const GridInfo& place)
        : left(place.column + place.offset), top(place.row + place.displacement),
          right(left + place.span), bottom(top + place.height)
    {
    }

    double left, top, right, bottom;
};

int ToPixel(double origin, double cell, double position)
{
    return static_cast<int>(std::lround(origin + cell * position));
}

using PlacementList = std::vector<ButtonPlacement>;

bool BeginsIn(const GridInfo& place, int row, int column)
{
    return place.row == row && place.column == column && PanelGrid::Holds(place);
}

// The button that begins in a cell; the number of buttons when there is none.
std::size_t FindInCell(const PlacementList& placements, int row, int column)
{
    const auto found =
        std::find_if(placements.begin(), placements.end(),
                     [&](const ButtonPlacement& each) { return BeginsIn(each.grid, row, column); });
    return static_cast<std::size_t>(found - placements.begin());
}

// True when a button lies on the grid and on no other button.
bool Fits(const PlacementList& placements, std::size_t index)
{
    const GridInfo& place = placements[index].grid;
    if (!PanelGrid::Holds(place)) return false;
    for (std::size_t other = 0; other < placements.size(); ++other) {
        const GridInfo& taken = placements[other].grid;
        if (other != index && PanelGrid::Holds(taken) && PanelGrid::Overlap(place, taken))
            return false;
    }
    return true;
}

void Put(GridInfo& place, int row, int column)
{
    place.row = row;
    place.column = column;
}

} // namespace

double PanelGrid::ScaleOf(CSize client)
{
    return std::min(1.0 * client.cx / consoleSize.cx, 1.0 * client.cy / consoleSize.cy);
}

bool PanelGrid::Holds(const GridInfo& place)
{
    const Extent extent(place);
    // The comparisons are written so that no grid holds a NaN.
    return place.IsValid() && place.span >= smallestExtent && place.height >= smallestExtent &&
           extent.left >= -resolution && extent.right <= columns + resolution &&
           extent.top >= -resolution && extent.bottom <= rows + resolution;
}

bool PanelGrid::Overlap(const GridInfo& a, const GridInfo& b)
{
    const Extent first(a);
    const Extent second(b);
    return first.left < second.right - resolution && second.left < first.right - resolution &&
           first.top < second.bottom - resolution && second.top < first.bottom - resolution;
}

CRect PanelGrid::AreaOf(const GridInfo& place, CSize client)
{
    const Extent extent(place);
    const Cells cells(client);
    CRect area(ToPixel(cells.left, cells.width, extent.left),
               ToPixel(cells.top, cells.height, extent.top),
               ToPixel(cells.left, cells.width, extent.right),
               ToPixel(cells.top, cells.height, extent.bottom));
    const int gap = static_cast<int>(std::lround(halfGap * ScaleOf(client)));
    area.DeflateRect(gap, gap);
    return area;
}

std::optional<PanelGrid::Cell> PanelGrid::CellAt(CPoint pixel, CSize client)
{
    const Cells cells(client);
    const double row = (pixel.y - cells.top) / cells.height;
    const double column = (pixel.x - cells.left) / cells.width;
    // The comparisons are written so that no cell holds a NaN.
    if (!(row >= 0 && row < rows && column >= 0 && column < columns)) return std::nullopt;
    return Cell{static_cast<int>(row), static_cast<int>(column)};
}

bool PanelLayout::Load(const std::wstring& path)
{
    zelXMLFile file;
    if (!file.open(path, true)) return false;
    m_placements.clear();
    std::set<std::wstring> names;
    zelXMLNode element = file.getRootElement().getFirstChild();
    for (; element.isValid(); ++element) {
        ButtonPlacement placement;
        placement.Load(element);
        if (placement.name.empty() || !names.insert(placement.name).second) continue;
        m_placements.push_back(placement);
    }
    return true;
}

bool PanelLayout::Save(const std::wstring& path) const
{
    zelXMLFile file;
    if (!zel_xml::CreateDocument(file, path.c_str(), L"panel")) return false;
    for (const ButtonPlacement& placement : m_placements)
        placement.Save(zel_xml::AppendChild(file.getRootElement(), L"Button"));
    return zel_xml::SaveDocument(file);
}

bool PanelLayout::Move(std::size_t index, int row, int column)
{
    if (index >= m_placements.size()) return false;
    PlacementList moved = m_placements;
    const GridInfo from = moved[index].grid;
    const std::size_t other = FindInCell(moved, row, column);
    if (other == index) return false;
    Put(moved[index].grid, row, column);
    if (other < moved.size()) Put(moved[other].grid, from.row, from.column);
    if (!Fits(moved, index) || (other < moved.size() && !Fits(moved, other))) return false;
    m_placements = std::move(moved);
    return true;
}

void PanelLayout::ToggleCheck(std::size_t index)
{
    if (index < m_placements.size()) m_placements[index].check = !m_placements[index].check;
}

std::wstring PanelFileInForce()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetProtocolFile(panelFileName));
}

std::wstring UnreadablePanelFile()
{
    for (const wchar_t* const name : {L"ButtonActions.xml", panelFileName}) {
        std::wstring path = QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetProtocolFile(name));
        zelXMLFile file;
        if (KindOfFile(path) != FileKind::missing && !file.open(path, true)) return path;
    }
    return {};
}

std::wstring PanelSaveFile()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetProtocolSavePath(panelFileName, nullptr));
}

} // namespace exam
