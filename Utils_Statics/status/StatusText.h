#pragma once

#include <windows.h>
#include <gdiplus.h>
#include <objidl.h>

#include <string>

namespace utils_statics {

// Writes an item's text in the family "Arial" or, where that is missing, in the platform's generic
// sans serif family.
class StatusText
{
public:
    // `alignment` applies both horizontally and vertically.
    StatusText(Gdiplus::REAL points, int style, Gdiplus::StringAlignment alignment);

    void Draw(Gdiplus::Graphics& graphics, const std::wstring& text, const Gdiplus::RectF& layout,
              Gdiplus::ARGB colour) const;

private:
    Gdiplus::FontFamily m_arial;
    Gdiplus::Font m_font;
    Gdiplus::StringFormat m_format;
};

} // namespace utils_statics
