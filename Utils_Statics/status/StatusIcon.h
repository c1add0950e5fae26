#pragma once

#include <afxwin.h>

#include <objidl.h>

#include <gdiplus.h>

#include <functional>
#include <string>

namespace utils_statics {

// The number stored in the profile section "Settings\\Status" says whether the user wants something
// shown; nothing stored means no.
bool IsWanted(const wchar_t* setting);

// Draws an item's image file unscaled at the right edge of a free part of the row; nothing while
// it is dark. Answers the image's width, which it takes dark or lit; 0 when it cannot be loaded, as
// of an empty path, and when memory is too short to make the path.
int DrawStatusIcon(const std::function<std::wstring()>& path, const CRect& rect,
                   Gdiplus::Graphics& graphics, bool isDark = false);

} // namespace utils_statics
