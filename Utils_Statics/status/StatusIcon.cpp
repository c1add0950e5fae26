#include "status/StatusIcon.h"

#include "environment/ProfileSettings.h"

#include <base/WrapArithmetic.h>

namespace utils_statics {

namespace {

// Half of the height that the image leaves free. Deliberate: the rectangle's top edge does not
// count. The subtraction and the shift are unsigned, so an image that is too high goes far below
// the row instead of above it.
int CentredTop(const CRect& rect, UINT imageHeight)
{
    const auto height = static_cast<UINT>(base::wrap::Subtract(rect.bottom, rect.top));
    return static_cast<int>((height - imageHeight) >> 1);
}

void DrawAtRight(Gdiplus::Bitmap& image, const CRect& rect, Gdiplus::Graphics& graphics)
{
    const auto width = static_cast<int>(image.GetWidth());
    const UINT height = image.GetHeight();
    graphics.DrawImage(&image, base::wrap::Subtract(rect.right, width), CentredTop(rect, height),
                       width, static_cast<int>(height));
}

} // namespace

bool IsWanted(const wchar_t* setting)
{
    return ProfileNumber(L"Settings\\Status", setting, 0) != 0;
}

int DrawStatusIcon(const std::function<std::wstring()>& path, const CRect& rect,
                   Gdiplus::Graphics& graphics, bool isDark)
try {
    Gdiplus::Bitmap image(path().c_str());
    if (image.GetLastStatus() != Gdiplus::Ok) return 0;
    if (!isDark) DrawAtRight(image, rect, graphics);
    return static_cast<int>(image.GetWidth());
} catch (...) { // memory is short
    return 0;
}

} // namespace utils_statics
