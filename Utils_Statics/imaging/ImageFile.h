#pragma once

#include <base/ComHandles.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

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
// states a size that is too large (IsTooLarge), and for a GIF file without colours, on which some
// decoders crash. The platform judges every other file, image or not.
// The stream's position is undefined afterwards.
bool MayBeDecoded(IStream& file);

using MemoryStream = base::ComPointer<IStream>;

// A stream over a copy of a file's content; null when the file cannot be read, is empty, or has
// more than 512 MiB.
MemoryStream StreamOfFile(const wchar_t* path);

// A stream over a copy of the bytes; null for none or too many, and when memory is short.
MemoryStream StreamOfBytes(std::string_view bytes);

// The image that the stream holds; null when there is none, or one too large (see MayBeDecoded).
std::unique_ptr<Gdiplus::Bitmap> Decode(const MemoryStream& stream);

} // namespace utils_statics
