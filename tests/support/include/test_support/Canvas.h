#pragma once

#include <test_support/DibSection.h>

#include <afxwin.h>

#include <cstdint>
#include <vector>

namespace test_support {

// A device context over pixels that the test reads; they are black at first.
class Canvas
{
public:
    Canvas(int width, int height)
        : m_width(width), m_height(height), m_bitmap(width, height, 32, DibSection::topDown)
    {
        dc.Attach(m_context.get());
    }
    ~Canvas() { dc.Detach(); }

    // All pixels, row by row, as 0xAARRGGBB.
    std::vector<std::uint32_t> Pixels() const
    {
        GdiFlush();
        return m_bitmap.Pixels();
    }
    COLORREF At(int x, int y) const
    {
        GdiFlush();
        const BYTE* const pixel = m_bitmap.bits() + (y * m_width + x) * 4;
        return RGB(pixel[2], pixel[1], pixel[0]);
    }
    int Width() const { return m_width; }
    int Height() const { return m_height; }

    CDC dc;

private:
    int m_width, m_height;
    DibSection m_bitmap;
    base::MemoryContext m_context{CreateCompatibleDC(nullptr)};
    base::Selection m_selection{m_context.get(), m_bitmap.get()};
};

} // namespace test_support
