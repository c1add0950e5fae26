#include "Utils_Statics/CCineStoreAVI.h"

#include "recording/CaptureSettings.h"
#include "recording/CodecOptions.h"
#include "recording/MovieStream.h"

#include <qor_utils/PixelArrays.h>

#include <new>

using namespace utils_statics;

namespace {

constexpr wchar_t uncompressed[] = L"Uncompressed";
constexpr DWORD rateScale = 1000;

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

} // namespace

CCineStoreAVI::CCineStoreAVI() : stream(std::make_unique<MovieStream>()) {}

CCineStoreAVI::~CCineStoreAVI() = default;

void CCineStoreAVI::SetRate(double fps)
{
    rate = fps;
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
    const CString codec = RecordCodec();
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

bool CCineStoreAVI::EndStorage()
{
    if (stream->TakesFrames() && frameBuffer) RepeatLastFrame();
    stream->Close();
    Announce();
    return true;
}
