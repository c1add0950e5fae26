#pragma once

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

#include <memory>
#include <string>
#include <vector>

namespace utils_statics {

// An image file's pixels: 32 bits each with straight transparency, rows from the top down. They
// need no GDI+, so they may outlive the application's use of it.
struct IconPixels
{
    int width = 0;
    int height = 0;
    std::vector<Gdiplus::ARGB> pixels{};
};

// The pixels of an image file, kept from call to call: reading the files is nearly all that
// painting the row takes. A file that was changed or replaced is read again. Null when the file is
// missing, is no image, or is larger than any icon. Only on the painting thread.
std::shared_ptr<IconPixels> FindIconPixels(const std::wstring& path);

} // namespace utils_statics
