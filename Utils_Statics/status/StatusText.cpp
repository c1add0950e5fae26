#include "status/StatusText.h"

namespace utils_statics {

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
