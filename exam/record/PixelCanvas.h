#pragma once

#include <afxwin.h>
#include <base/GdiHandles.h>

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

    explicit operator bool() const { return static_cast<bool>(m_selection); }

    CDC& Context() { return m_dc; }
    void Clear();

    // Copies a part, which lies within the picture, into `plane`: rows from the top.
    void Cut(const CRect& part, std::vector<unsigned int>& plane) const;

private:
    // Both make what they are named after and give its handle; null when the platform refuses.
    HDC MakeContext();
    HGDIOBJ MakeBitmap();

    CSize m_size;
    CDC m_dc;
    CBitmap m_bitmap;
    unsigned int* m_pixels = nullptr; // owned by the bitmap
    base::Selection m_selection;      // made of the members above
};

} // namespace exam
