#pragma once

#include <base/ComHandles.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <memory>
#include <string_view>

namespace utils_statics {

using MemoryStream = base::ComPointer<IStream>;

// A stream over a copy of a file's content; null when the file cannot be read, is empty, or has
// more than 512 MiB.
MemoryStream StreamOfFile(const wchar_t* path);

// A stream over a copy of the bytes; null for none or too many, and when memory is short.
MemoryStream StreamOfBytes(std::string_view bytes);

// The image that the stream holds; null when there is none, or one too large (see MayBeDecoded).
std::unique_ptr<Gdiplus::Bitmap> Decode(const MemoryStream& stream);

} // namespace utils_statics
