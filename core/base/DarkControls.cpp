#include "base/DarkControls.h"

#include "base/Dpi.h"
#include "base/Painting.h"
#include "base/Palette.h"

#include <commctrl.h>
#include <dwmapi.h>
#include <uxtheme.h>

#include <algorithm>
#include <iterator>

namespace exam {

namespace {

constexpr int boxSize = 16; // pixels at 96 dpi
constexpr int strokeWidth = 2;

constexpr DWORD darkModeAttribute = 20; // DWMWA_USE_IMMERSIVE_DARK_MODE of later headers

CString TextOf(HWND window)
{
    CString text;
    const int length = GetWindowTextLengthW(window) + 1;
    GetWindowTextW(window, text.GetBuffer(length), length);
    text.ReleaseBuffer();
    return text;
}

CRect ClientOf(HWND window)
{
    CRect client;
    GetClientRect(window, &client);
    return client;
}

void DrawFrame(CDC& dc, const CRect& area, bool hasFocus)
{
    CBrush edge(hasFocus ? palette::accent : palette::label);
    dc.FrameRect(&area, &edge);
}

void DrawLine(CDC& dc, const CString& text, CRect area)
{
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::text);
    dc.DrawText(text, &area, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawPushButton(CDC& dc, HWND button)
{
    const bool isPressed = (SendMessageW(button, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
    DrawDarkButton(dc, button, isPressed, GetFocus() == button);
}

void DrawCheckBox(CDC& dc, HWND box)
{
    CRect area = ClientOf(box);
    dc.FillSolidRect(&area, palette::panel);
    const int dpi = DpiOf(box);
    const int size = MulDiv(boxSize, dpi, USER_DEFAULT_SCREEN_DPI);
    const CRect square(CPoint(area.left, area.CenterPoint().y - size / 2), CSize(size, size));
    dc.FillSolidRect(&square, palette::header);
    DrawFrame(dc, square, GetFocus() == box);
    if (SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED)
        DrawTick(dc, square.CenterPoint(), dpi);
    area.left = square.right + size / 2;
    DrawLine(dc, TextOf(box), area);
}

void DrawList(CDC& dc, HWND list)
{
    COMBOBOXINFO parts = {};
    parts.cbSize = sizeof parts;
    if (!GetComboBoxInfo(list, &parts)) return;
    const CRect area = ClientOf(list);
    dc.FillSolidRect(&area, palette::header);
    DrawFrame(dc, area, GetFocus() == list);
    const int dpi = DpiOf(list);
    const int half = MulDiv(4, dpi, USER_DEFAULT_SCREEN_DPI);
    CPen pen(PS_SOLID, MulDiv(strokeWidth, dpi, USER_DEFAULT_SCREEN_DPI), palette::text);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    const CPoint low = CRect(parts.rcButton).CenterPoint() + CPoint(0, half / 2);
    DrawLines(dc, {low - CSize(half, half), low, low + CPoint(half + 1, -half - 1)});
    CRect text(parts.rcItem);
    text.left += half / 2;
    DrawLine(dc, TextOf(list), text);
}

void DrawProgress(CDC& dc, HWND bar)
{
    CRect area = ClientOf(bar);
    dc.FillSolidRect(&area, palette::line);
    const auto ask = [bar](UINT message, WPARAM which) {
        return static_cast<int>(SendMessageW(bar, message, which, 0));
    };
    const int all = ask(PBM_GETRANGE, FALSE);
    if (all > 0) area.right = area.left + MulDiv(area.Width(), ask(PBM_GETPOS, 0), all);
    dc.FillSolidRect(&area, palette::accent);
}

using DrawControl = void (*)(CDC& dc, HWND control);

DrawControl DrawingOf(HWND control)
{
    wchar_t name[32] = {};
    GetClassNameW(control, name, 32);
    const CString kind(name);
    if (kind.CompareNoCase(WC_COMBOBOXW) == 0) return DrawList;
    if (kind.CompareNoCase(PROGRESS_CLASSW) == 0) return DrawProgress;
    const auto style = GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK;
    return style == BS_AUTOCHECKBOX ? DrawCheckBox : DrawPushButton;
}

// The messages at which the platform paints a control without WM_PAINT.
bool Paints(UINT message)
{
    constexpr UINT painting[] = {WM_SETFOCUS, WM_KILLFOCUS, WM_ENABLE,      WM_SETTEXT,
                                 BM_SETCHECK, BM_SETSTATE,  BM_SETSTYLE,    CB_SETCURSEL,
                                 PBM_SETPOS,  WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP,
                                 WM_KEYDOWN};
    return std::ranges::find(painting, message) != std::end(painting);
}

void Draw(HDC dc, HWND control)
{
    const base::Selection font(dc,
                               reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    DrawingOf(control)(*CDC::FromHandle(dc), control);
}

LRESULT CALLBACK Follow(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                        DWORD_PTR) noexcept
{
    if (message == WM_PAINT) {
        PAINTSTRUCT paint = {};
        Draw(BeginPaint(control, &paint), control);
        EndPaint(control, &paint);
        return 0;
    }
    const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
    if (message == WM_NCDESTROY) RemoveWindowSubclass(control, Follow, id);
    if (Paints(message) && IsWindowVisible(control))
        Draw(base::WindowContext(control).get(), control);
    return result;
}

} // namespace

void DrawDarkButton(CDC& dc, HWND button, bool isPressed, bool hasFocus)
{
    CRect box = ClientOf(button);
    dc.FillSolidRect(&box, isPressed ? palette::line : palette::header);
    DrawFrame(dc, box, hasFocus);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(IsWindowEnabled(button) ? palette::text : palette::label);
    dc.DrawText(TextOf(button), &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

LRESULT DarkColours(WPARAM context, COLORREF ground)
{
    static const base::Brush panel(CreateSolidBrush(palette::panel));
    static const base::Brush header(CreateSolidBrush(palette::header));
    auto* const dc = reinterpret_cast<HDC>(context);
    SetTextColor(dc, palette::text);
    SetBkColor(dc, ground);
    return reinterpret_cast<LRESULT>((ground == palette::panel ? panel : header).get());
}

void Darken(HWND control)
{
    SetWindowSubclass(control, Follow, 1, 0);
    COMBOBOXINFO parts = {};
    parts.cbSize = sizeof parts;
    if (GetComboBoxInfo(control, &parts)) DarkenScrollBars(parts.hwndList);
}

void DarkenFrame(HWND window)
{
    const BOOL isDark = TRUE;
    DwmSetWindowAttribute(window, darkModeAttribute, &isDark, sizeof isDark);
}

void DarkenScrollBars(HWND control)
{
    SetWindowTheme(control, L"DarkMode_Explorer", nullptr);
}

void DrawTick(CDC& dc, CPoint middle, int dpi)
{
    const auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
    CPen pen(PS_SOLID, scaled(strokeWidth), palette::accent);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    const CPoint low = middle + CPoint(-scaled(1), scaled(4));
    DrawLines(dc, {low - CSize(scaled(4), scaled(4)), low, low + CPoint(scaled(7), -scaled(9))});
}

} // namespace exam
