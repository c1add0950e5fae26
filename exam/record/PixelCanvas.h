#pragma once

#include <base/GdiHandles.h>

#include <afxwin.h>

#include <vector>

namespace exam {

// A picture in memory for drawing and reading. Pixels have 32 bits with blue in the lowest byte;
// rows go from the top.
class PixelCanvas
{
public:
    // Makes a black picture. When the platform refuses, drawing does nothing and all pixels read as
    // black.
    explicit PixelCanvas(CSize size);

    explicit operator bool() const { return static_cast<bool>(m_selection); }

    CDC& Context() { return m_dc; }
    void Clear();

    // Copies `part`, which lies within the picture, into `plane`.
    void Cut(const CRect& part, std::vector<unsigned int>& plane) const;

private:
    // Each function makes a member and returns its handle, which is null when the platform refuses.
    HDC MakeContext();
    HGDIOBJ MakeBitmap();

    CSize m_size;
    CDC m_dc;
    CBitmap m_bitmap;
    unsigned int* m_pixels = nullptr; // owned by the bitmap
    base::Selection m_selection;      // uses the members above
};

} // namespace exam
