#include "status/StatusDrawing.h"

#include "environment/Application.h"

#include <base/WrapArithmetic.h>

#include <new>

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
try {
    return ProfileNumber(L"Settings\\Status", setting, 0) != 0;
} catch (const std::bad_alloc&) {
    return false;
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

StatusText::StatusText(Gdiplus::REAL points, int style, Gdiplus::StringAlignment alignment)
    : m_arial(L"Arial"),
      m_font(m_arial.IsAvailable() ? &m_arial : Gdiplus::FontFamily::GenericSansSerif(), points,
             style, Gdiplus::UnitPoint)
{
    m_format.SetAlignment(alignment);
    m_format.SetLineAlignment(alignment);
}

void StatusText::Draw(Gdiplus::Graphics& graphics, const std::wstring& text,
                      const Gdiplus::RectF& layout, Gdiplus::ARGB colour) const
{
    const Gdiplus::SolidBrush brush{Gdiplus::Color(colour)};
    graphics.DrawString(text.c_str(), static_cast<INT>(text.size()), &m_font, layout, &m_format,
                        &brush);
}

} // namespace utils_statics
