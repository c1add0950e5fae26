#include "imaging/ImageFile.h"

#include "imaging/ImageExtent.h"

#include <base/FileContents.h>

#include <shlwapi.h>

#include <new>
#include <optional>

namespace utils_statics {

namespace {

// The bytes that a stream gives.
class StreamBytes : public ImageBytes
{
public:
    explicit StreamBytes(IStream& stream) : m_stream(stream) {}

    std::int64_t Size() override
    {
        ULARGE_INTEGER size = {};
        return SUCCEEDED(m_stream.Seek({}, STREAM_SEEK_END, &size))
                   ? static_cast<std::int64_t>(size.QuadPart)
                   : 0;
    }

    // An offset beyond the end is never sought, because some of the platform's streams cannot be
    // read afterwards.
    void Read(std::int64_t at, char* to, int bytes) override
    {
        if (SUCCEEDED(m_stream.Seek({.QuadPart = at}, STREAM_SEEK_SET, nullptr)))
            m_stream.Read(to, static_cast<ULONG>(bytes), nullptr);
    }

private:
    IStream& m_stream;
};

// Larger files are not read.
constexpr std::size_t largestFile = 512 * 1024 * 1024;

} // namespace

bool MayBeDecoded(IStream& file)
{
    StreamBytes bytes(file);
    if (IsGifWithoutPalette(bytes)) return false;
    const std::optional<ImageExtent> extent = StatedExtent(bytes);
    return !extent || !IsTooLarge(extent->width, extent->height);
}

MemoryStream StreamOfFile(const wchar_t* path)
try {
    const auto bytes = base::ReadFileWhole(path, largestFile, FILE_SHARE_READ | FILE_SHARE_DELETE);
    return bytes ? StreamOfBytes(*bytes) : MemoryStream();
} catch (const std::bad_alloc&) {
    return {};
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
    if (image && image->GetLastStatus() == Gdiplus::Ok) return image;
    // Some implementations of GDI+ keep the stream of a damaged image; this releases its memory.
    stream.get()->SetSize({});
    return nullptr;
}

} // namespace utils_statics
