#include "recording/MovieStream.h"

#include <base/FilePath.h>

#include <algorithm>

namespace utils_statics {

namespace {

// Video for Windows keeps file offsets in 31 bits. Some implementations overwrite the start of a
// longer movie and report success, so a movie ends before that.
constexpr std::int64_t movieLimit = 0x7FFFFFFF;
// Bytes for the headers, and for the excess of a codec's frame over a raw one.
constexpr std::int64_t movieReserve = 1 << 20;
// Bytes for the header of a frame's chunk, its padding and its entry in the index.
constexpr std::int64_t bytesAroundFrame = 8 + 1 + 16;

// Bytes that may wait in the buffers of Video for Windows.
constexpr std::int64_t buffered = 1 << 19;

} // namespace

bool MovieStream::Create(const wchar_t* fileName)
{
    Close();
    m_bytes = 0;
    m_path = base::FullPath(fileName);
    m_folder = m_path.substr(0, m_path.find_last_of(L'\\') + 1);
    AVIFileInit();
    PAVIFILE opened = nullptr;
    if (FAILED(AVIFileOpenW(&opened, fileName, OF_WRITE | OF_CREATE, nullptr)) || !opened) {
        AVIFileExit();
        return false;
    }
    m_file.reset(opened);
    return true;
}

bool MovieStream::AddStream(AVISTREAMINFOW info, bool compressed)
{
    PAVISTREAM stream = nullptr;
    if (FAILED(AVIFileCreateStreamW(m_file.get(), &stream, &info)) || !stream) return false;
    if (compressed)
        m_rawStream.reset(stream);
    else
        m_outStream.reset(stream);
    return true;
}

bool MovieStream::Compress(AVICOMPRESSOPTIONS& options)
{
    PAVISTREAM stream = nullptr;
    if (FAILED(AVIMakeCompressedStream(&stream, m_rawStream.get(), &options, nullptr)) || !stream)
        return false;
    m_outStream.reset(stream);
    return true;
}

bool MovieStream::SetFormat(const BITMAPINFOHEADER& format)
{
    BITMAPINFOHEADER copy = format;
    const auto size = static_cast<LONG>(format.biSize + format.biClrUsed * sizeof(RGBQUAD));
    return SUCCEEDED(AVIStreamSetFormat(m_outStream.get(), 0, &copy, size));
}

WrittenFrame MovieStream::Write(LONG position, void* pixels, LONG size)
{
    if (!HasRoomFor(position, size)) return {};
    LONG samples = 0;
    LONG bytes = 0;
    const HRESULT result = AVIStreamWrite(m_outStream.get(), position, 1, pixels, size,
                                          AVIIF_KEYFRAME, &samples, &bytes);
    // Some implementations swap the two counts of a compressed stream. For a single sample the
    // larger one is the number of bytes either way.
    const LONG counted = std::max(samples, bytes);
    m_bytes += std::max<LONG>(counted, 0);
    if (FAILED(result) || !HasReachedDisk(size)) return {};
    return {counted, true};
}

void MovieStream::Close()
{
    m_outStream.reset();
    m_rawStream.reset();
    m_file.reset();
}

bool MovieStream::HasRoomFor(LONG position, LONG size) const
{
    const std::int64_t around = (std::int64_t{position} + 1) * bytesAroundFrame;
    return m_bytes + size + around + movieReserve <= movieLimit;
}

// True when there may have been no room for the frame of `size` bytes that was just written. A
// volume that cannot be asked is taken to have room.
bool MovieStream::IsVolumeNearlyFull(LONG size) const
{
    ULARGE_INTEGER available{};
    if (!GetDiskFreeSpaceExW(m_folder.c_str(), &available, nullptr, nullptr)) return false;
    return available.QuadPart < static_cast<std::uint64_t>(size + buffered);
}

// Some implementations of Video for Windows report success on a full disk, so on a nearly full
// volume the file's own size decides. With more room the report is trusted, because the size may
// lag behind in network folders and write caches. It is also trusted when the size cannot be read.
bool MovieStream::HasReachedDisk(LONG size) const
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!IsVolumeNearlyFull(size) ||
        !GetFileAttributesExW(m_path.c_str(), GetFileExInfoStandard, &data))
        return true;
    const auto stored = static_cast<std::int64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    return stored + buffered >= m_bytes;
}

} // namespace utils_statics
