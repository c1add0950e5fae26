#pragma once

#include <windows.h>
#include <objidl.h>

#include <cstdint>
#include <limits>

namespace utils_statics {

// True when the pixels of this size do not fit into 2 GiB in the largest format of GDI+ (8 bytes a
// pixel). Some implementations of GDI+ and its decoders count bytes in 32 bits and crash on an
// overflow. A size without pixels is not too large.
constexpr bool IsTooLarge(std::int64_t width, std::int64_t height)
{
    constexpr std::int64_t mostPixels = std::numeric_limits<std::int32_t>::max() / 8;
    return width > 0 && height > 0 && height > mostPixels / width;
}

// True when a bitmap of this size may be created.
constexpr bool IsBitmapSize(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && !IsTooLarge(width, height);
}

// True when a file may be given to GDI+. False when its header (BMP, GIF, ICO, JPEG, PNG, TIFF)
// states a size that is too large (IsTooLarge). The platform judges every other file, image or not.
// The stream's position is undefined afterwards.
bool MayBeDecoded(IStream& file);

} // namespace utils_statics
