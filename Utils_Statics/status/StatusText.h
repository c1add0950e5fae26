#pragma once

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

#include <string>

namespace utils_statics {

// How an item writes: the family "Arial", or where that is missing the platform's own without
// serifs.
class StatusText
{
public:
    // `alignment` holds both ways, across and down.
    StatusText(Gdiplus::REAL points, int style, Gdiplus::StringAlignment alignment);

    void Draw(Gdiplus::Graphics& graphics, const std::wstring& text, const Gdiplus::RectF& layout,
              Gdiplus::ARGB colour) const;

private:
    Gdiplus::FontFamily m_arial;
    Gdiplus::Font m_font;
    Gdiplus::StringFormat m_format;
};

} // namespace utils_statics
