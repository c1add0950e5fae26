#include "status/StatusIcon.h"

#include "environment/ProfileSettings.h"

#include <base/WrapArithmetic.h>

namespace utils_statics {

namespace {

// Half of what is left of the rectangle's height. Its top edge does not count, deliberately. The
// subtraction and the shift are unsigned: an image that is too high goes far below the row instead
// of above it.
int CentredTop(const CRect& rect, UINT imageHeight)
{
    const auto height = static_cast<UINT>(base::wrap::Subtract(rect.bottom, rect.top));
    return static_cast<int>((height - imageHeight) >> 1);
}

// A picture of these pixels, which have to outlive it.
std::unique_ptr<Gdiplus::Bitmap> OverPixels(IconPixels& icon)
{
    const auto rowBytes = static_cast<INT>(icon.width * sizeof(Gdiplus::ARGB));
    return std::make_unique<Gdiplus::Bitmap>(icon.width, icon.height, rowBytes,
                                             PixelFormat32bppARGB,
                                             reinterpret_cast<BYTE*>(icon.pixels.data()));
}

} // namespace

bool IsWanted(const wchar_t* setting)
{
    return ProfileNumber(L"Settings\\Status", setting, 0) != 0;
}

StatusIcon::StatusIcon(const std::wstring& path)
    : m_pixels(FindIconPixels(path)),
      m_image(m_pixels ? OverPixels(*m_pixels) : std::make_unique<Gdiplus::Bitmap>(path.c_str())),
      m_isLoaded(m_image->GetLastStatus() == Gdiplus::Ok)
{
}

void StatusIcon::Draw(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    const int width = Width();
    const UINT height = m_image->GetHeight();
    graphics.DrawImage(m_image.get(), base::wrap::Subtract(rect.right, width),
                       CentredTop(rect, height), width, static_cast<int>(height));
}

int DrawStatusIcon(const std::wstring& path, const CRect& rect, Gdiplus::Graphics& graphics)
{
    const StatusIcon icon(path);
    if (!icon.IsLoaded()) return 0;
    icon.Draw(rect, graphics);
    return icon.Width();
}

} // namespace utils_statics
