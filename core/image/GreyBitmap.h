#pragma once

#include <afxwin.h>

#include <cstdint>

namespace exam {

/// Paints a picture of grey levels, rows from the top without padding.
void PaintGrey(CDC& dc, CPoint at, CSize size, const std::uint8_t* levels);

/// The same of pixels of four bytes: blue, green, red, and one that is not used.
void PaintColours(CDC& dc, CPoint at, CSize size, const std::uint8_t* pixels);

} // namespace exam
