#pragma once

#include <afxwin.h>

#include <cstdint>

namespace exam {

/// Paints a picture of grey levels, rows from the top without padding.
void PaintGrey(CDC& dc, CPoint at, CSize size, const std::uint8_t* levels);

} // namespace exam
