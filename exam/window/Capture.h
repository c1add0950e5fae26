#pragma once

#include <atltypes.h>

#include <string>

namespace exam {

/// Saves the content of a window's client area as a PNG file. False when it could not be written.
bool CaptureToPng(HWND window, const std::wstring& path);

/// Saves a part of the screen, whatever windows it shows, as a PNG file. False when it could not be
/// written.
bool CaptureScreenToPng(const CRect& part, const std::wstring& path);

} // namespace exam
