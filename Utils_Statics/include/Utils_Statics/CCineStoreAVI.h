#pragma once

#include <Utils_Statics/CCineStore.h>
#include <Utils_Statics/export.h>

#include <afxwin.h>

#include <vfw.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace utils_statics {
class CodecOptions;
class MovieStream;
struct Planes;
struct WrittenFrame;
} // namespace utils_statics

/// Records an AVI movie. Each frame is composed of pixel planes on a background, or taken whole
/// from a bitmap. It goes to a video stream, uncompressed or through the installed codec that the
/// application's settings name.
///
/// Settings, section "Settings\Capture": "RecordCodec" (the codec's short name, or exactly
/// "Uncompressed"; default "XVID") and "RecordQuality" (percent, default 100).
///
/// One thread records. Failures are false results; nothing is logged or thrown. Call EndStorage
/// after a failed InitStorage as after a good one. If a codec hangs, the call that uses it hangs
/// too.
class UTILS_STATICS_API CCineStoreAVI : public CCineStore
{
public:
    CCineStoreAVI();
    CCineStoreAVI(const CCineStoreAVI&) = delete;
    CCineStoreAVI& operator=(const CCineStoreAVI&) = delete;

    /// Releases movie and codec but does not finish a recording: dropped frames are not repeated
    /// and the callback is not called.
    ~CCineStoreAVI() override;

    /// Writes the last frame once more for every dropped frame, closes the movie and calls the
    /// callback with the recorded path. Always true. The callback is called even when nothing was
    /// recorded.
    bool EndStorage() override;

    /// Sets the frames per second from the next InitStorage on; the default is 30.
    void SetRate(double fps);

    /// Sets the codec's short name, of which 79 characters are kept. It has no effect: InitStorage
    /// takes the codec from "RecordCodec".
    void SetCompression(wchar_t* name);

    /// The other InitStorage with a layout of one rect.
    bool InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height,
                     const CRect& rect, unsigned short bitCount);

    /// Creates the movie and its stream. A movie still open is first released without being
    /// finished, even when the new one is then refused. Width and height are rounded down to
    /// multiples of 4. `background` (32-bit pixels of exactly that rounded size) becomes the first
    /// content of the frame; without one the rects are not taken and the earlier ones stay.
    /// `bitCount` is 32 in practice; each frame writes the first width x height x bitCount / 8
    /// bytes of its 32-bit pixels.
    ///
    /// False when a size is below 4 or the frame exceeds 2 GiB, `bitCount` is not 1 to 32, the rate
    /// is not 0.001 to 2,147,483, the file cannot be created, no installed codec has the name, or
    /// the codec refuses the format.
    bool InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height,
                     const std::vector<CRect>& layout, unsigned short bitCount);

    /// Composes one frame and writes it. Planes are rows of 32-bit pixels, top row first, of the
    /// size of their rects (planes 0, 1, 2, 4: rects 0, 1, 2, 3; plane 3: width of rect 1, 5 rows);
    /// any may be null. They are changed: turned upside down (planes 0 and 1 unless their
    /// `bottomUp`) and mirrored as asked. Plane 0 (mask0) and plane 1 (mask1) show where their
    /// mask's bit is 0; where it is 1 or missing, the frame keeps its pixel.
    ///
    /// False when no recording is open, six rects are not set, the frame cannot be written, or the
    /// movie has reached the 2 GiB that Video for Windows can hold (the movie plays up to there).
    bool AddFrame(unsigned int* image0, unsigned int* image1, unsigned int* image2,
                  unsigned int* image3, unsigned int* image4, CBitmap& mask0, CBitmap& mask1,
                  bool mirror0, bool bottomUp0, bool mirror1, bool bottomUp1);

    /// Writes one frame taken whole from a bitmap of the frame's size with 32-bit pixels, turned
    /// upside down unless `bottomUp`, mirrored if asked. Dropped frames are not counted here. False
    /// in the same cases, except for the rects, and for a bitmap without pixels.
    bool AddFrame(const CBitmap& bitmap, bool mirror, bool bottomUp);

private:
    static constexpr int compressionNameSize = 80;

    int FindCompressorOption(CString name, AVICOMPRESSOPTIONS* options);
    bool PlaceImageOnScreen(const RECT (&layout)[6], const utils_statics::Planes& planes);

    bool PrepareFrame(CBitmap* background, int width, int height, const std::vector<CRect>& layout,
                      unsigned short bitCount);
    bool ChooseCodec(const CString& codec, utils_statics::CodecOptions& options);
    DWORD FrameBytes() const;
    utils_statics::WrittenFrame WriteFrame(LONG position);
    void RepeatLastFrame();

    wchar_t compressionName[compressionNameSize] = {}; ///< the codec's short name
    double rate = 30.0;                                ///< frames per second
    std::int32_t frameIndex = 0;                       ///< the next frame's place in the stream
    /// Frames whose write produced fewer than 2 bytes. InitStorage deliberately does not reset it:
    /// the object's next recording goes on counting.
    std::int32_t droppedFrames = 0;
    std::unique_ptr<unsigned int[]> frameBuffer; ///< the composed frame, bottom row first
    std::vector<CRect> rects;  ///< layout of the composed frame, in screen coordinates
    BITMAPINFOHEADER format{}; ///< the stream's format
    std::unique_ptr<utils_statics::MovieStream> stream; ///< file and streams of the movie
};
