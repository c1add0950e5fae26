#pragma once

#include <afxwin.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace exam {

/// The pixels of a bitmap, rows from the top, each 0x00RRGGBB.
std::vector<std::uint32_t> PixelsOf(HBITMAP bitmap);

/// True for no pixels, and for pixels of one colour.
bool IsEmpty(const std::vector<std::uint32_t>& pixels);

/// Paints what of the visible windows of this thread has changed.
void RepaintWindows();

/// The windows of this thread that a user sees: the smallest rectangle that holds them.
CRect AreaOfWindows();

/// Names a window of this thread that the screen's edges clip; empty when there is none.
std::wstring FindClippedWindow();

/// A text that `draw` draws and that does not fit its place; empty when there is none.
std::wstring FindCutText(const std::function<void(CDC&)>& draw);

/// The text of a label or a button of this thread's windows that does not fit it; empty when there
/// is none.
std::wstring FindCutLabel();

} // namespace exam
