#include "window/WindowPlace.h"

#include <afxwin.h>

#include <algorithm>

namespace exam {

namespace {

constexpr wchar_t windowSection[] = L"Settings\\Window";
constexpr wchar_t panelSection[] = L"Settings\\Panel";
constexpr wchar_t leftEntry[] = L"Left";
constexpr wchar_t topEntry[] = L"Top";
constexpr wchar_t widthEntry[] = L"Width";
constexpr wchar_t heightEntry[] = L"Height";
constexpr wchar_t maximisedEntry[] = L"Maximised";
constexpr wchar_t hiddenEntry[] = L"Hidden";
constexpr wchar_t floatingEntry[] = L"Floating";

int Read(const wchar_t* section, const wchar_t* entry)
{
    return static_cast<int>(AfxGetApp()->GetProfileInt(section, entry, 0));
}

void Write(const wchar_t* section, const wchar_t* entry, int value)
{
    AfxGetApp()->WriteProfileInt(section, entry, value);
}

CRect ReadArea(const wchar_t* section)
{
    return {CPoint(Read(section, leftEntry), Read(section, topEntry)),
            CSize(Read(section, widthEntry), Read(section, heightEntry))};
}

void WriteArea(const wchar_t* section, const CRect& area)
{
    Write(section, leftEntry, area.left);
    Write(section, topEntry, area.top);
    Write(section, widthEntry, area.Width());
    Write(section, heightEntry, area.Height());
}

CRect WorkingArea()
{
    CRect area(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

// Nine tenths of the working area in its middle, as large as the least window at least.
CRect FirstArea()
{
    const CRect working = WorkingArea();
    const CSize size(std::max<int>(leastWindow.cx, working.Width() * 9 / 10),
                     std::max<int>(leastWindow.cy, working.Height() * 9 / 10));
    const CSize beside(std::max<int>(0, working.Width() - size.cx) / 2,
                       std::max<int>(0, working.Height() - size.cy) / 2);
    return {working.TopLeft() + beside, size};
}

// True when the user can take the window by its title.
bool IsWithinReach(const CRect& area)
{
    constexpr int titleHeight = 24;
    constexpr int enough = 80;
    CRect title = area;
    title.bottom = title.top + titleHeight;
    title.DeflateRect(enough, 0);
    return MonitorFromRect(&title, MONITOR_DEFAULTTONULL) != nullptr;
}

} // namespace

WindowPlace ReadWindowPlace()
{
    WindowPlace place;
    place.isMaximised = Read(windowSection, maximisedEntry) != 0;
    place.area = ReadArea(windowSection);
    const bool isLarge =
        place.area.Width() >= leastWindow.cx && place.area.Height() >= leastWindow.cy;
    if (!isLarge || !IsWithinReach(place.area)) place.area = FirstArea();
    return place;
}

void WriteWindowPlace(HWND window)
{
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(window, &placement)) return;
    CRect area = placement.rcNormalPosition;
    area.OffsetRect(WorkingArea().TopLeft()); // the platform counts from there
    WriteArea(windowSection, area);
    const bool wasMaximised = IsIconic(window) && (placement.flags & WPF_RESTORETOMAXIMIZED) != 0;
    Write(windowSection, maximisedEntry, IsZoomed(window) || wasMaximised);
}

PanelPlace ReadPanelPlace()
{
    PanelPlace place;
    place.isShown = Read(panelSection, hiddenEntry) == 0;
    place.isFloating = Read(panelSection, floatingEntry) != 0;
    place.area = ReadArea(panelSection);
    if (place.area.Height() <= 0 || !IsWithinReach(place.area)) place.area.SetRectEmpty();
    return place;
}

void WritePanelPlace(const PanelPlace& place)
{
    Write(panelSection, hiddenEntry, !place.isShown);
    Write(panelSection, floatingEntry, place.isFloating);
    WriteArea(panelSection, place.area);
}

} // namespace exam
