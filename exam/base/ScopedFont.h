#pragma once

#include <base/GdiHandles.h>

#include <afxwin.h>

namespace exam {

/// Selects a font for the length of a scope.
class ScopedFont
{
public:
    static constexpr int textSize = 15; ///< pixels; for everything but the title

    ScopedFont(CDC& dc, int pixels, int weight)
        : m_selection(dc.GetSafeHdc(), Create(pixels, weight))
    {
    }

private:
    HGDIOBJ Create(int pixels, int weight)
    {
        m_font.CreateFont(-pixels, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                          DEFAULT_PITCH | FF_SWISS, L"Arial");
        return m_font.GetSafeHandle();
    }

    CFont m_font; // initialised before the selection, whose argument creates it
    base::Selection m_selection;
};

} // namespace exam
