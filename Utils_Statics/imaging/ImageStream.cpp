#include "imaging/ImageStream.h"

#include "imaging/ImageExtent.h"

#include <base/Handles.h>

#include <shlwapi.h>

#include <new>

namespace utils_statics {

namespace {

constexpr LONGLONG largestFile = 512LL * 1024 * 1024;

// The size is 0 for a file without one, such as a folder, and for a file that is too large.
DWORD SizeOf(const base::File& file)
{
    LARGE_INTEGER size;
    const bool isUsable = file && GetFileSizeEx(file.get(), &size) && size.QuadPart <= largestFile;
    return isUsable ? static_cast<DWORD>(size.QuadPart) : 0;
}

} // namespace

MemoryStream StreamOfFile(const wchar_t* path)
{
    const base::File file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    const DWORD size = SizeOf(file);
    const std::unique_ptr<char[]> bytes(new (std::nothrow) char[size]);
    DWORD read = 0;
    if (!bytes || !ReadFile(file.get(), bytes.get(), size, &read, nullptr)) return {};
    return StreamOfBytes({bytes.get(), read});
}

// The stream is the shell's. On some platforms a stream over global memory can no longer be read
// once a damaged image has sent the decoder beyond its end.
MemoryStream StreamOfBytes(std::string_view bytes)
{
    if (bytes.empty() || bytes.size() > largestFile) return {};
    return MemoryStream(SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()),
                                          static_cast<UINT>(bytes.size())));
}

std::unique_ptr<Gdiplus::Bitmap> Decode(const MemoryStream& stream)
{
    if (!stream || !MayBeDecoded(*stream.get())) return nullptr;
    stream.get()->Seek({}, STREAM_SEEK_SET, nullptr);
    auto image = std::make_unique<Gdiplus::Bitmap>(stream.get());
    if (image->GetLastStatus() == Gdiplus::Ok) return image;
    // Some implementations of GDI+ keep the stream of a damaged image; this releases its memory.
    stream.get()->SetSize({});
    return nullptr;
}

} // namespace utils_statics
