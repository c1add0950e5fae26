#pragma once

#include <atltypes.h>

#include <string>

namespace exam {

/// Saves what a window shows in its client area as a PNG file. False when it could not be written.
bool CaptureToPng(HWND window, const std::wstring& path);

/// The same for a part of the screen, whatever windows it shows.
bool CaptureScreenToPng(const CRect& part, const std::wstring& path);

} // namespace exam
