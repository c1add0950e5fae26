#pragma once

#include <afxwin.h>

#include <vector>

namespace exam {

// A picture in memory that can be drawn on and read: 32-bit pixels (blue in the lowest byte), rows
// from the top.
class PixelCanvas
{
public:
    // Black. Empty when the platform refuses; drawing then does nothing and all pixels read as
    // black.
    explicit PixelCanvas(CSize size);
    ~PixelCanvas();
    PixelCanvas(const PixelCanvas&) = delete;
    PixelCanvas& operator=(const PixelCanvas&) = delete;

    explicit operator bool() const { return m_pixels != nullptr; }

    CDC& Context() { return m_dc; }
    void Clear();

    // Copies a part, which lies within the picture, into `plane`: rows from the top.
    void Cut(const CRect& part, std::vector<unsigned int>& plane) const;

private:
    CSize m_size;
    CDC m_dc;
    CBitmap m_bitmap;
    HGDIOBJ m_before = nullptr;       // what was selected into the context
    unsigned int* m_pixels = nullptr; // owned by the bitmap
};

} // namespace exam
