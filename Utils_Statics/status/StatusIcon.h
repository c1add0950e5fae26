#pragma once

#include "status/IconPixels.h"

#include <afxwin.h>

#include <memory>
#include <string>

namespace utils_statics {

// The number stored in the profile section "Settings\Status" says whether the user wants something
// shown; nothing stored means no.
bool IsWanted(const wchar_t* setting);

// An item's image file, drawn unscaled at the right edge of a free part of the row.
class StatusIcon
{
public:
    // An empty path, and a file that is no image, give an icon that is not loaded.
    explicit StatusIcon(const std::wstring& path);

    bool IsLoaded() const { return m_isLoaded; }
    int Width() const { return static_cast<int>(m_image->GetWidth()); }
    void Draw(const CRect& rect, Gdiplus::Graphics& graphics) const;

private:
    std::shared_ptr<IconPixels> m_pixels; // of m_image, or null when it has its own
    std::unique_ptr<Gdiplus::Bitmap> m_image;
    bool m_isLoaded;
};

// The whole of it: draws the icon and answers the width used, 0 when it cannot be loaded.
int DrawStatusIcon(const std::wstring& path, const CRect& rect, Gdiplus::Graphics& graphics);

} // namespace utils_statics
