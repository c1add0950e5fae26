#pragma once

#include <base/Owner.h>

#include <windows.h>
#include <vfw.h>

#include <cstdint>
#include <string>

namespace utils_statics {

// An AVI file and the use of the AVI library that goes with every open file.
struct AviFileTraits
{
    using Handle = PAVIFILE;
    static PAVIFILE Empty() noexcept { return nullptr; }
    static void Release(PAVIFILE file) noexcept
    {
        AVIFileRelease(file);
        AVIFileExit();
    }
};
using AviFile = base::Owner<AviFileTraits>;

struct AviStreamTraits
{
    using Handle = PAVISTREAM;
    static PAVISTREAM Empty() noexcept { return nullptr; }
    static void Release(PAVISTREAM stream) noexcept { AVIStreamRelease(stream); }
};
using AviStream = base::Owner<AviStreamTraits>;

// The result of writing one frame.
struct WrittenFrame
{
    LONG bytes = 0; // the frame's size in the stream; 0 or less when it was not written
    bool succeeded = false;
};

// A movie being written: its file, its one video stream and, for a compressed one, the codec's
// stream on top. The steps are called in the order of their declaration. After a failed step,
// everything opened stays open until Close.
class MovieStream
{
public:
    // Creates or truncates the file. A movie that is still open is closed first, as it stands.
    bool Create(const wchar_t* fileName);

    // Adds the stream. One that is to be compressed takes no frames before Compress.
    bool AddStream(AVISTREAMINFOW info, bool compressed);

    // Puts a codec on top of the stream.
    bool Compress(AVICOMPRESSOPTIONS& options);

    // Sets the format of all frames. The palette that a format may announce is empty.
    bool SetFormat(const BITMAPINFOHEADER& format);

    // True when there is a stream that takes frames.
    bool TakesFrames() const { return static_cast<bool>(m_outStream); }

    // Writes a frame of `size` bytes at its place in the stream. It fails once the movie has no
    // room left, and when the disk is full.
    WrittenFrame Write(LONG position, void* pixels, LONG size);

    void Close();

private:
    bool HasRoomFor(LONG position, LONG size) const;
    bool HasReachedDisk(LONG size) const;
    bool IsVolumeNearlyFull(LONG size) const;

    AviFile m_file;
    AviStream m_rawStream;    // below the compressed stream
    AviStream m_outStream;    // frames are written here
    std::int64_t m_bytes = 0; // of all frames written, as the codec made them
    std::wstring m_path;      // absolute: the current folder may change
    std::wstring m_folder;    // its folder, made ahead: memory may be short when it is asked for
};

} // namespace utils_statics
