#include "window/MenuLook.h"

#include "base/DarkControls.h"
#include "base/Painting.h"
#include "base/Palette.h"
#include "window/MenuPicture.h"
#include "window/Menus.h"

#include <base/GdiHandles.h>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int textSize = ScopedFont::textSize - 1;
constexpr int lineHeight = 22;
constexpr int dividerHeight = 7;
constexpr int checkWidth = 24;
constexpr int pictureSize = 18;
constexpr int keyGap = 24;
constexpr int barMargin = 4;

constexpr UINT oneLine = DT_SINGLELINE | DT_VCENTER;

int Scaled(int pixels, int dpi)
{
    return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI);
}

CRect PlaceOfPicture(const CRect& check, int dpi)
{
    const CSize size(Scaled(pictureSize, dpi), Scaled(pictureSize, dpi));
    const CPoint middle = check.CenterPoint();
    return {CPoint(middle.x - size.cx / 2, middle.y - size.cy / 2), size};
}

} // namespace

HBRUSH MenuBackground()
{
    static const base::Brush brush(CreateSolidBrush(palette::header));
    return brush.get();
}

void DrawMenuBarRest(HWND window)
{
    MENUBARINFO bar = {};
    MENUBARINFO last = {};
    bar.cbSize = last.cbSize = sizeof bar;
    CRect frame;
    if (!GetMenuBarInfo(window, OBJID_MENU, 0, &bar) ||
        !GetMenuBarInfo(window, OBJID_MENU, GetMenuItemCount(GetMenu(window)), &last) ||
        !GetWindowRect(window, &frame))
        return;
    CRect rest(bar.rcBar);
    rest.left = last.rcBar.right;
    rest.OffsetRect(-frame.TopLeft());
    const HDC dc = GetWindowDC(window);
    FillRect(dc, &rest, MenuBackground());
    ReleaseDC(window, dc);
}

void MeasureMenuItem(MEASUREITEMSTRUCT& item, int dpi)
{
    const MenuText text = TextOfMenu(item.itemData);
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    const ScopedFont font(dc, Scaled(textSize, dpi), FW_NORMAL);
    int width = dc.GetTextExtent(text.name).cx;
    if (text.isOnBar)
        width += Scaled(2 * barMargin, dpi);
    else
        width += Scaled(checkWidth + 2 * keyGap, dpi) + dc.GetTextExtent(text.key).cx;
    item.itemWidth = static_cast<UINT>(width);
    item.itemHeight = static_cast<UINT>(Scaled(text.isLine ? dividerHeight : lineHeight, dpi));
}

void DrawMenuItem(const DRAWITEMSTRUCT& item, int dpi)
{
    const MenuText text = TextOfMenu(item.itemData);
    CDC& dc = *CDC::FromHandle(item.hDC);
    const bool isChosen = (item.itemState & (ODS_SELECTED | ODS_HOTLIGHT)) != 0;
    const bool isGrey = (item.itemState & ODS_GRAYED) != 0;
    CRect box(item.rcItem);
    dc.FillSolidRect(&box, isChosen && !isGrey ? palette::line : palette::header);
    if (text.isLine) {
        dc.FillSolidRect(box.left, box.CenterPoint().y, box.Width(), 1, palette::line);
        return;
    }
    const ScopedFont font(dc, Scaled(textSize, dpi), FW_NORMAL);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(isGrey ? palette::label : palette::text);
    if (text.isOnBar) {
        dc.DrawText(text.name, &box, DT_CENTER | oneLine);
        return;
    }
    CRect check = box;
    check.right = check.left + Scaled(checkWidth, dpi);
    if (item.itemState & ODS_CHECKED)
        DrawTick(dc, check.CenterPoint(), dpi);
    else if (text.picture)
        DrawMenuPicture(dc, PlaceOfPicture(check, dpi), text.picture, !isGrey);
    box.left = check.right;
    box.right -= Scaled(keyGap, dpi);
    dc.DrawText(text.name, &box, DT_LEFT | oneLine);
    dc.DrawText(text.key, &box, DT_RIGHT | oneLine);
}

} // namespace exam
