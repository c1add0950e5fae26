#pragma once

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <limits>

namespace utils_statics {

// Whether the pixels of this size do not fit into 2 GiB with the largest format of GDI+ (8 bytes a
// pixel). Implementations of GDI+ and of its decoders count bytes in 32 bits, do not notice an
// overflow and crash. A size without pixels is not too large.
constexpr bool IsTooLarge(std::int64_t width, std::int64_t height)
{
    constexpr std::int64_t mostPixels = std::numeric_limits<std::int32_t>::max() / 8;
    return width > 0 && height > 0 && height > mostPixels / width;
}

// Whether a bitmap of this size may be made.
constexpr bool IsBitmapSize(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && !IsTooLarge(width, height);
}

// Whether an image file may be given to GDI+: false when its header (BMP, GIF, ICO, JPEG, PNG,
// TIFF) states a size that IsTooLarge names. True for every other file, images or not, which are
// the platform's to judge. Leaves the stream's position anywhere.
bool MayBeDecoded(IStream& file);

} // namespace utils_statics
