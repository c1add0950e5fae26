#include <Utils_Statics/CCineStoreAVI.h>

#include "recording/CineComposition.h"

#include <qor_utils/PixelArrays.h>

#include <algorithm>
#include <new>

using namespace utils_statics;

namespace {

constexpr std::size_t composedRects = 6;

// Video for Windows keeps file offsets in 31 bits and overwrites the start of a longer movie,
// reporting success. So a movie ends before: header, index (16 bytes a frame) and chunk headers
// included.
constexpr std::int64_t movieLimit = 0x7FFFFFFF;
constexpr std::int64_t movieReserve = 1
                                      << 20; // headers, and what a codec may exceed a raw frame by
constexpr std::int64_t bytesAroundFrame = 8 + 1 + 16;

// What may wait in buffers below us; see hasReachedDisk.
constexpr std::int64_t buffered = 512 * 1024;

// Some implementations of Video for Windows report success on a full disk. The file's own size
// tells; when it cannot be asked, the report is believed.
bool HasReachedDisk(const std::wstring& fileName, std::int64_t bytes)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(fileName.c_str(), GetFileExInfoStandard, &data)) return true;
    const auto size = static_cast<std::int64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    return size + buffered >= bytes;
}

void Invert(unsigned int* pixels, SIZE size)
{
    qor_utils::InvertImage(pixels, size.cx, size.cy);
}

void Mirror(unsigned int* pixels, SIZE size)
{
    qor_utils::MirrorImage(pixels, size.cx, size.cy);
}

} // namespace

void CCineStoreAVI::TurnPlanes(unsigned int* image0, unsigned int* image1, unsigned int* image2,
                               unsigned int* image3, unsigned int* image4, bool mirror0,
                               bool bottomUp0, bool mirror1, bool bottomUp1) const
{
    Invert(image2, PlaneSize(rects[2]));
    Invert(image3, StripSize(rects[1]));
    Invert(image4, PlaneSize(rects[3]));
    if (!bottomUp0) Invert(image0, PlaneSize(rects[0]));
    if (mirror0) Mirror(image0, PlaneSize(rects[0]));
    if (!bottomUp1) Invert(image1, PlaneSize(rects[1]));
    if (mirror1) Mirror(image1, PlaneSize(rects[1]));
}

bool CCineStoreAVI::AddFrame(unsigned int* image0, unsigned int* image1, unsigned int* image2,
                             unsigned int* image3, unsigned int* image4, CBitmap& mask0,
                             CBitmap& mask1, bool mirror0, bool bottomUp0, bool mirror1,
                             bool bottomUp1)
{
    if (!outStream || rects.size() < composedRects) return false;
    TurnPlanes(image0, image1, image2, image3, image4, mirror0, bottomUp0, mirror1, bottomUp1);
    if (!PlaceImageOnScreen(image0, image1, image2, image3, image4, mask0, mask1)) return false;
    bool written = false;
    if (WriteFrame(frameIndex, written) < 2) ++droppedFrames;
    ++frameIndex;
    return written;
}

bool CCineStoreAVI::AddFrame(const CBitmap& bitmap, bool mirrored, bool bottomUp)
{
    if (!outStream || !frameBuffer) return false;
    unsigned int* const pixels = frameBuffer.get();
    if (bitmap.GetBitmapBits(FrameBytes(), pixels) == 0) return false;
    if (!bottomUp) qor_utils::InvertImage(pixels, format.biWidth, format.biHeight);
    if (mirrored) qor_utils::MirrorImage(pixels, format.biWidth, format.biHeight);
    bool written = false;
    WriteFrame(frameIndex, written); // deliberate: dropped frames are not counted here
    ++frameIndex;
    return written;
}

bool CCineStoreAVI::PlaceImageOnScreen(unsigned int* image0, unsigned int* image1,
                                       unsigned int* image2, unsigned int* image3,
                                       unsigned int* image4, CBitmap& mask0, CBitmap& mask1)
try {
    static_assert(sizeof(unsigned int) == sizeof(std::uint32_t));
    if (!frameBuffer || rects.size() < composedRects) return false;
    RECT layout[composedRects];
    std::copy_n(rects.begin(), composedRects, layout);
    const Mask masks[2] = {Mask(mask0), Mask(mask1)};
    const Planes planes{{image0, image1, image2, image3, image4}, {&masks[0], &masks[1]}};
    Compose({frameBuffer.get(), {format.biWidth, format.biHeight}}, layout, planes);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::HasRoomFor(LONG position, LONG size) const
{
    const std::int64_t around = (std::int64_t{position} + 1) * bytesAroundFrame;
    return movieBytes + size + around + movieReserve <= movieLimit;
}

// The number of bytes that the stream made of the frame; 0 or less when it was not written.
LONG CCineStoreAVI::WriteFrame(LONG position, bool& written)
{
    written = false;
    const auto size = static_cast<LONG>(format.biSizeImage);
    if (!HasRoomFor(position, size)) return 0;
    LONG samples = 0;
    LONG bytes = 0;
    const HRESULT result = AVIStreamWrite(outStream.get(), position, 1, frameBuffer.get(), size,
                                          AVIIF_KEYFRAME, &samples, &bytes);
    // Some implementations exchange the two counts of a compressed stream. With one sample asked
    // for, the larger one is the number of bytes either way.
    const LONG counted = std::max(samples, bytes);
    movieBytes += std::max<LONG>(counted, 0);
    if (FAILED(result) || !HasReachedDisk(moviePath, movieBytes)) return 0;
    written = true;
    return counted;
}

// As often as frames were dropped, so that the movie keeps its length. Deliberate: frameIndex
// stays.
void CCineStoreAVI::RepeatLastFrame()
{
    bool written = false;
    for (std::int32_t i = 0; i < droppedFrames; ++i)
        WriteFrame(frameIndex + i, written);
}
