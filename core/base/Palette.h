#pragma once

#include <windows.h>

/// The colours of the sample application. The image is grey on black. Everything else is subdued,
/// so that the image stands out.
namespace exam::palette {

constexpr COLORREF background = RGB(0, 0, 0);
constexpr COLORREF header = RGB(24, 32, 44);
constexpr COLORREF panel = RGB(16, 22, 30);
constexpr COLORREF line = RGB(52, 66, 84);
constexpr COLORREF text = RGB(214, 222, 232);
constexpr COLORREF label = RGB(130, 146, 166);
constexpr COLORREF scale = RGB(170, 184, 200);
constexpr COLORREF accent = RGB(255, 190, 80);
constexpr COLORREF recording = RGB(235, 50, 50);

/// A colour of text and one that it stands on.
struct Pair
{
    COLORREF text;
    COLORREF ground;
};

/// Every pair in which the application writes. Their contrast is at least 4.5 : 1.
constexpr Pair texts[] = {{text, background}, {text, header},       {text, panel},
                          {text, line},       {label, background},  {label, header},
                          {label, panel},     {scale, background},  {scale, header},
                          {scale, line},      {accent, background}, {accent, header},
                          {accent, line}};

} // namespace exam::palette
