#include "Utils_Statics/CCineStoreAVI.h"

#include "environment/Application.h"
#include "recording/CineComposition.h"
#include "recording/MovieStream.h"

#include <base/VideoCodec.h>
#include <qor_utils/PixelArrays.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <memory>
#include <new>
#include <type_traits>

using namespace utils_statics;

// The options of a compressed stream, with the codec's state block that they point to.
class utils_statics::CodecOptions
{
public:
    CodecOptions() = default;
    ~CodecOptions() { delete[] static_cast<std::byte*>(m_options.lpParms); }
    CodecOptions(const CodecOptions&) = delete;
    CodecOptions& operator=(const CodecOptions&) = delete;

    AVICOMPRESSOPTIONS& Get() { return m_options; }

private:
    AVICOMPRESSOPTIONS m_options{}; // lpParms: null, or an array of std::byte
};

namespace {

constexpr wchar_t settings[] = L"Settings\\Capture";
constexpr wchar_t uncompressed[] = L"Uncompressed";
constexpr DWORD rateScale = 1000;
constexpr std::size_t composedRects = std::extent_v<Layout>;

constexpr int RoundedDownToFour(int size)
{
    return size & ~3;
}

// The stream's rate over rateScale, truncated toward zero; 0 when `fps` is no rate.
DWORD StreamRate(double fps)
{
    const double scaled = fps * rateScale;
    return scaled >= 1.0 && scaled <= INT32_MAX ? static_cast<DWORD>(scaled) : 0;
}

bool IsFrameSize(int width, int height)
{
    constexpr std::int64_t mostPixels = INT32_MAX / sizeof(unsigned int);
    return width > 0 && height > 0 && std::int64_t{width} * height <= mostPixels;
}

BITMAPINFOHEADER FrameFormat(int width, int height, unsigned short bitCount)
{
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = bitCount;
    header.biCompression = BI_RGB;
    const std::int64_t rowWords = (std::int64_t{bitCount} * width + 31) / 32;
    header.biSizeImage = static_cast<DWORD>(rowWords * height * 4);
    return header;
}

AVISTREAMINFOW StreamInfo(const BITMAPINFOHEADER& format, double fps)
{
    AVISTREAMINFOW info{};
    info.fccType = streamtypeVIDEO;
    info.dwScale = rateScale;
    info.dwRate = StreamRate(fps);
    info.dwSuggestedBufferSize = format.biSizeImage;
    info.rcFrame = {0, 0, format.biWidth, format.biHeight};
    return info;
}

// Fetches the codec's state into a new block that the options point to. Returns the block's size,
// or 0 when there is no state.
int FetchState(const base::VideoCodec& codec, AVICOMPRESSOPTIONS& options)
{
    const auto size = static_cast<LONG>(ICSendMessage(codec.get(), ICM_GETSTATE, 0, 0));
    if (size <= 0) return 0; // negative when the codec does not know the message
    std::unique_ptr<std::byte[]> state(new (std::nothrow)
                                           std::byte[static_cast<std::size_t>(size)]());
    if (!state) return 0;
    ICSendMessage(codec.get(), ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.get()),
                  static_cast<DWORD_PTR>(size));
    options.cbParms = static_cast<DWORD>(size);
    options.lpParms = state.release();
    return size;
}

} // namespace

CCineStoreAVI::CCineStoreAVI() : stream(std::make_unique<MovieStream>()) {}

CCineStoreAVI::~CCineStoreAVI() = default;

void CCineStoreAVI::SetRate(double fps)
{
    rate = fps;
}

void CCineStoreAVI::SetCompression(wchar_t* name)
{
    if (name) lstrcpynW(compressionName, name, compressionNameSize);
}

bool CCineStoreAVI::InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height,
                                const CRect& rect, unsigned short bitCount)
try {
    return InitStorage(fileName, background, width, height, std::vector<CRect>(1, rect), bitCount);
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height,
                                const std::vector<CRect>& layout, unsigned short bitCount)
try {
    stream->Close(); // ends a recording left open, even if this one is refused
    const CString codec = ProfileText(settings, L"RecordCodec", L"XVID");
    const bool compressed = codec != uncompressed;
    if (!fileName || !PrepareFrame(background, width, height, layout, bitCount)) return false;
    if (!stream->Create(fileName) || !stream->AddStream(StreamInfo(format, rate), compressed))
        return false;
    CodecOptions options; // lives until the format is set: the codec may look at its state then
    if (compressed && !(ChooseCodec(codec, options) && stream->Compress(options.Get())))
        return false;
    if (!stream->SetFormat(format)) return false;
    frameIndex = 0;
    path = fileName;
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

DWORD CCineStoreAVI::FrameBytes() const
{
    return static_cast<DWORD>(format.biWidth) * static_cast<DWORD>(format.biHeight) *
           sizeof(unsigned int);
}

bool CCineStoreAVI::PrepareFrame(CBitmap* background, int width, int height,
                                 const std::vector<CRect>& layout, unsigned short bitCount)
{
    const int frameWidth = RoundedDownToFour(width);
    const int frameHeight = RoundedDownToFour(height);
    if (!IsFrameSize(frameWidth, frameHeight) || bitCount == 0 || bitCount > 32 ||
        StreamRate(rate) == 0)
        return false;

    frameBuffer = std::make_unique<unsigned int[]>(static_cast<std::size_t>(frameWidth) *
                                                   static_cast<std::size_t>(frameHeight));
    format = FrameFormat(frameWidth, frameHeight, bitCount);
    if (!background) return true; // deliberate: the rects are taken only together with a background
    background->GetBitmapBits(FrameBytes(), frameBuffer.get());
    qor_utils::InvertImage(frameBuffer.get(), frameWidth, frameHeight);
    rects = layout;
    return true;
}

bool CCineStoreAVI::ChooseCodec(const CString& codec, CodecOptions& options)
{
    lstrcpynW(compressionName, codec, compressionNameSize);
    if (FindCompressorOption(compressionName, &options.Get()) == -1) return false;
    options.Get().dwQuality =
        ProfileNumber(settings, L"RecordQuality", 100) * 100u; // in the codecs' hundredths
    return true;
}

// Returns the size of the codec's state (0 for none), or -1 when no installed codec has the name.
// The options' lpParms is the state, an array of std::byte that the caller deletes.
// NOLINTNEXTLINE(performance-unnecessary-value-param): contract
int CCineStoreAVI::FindCompressorOption(CString name, AVICOMPRESSOPTIONS* options)
{
    ICINFO info;
    const base::VideoCodec codec = base::FindVideoCodec(
        info, [&](const wchar_t* installed) { return std::wcscmp(installed, name) == 0; });
    if (!codec) return -1;
    options->fccType = info.fccType;
    options->fccHandler = info.fccHandler;
    // Deliberate: the flags are copied unchanged, although they mean something else in the options.
    options->dwFlags = info.dwFlags;
    return FetchState(codec, *options);
}

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

bool CCineStoreAVI::EndStorage()
{
    if (stream->TakesFrames() && frameBuffer) RepeatLastFrame();
    stream->Close();
    Announce();
    return true;
}
