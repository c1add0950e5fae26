// CCineStoreAVI: frames that are composed of planes or come whole from a bitmap.
#include "Utils_Statics/CCineStoreAVI.h"

#include "recording/CineComposition.h"
#include "recording/MovieStream.h"

#include <qor_utils/PixelArrays.h>

#include <algorithm>
#include <new>
#include <type_traits>

using namespace utils_statics;

namespace {

constexpr std::size_t composedRects = std::extent_v<Layout>;

} // namespace

bool CCineStoreAVI::AddFrame(unsigned int* image0, unsigned int* image1, unsigned int* image2,
                             unsigned int* image3, unsigned int* image4, CBitmap& mask0,
                             CBitmap& mask1, bool mirror0, bool bottomUp0, bool mirror1,
                             bool bottomUp1)
try {
    static_assert(sizeof(unsigned int) == sizeof(std::uint32_t));
    if (!stream->TakesFrames() || rects.size() < composedRects) return false;
    const Mask masks[2] = {Mask(mask0), Mask(mask1)};
    const Planes planes{{image0, image1, image2, image3, image4},
                        {{bottomUp0, mirror0}, {bottomUp1, mirror1}},
                        {&masks[0], &masks[1]}};
    Layout layout;
    std::copy_n(rects.begin(), composedRects, layout);
    TurnPlanes(layout, planes);
    if (!PlaceImageOnScreen(layout, planes)) return false;
    const WrittenFrame written = WriteFrame(frameIndex);
    if (written.bytes < 2) ++droppedFrames;
    ++frameIndex;
    return written.succeeded;
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::AddFrame(const CBitmap& bitmap, bool mirrored, bool bottomUp)
{
    if (!stream->TakesFrames() || !frameBuffer) return false;
    unsigned int* const pixels = frameBuffer.get();
    if (bitmap.GetBitmapBits(FrameBytes(), pixels) == 0) return false;
    if (!bottomUp) qor_utils::InvertImage(pixels, format.biWidth, format.biHeight);
    if (mirrored) qor_utils::MirrorImage(pixels, format.biWidth, format.biHeight);
    const WrittenFrame written = WriteFrame(frameIndex);
    ++frameIndex; // deliberate: dropped frames are not counted here
    return written.succeeded;
}

bool CCineStoreAVI::PlaceImageOnScreen(const Layout& layout, const Planes& planes)
{
    if (!frameBuffer) return false;
    Compose({frameBuffer.get(), {format.biWidth, format.biHeight}}, layout, planes);
    return true;
}

WrittenFrame CCineStoreAVI::WriteFrame(LONG position)
{
    return stream->Write(position, frameBuffer.get(), static_cast<LONG>(format.biSizeImage));
}

// Repeats the frame once for each dropped one, so that the movie keeps its length. Deliberate:
// frameIndex does not change.
void CCineStoreAVI::RepeatLastFrame()
{
    for (std::int32_t i = 0; i < droppedFrames; ++i)
        WriteFrame(frameIndex + i);
}
