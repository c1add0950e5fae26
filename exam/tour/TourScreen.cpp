#include "tour/TourScreen.h"

#include <base/GdiHandles.h>

#include <algorithm>
#include <numeric>

namespace exam {

namespace {

BOOL CALLBACK AddVisible(HWND window, LPARAM list)
{
    if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

// The visible windows of this thread that have no parent.
std::vector<HWND> Windows()
{
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), AddVisible, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

CRect AreaOf(HWND window)
{
    CRect area;
    GetWindowRect(window, &area);
    return area;
}

// The title of a window, or its class.
std::wstring NameOf(HWND window)
{
    wchar_t name[256] = {};
    if (GetWindowTextW(window, name, 256) == 0) GetClassNameW(window, name, 256);
    return name;
}

CRect Screen()
{
    return {CPoint(GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN)),
            CSize(GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN))};
}

// Looks at one record of a drawing. A cut text ends the walk.
int CALLBACK LookForCutText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM result)
{
    if (record->iType != EMR_EXTTEXTOUTW) return TRUE;
    const auto& text = reinterpret_cast<const EMREXTTEXTOUTW*>(record)->emrtext;
    const auto* const bytes = reinterpret_cast<const BYTE*>(record);
    const std::wstring said(reinterpret_cast<const wchar_t*>(bytes + text.offString), text.nChars);
    const auto* const widths = reinterpret_cast<const INT*>(bytes + text.offDx);
    const LONG end = std::accumulate(widths, widths + text.nChars, text.ptlReference.x);
    const bool isCut = (text.fOptions & ETO_CLIPPED) != 0 &&
                       (text.ptlReference.x < text.rcl.left || end > text.rcl.right);
    if (!isCut && !said.ends_with(L"...")) return TRUE;
    *reinterpret_cast<std::wstring*>(result) = said;
    return FALSE;
}

bool IsLabel(HWND control)
{
    wchar_t name[16] = {};
    GetClassNameW(control, name, 16);
    return CompareStringOrdinal(name, -1, L"Static", -1, TRUE) == CSTR_EQUAL ||
           CompareStringOrdinal(name, -1, L"Button", -1, TRUE) == CSTR_EQUAL;
}

// Looks at one control. A cut text ends the walk.
BOOL CALLBACK LookForCutLabel(HWND control, LPARAM result)
{
    if (!IsLabel(control) || !IsWindowVisible(control)) return TRUE;
    const std::wstring text = NameOf(control);
    const base::WindowContext context(control);
    const base::Selection font(context.get(),
                               reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    CRect room;
    GetClientRect(control, &room);
    CRect needed(0, 0, room.Width(), 0);
    DrawTextW(context.get(), text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK);
    if (needed.Width() <= room.Width() && needed.Height() <= room.Height()) return TRUE;
    *reinterpret_cast<std::wstring*>(result) = text;
    return FALSE;
}

} // namespace

std::vector<std::uint32_t> PixelsOf(HBITMAP bitmap)
{
    BITMAP size{};
    if (GetObjectW(bitmap, sizeof size, &size) == 0) return {};
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.bmWidth;
    info.bmiHeader.biHeight = -size.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.bmWidth) *
                                      static_cast<std::size_t>(size.bmHeight));
    const base::WindowContext screen(nullptr);
    GetDIBits(screen.get(), bitmap, 0, static_cast<UINT>(size.bmHeight), pixels.data(), &info,
              DIB_RGB_COLORS);
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xFFFFFF; // the fourth byte is of no colour
    return pixels;
}

bool IsEmpty(const std::vector<std::uint32_t>& pixels)
{
    return std::ranges::adjacent_find(pixels, std::ranges::not_equal_to()) == pixels.end();
}

void RepaintWindows()
{
    for (const HWND window : Windows())
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

CRect AreaOfWindows()
{
    CRect all;
    for (const HWND window : Windows())
        all |= AreaOf(window);
    return all & Screen();
}

std::wstring FindClippedWindow()
{
    for (const HWND window : Windows())
        if (const CRect area = AreaOf(window); (area & Screen()) != area) return NameOf(window);
    return {};
}

std::wstring FindCutText(const std::function<void(CDC&)>& draw)
{
    const HDC recorder = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    std::wstring cut;
    if (!recorder) return cut;
    draw(*CDC::FromHandle(recorder));
    const HENHMETAFILE drawing = CloseEnhMetaFile(recorder);
    EnumEnhMetaFile(nullptr, drawing, LookForCutText, &cut, nullptr);
    DeleteEnhMetaFile(drawing);
    return cut;
}

std::wstring FindCutLabel()
{
    std::wstring cut;
    for (const HWND window : Windows())
        if (cut.empty()) EnumChildWindows(window, LookForCutLabel, reinterpret_cast<LPARAM>(&cut));
    return cut;
}

} // namespace exam
