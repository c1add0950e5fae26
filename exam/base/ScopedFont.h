#pragma once

#include <afxwin.h>

namespace exam {

// Selects a font for the length of a scope.
class ScopedFont
{
public:
    static constexpr int textSize = 15; // pixels; of everything but the title

    ScopedFont(CDC& dc, int pixels, int weight) : m_dc(dc)
    {
        m_font.CreateFont(-pixels, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                          DEFAULT_PITCH | FF_SWISS, L"Arial");
        m_old = dc.SelectObject(&m_font);
    }
    ~ScopedFont() { m_dc.SelectObject(m_old); }
    ScopedFont(const ScopedFont&) = delete;
    ScopedFont& operator=(const ScopedFont&) = delete;

private:
    CDC& m_dc;
    CFont m_font;
    CFont* m_old = nullptr;
};

} // namespace exam
