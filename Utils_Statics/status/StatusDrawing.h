#pragma once

#include <afxwin.h>

#include <gdiplus.h>
#include <objidl.h>

#include <functional>
#include <string>

namespace utils_statics {

// True when the user wants something shown, by the number stored in the profile section
// "Settings\\Status". No stored number means false, and so does want of memory.
bool IsWanted(const wchar_t* setting);

// Draws an item's image file unscaled at the right edge of a free part of the row; nothing while
// the item is dark. Returns the image's width, which is taken whether dark or lit. The width is 0
// when the image cannot be loaded, for an empty path, and when memory is too short for the path.
int DrawStatusIcon(const std::function<std::wstring()>& path, const CRect& rect,
                   Gdiplus::Graphics& graphics, bool isDark = false);

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
