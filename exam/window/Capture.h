#pragma once

#include <base/GdiHandles.h>

#include <atltypes.h>

#include <string>

namespace exam {

/// The content of a part of a window's client area, or of the screen, whatever windows it shows,
/// for a null window.
base::Bitmap Capture(HWND window, const CRect& part);

/// Saves the content of a window's client area as a PNG file. False when it could not be written.
bool CaptureToPng(HWND window, const std::wstring& path);

} // namespace exam
