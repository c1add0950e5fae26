#include <Utils_Statics/CCineStoreAVI.h>

#include "CineComposition.h"

#include <qor_utils/PixelArrays.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr wchar_t settingsSection[] = L"Settings\\Capture";
constexpr wchar_t uncompressed[] = L"Uncompressed";
constexpr std::size_t composedRects = 6;
constexpr DWORD rateScale = 1000;

// Video for Windows keeps file offsets in 31 bits and overwrites the start of a longer movie, reporting success. So a
// movie ends before: header, index (16 bytes a frame) and chunk headers included.
constexpr std::int64_t movieLimit = 0x7FFFFFFF;
constexpr std::int64_t movieReserve = 1 << 20; // headers, and what a codec may exceed a raw frame by
constexpr std::int64_t bytesAroundFrame = 8 + 1 + 16;

// What may wait in buffers below us; see hasReachedDisk.
constexpr std::int64_t buffered = 512 * 1024;

// Some implementations of Video for Windows report success on a full disk. The file's own size tells; when it cannot be
// asked, the report is believed.
bool hasReachedDisk(const wchar_t* fileName, std::int64_t bytes)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(fileName, GetFileExInfoStandard, &data)) return true;
    const auto size = static_cast<std::int64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    return size + buffered >= bytes;
}

CString recordCodec()
{
    CWinApp* const app = AfxGetApp();
    return app ? app->GetProfileString(settingsSection, L"RecordCodec", L"XVID") : CString(L"XVID");
}

// In the hundredths of a percent that codecs count in.
DWORD recordQuality()
{
    CWinApp* const app = AfxGetApp();
    const std::uint32_t percent = app ? app->GetProfileInt(settingsSection, L"RecordQuality", 100) : 100;
    return percent * 100;
}

constexpr int roundedDownToFour(int size)
{
    return size & ~3;
}

// The stream's rate over rateScale, truncated toward zero; 0 for what is no rate.
DWORD streamRate(double fps)
{
    const double scaled = fps * rateScale;
    return scaled >= 1.0 && scaled <= INT32_MAX ? static_cast<DWORD>(scaled) : 0;
}

bool isFrameSize(int width, int height)
{
    return width > 0 && height > 0 && std::int64_t{width} * height <= INT32_MAX / std::int64_t{sizeof(unsigned int)};
}

BITMAPINFOHEADER frameFormat(int width, int height, unsigned short bitCount)
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

AVISTREAMINFOW streamInfo(const BITMAPINFOHEADER& format, double fps)
{
    AVISTREAMINFOW info{};
    info.fccType = streamtypeVIDEO;
    info.dwScale = rateScale;
    info.dwRate = streamRate(fps);
    info.dwSuggestedBufferSize = format.biSizeImage;
    info.rcFrame = {0, 0, format.biWidth, format.biHeight};
    return info;
}

void copyName(wchar_t* target, std::size_t size, const wchar_t* name)
{
    const std::size_t length = std::min(std::wcslen(name), size - 1);
    std::wmemcpy(target, name, length);
    target[length] = L'\0';
}

LONG frameBytes(const BITMAPINFOHEADER& format)
{
    return format.biWidth * format.biHeight * static_cast<LONG>(sizeof(unsigned int));
}

void invert(unsigned int* pixels, SIZE size)
{
    qor_utils::InvertImage(pixels, size.cx, size.cy);
}

void mirror(unsigned int* pixels, SIZE size)
{
    qor_utils::MirrorImage(pixels, size.cx, size.cy);
}

// An installed codec, opened only to be asked.
class QueriedCodec
{
public:
    QueriedCodec(DWORD type, DWORD handler) : m_codec(ICOpen(type, handler, ICMODE_QUERY)) {}
    ~QueriedCodec()
    {
        if (m_codec) ICClose(m_codec);
    }
    QueriedCodec(const QueriedCodec&) = delete;
    QueriedCodec& operator=(const QueriedCodec&) = delete;

    bool isNamed(const wchar_t* name, ICINFO& info) const
    {
        return m_codec && ICGetInfo(m_codec, &info, sizeof info) != 0 && std::wcscmp(info.szName, name) == 0;
    }

    // Fetches the state into a block that the options point to and the caller owns. The state's size; 0 without one.
    int fetchState(AVICOMPRESSOPTIONS& options) const
    {
        const auto size = static_cast<LONG>(ICSendMessage(m_codec, ICM_GETSTATE, 0, 0));
        if (size <= 0) return 0; // negative: the codec does not know the message
        std::unique_ptr<std::byte[]> state(new (std::nothrow) std::byte[static_cast<std::size_t>(size)]());
        if (!state) return 0;
        ICSendMessage(m_codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.get()), static_cast<DWORD_PTR>(size));
        options.cbParms = static_cast<DWORD>(size);
        options.lpParms = state.release();
        return size;
    }

private:
    HIC m_codec;
};

} // namespace

CCineStoreAVI::CCineStoreAVI() = default;

CCineStoreAVI::~CCineStoreAVI()
{
    closeMovie();
}

void CCineStoreAVI::SetRate(double fps)
{
    rate = fps;
}

void CCineStoreAVI::SetCompression(wchar_t* name)
{
    if (name) copyName(compressionName, compressionNameSize, name);
}

bool CCineStoreAVI::InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height, const CRect& rect,
                                unsigned short bitCount)
try {
    return InitStorage(fileName, background, width, height, std::vector<CRect>(1, rect), bitCount);
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::InitStorage(const wchar_t* fileName, CBitmap* background, int width, int height,
                                const std::vector<CRect>& layout, unsigned short bitCount)
try {
    const CString codec = recordCodec();
    const bool compressed = codec != uncompressed;
    if (!fileName || !prepareFrame(background, width, height, layout, bitCount)) return false;
    if (!openFile(fileName) || !createStream(compressed)) return false;
    if (compressed && !compressStream(codec)) return false;
    const LONG formatSize = static_cast<LONG>(format.biSize + format.biClrUsed * sizeof(RGBQUAD));
    if (FAILED(AVIStreamSetFormat(outStream.get(), 0, &format, formatSize))) return false;
    frameIndex = 0;
    path = fileName;
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::prepareFrame(CBitmap* background, int width, int height, const std::vector<CRect>& layout,
                                 unsigned short bitCount)
{
    const int frameWidth = roundedDownToFour(width);
    const int frameHeight = roundedDownToFour(height);
    if (!isFrameSize(frameWidth, frameHeight) || bitCount == 0 || bitCount > 32 || streamRate(rate) == 0) return false;

    frameBuffer =
        std::make_unique<unsigned int[]>(static_cast<std::size_t>(frameWidth) * static_cast<std::size_t>(frameHeight));
    format = frameFormat(frameWidth, frameHeight, bitCount);
    if (!background) return true; // deliberate: the rects are taken only together with a background
    background->GetBitmapBits(static_cast<DWORD>(frameBytes(format)), frameBuffer.get());
    qor_utils::InvertImage(frameBuffer.get(), frameWidth, frameHeight);
    rects = layout;
    return true;
}

bool CCineStoreAVI::openFile(const wchar_t* fileName)
{
    closeMovie(); // of a recording that was not ended
    movieBytes = 0;
    AVIFileInit();
    PAVIFILE opened = nullptr;
    if (FAILED(AVIFileOpenW(&opened, fileName, OF_WRITE | OF_CREATE, nullptr)) || !opened) {
        AVIFileExit();
        return false;
    }
    aviFile.reset(opened);
    return true;
}

bool CCineStoreAVI::createStream(bool compressed)
{
    AVISTREAMINFOW info = streamInfo(format, rate);
    PAVISTREAM stream = nullptr;
    if (FAILED(AVIFileCreateStreamW(aviFile.get(), &stream, &info)) || !stream) return false;
    (compressed ? rawStream : outStream).reset(stream);
    return true;
}

bool CCineStoreAVI::compressStream(const CString& codec)
{
    copyName(compressionName, compressionNameSize, codec);
    AVICOMPRESSOPTIONS options{};
    const int found = FindCompressorOption(compressionName, &options);
    const std::unique_ptr<std::byte[]> state(static_cast<std::byte*>(options.lpParms));
    if (found == -1) return false;
    options.dwQuality = recordQuality();
    PAVISTREAM stream = nullptr;
    if (FAILED(AVIMakeCompressedStream(&stream, rawStream.get(), &options, nullptr)) || !stream) return false;
    outStream.reset(stream);
    return true;
}

// The size of the codec's state (0 when it has none), or -1 when no installed codec has the name. The options'
// lpParms is then an array of std::byte that the caller deletes.
int CCineStoreAVI::FindCompressorOption(CString name, AVICOMPRESSOPTIONS* options)
{
    ICINFO info{};
    for (DWORD i = 0; info = {}, info.dwSize = sizeof info, ICInfo(ICTYPE_VIDEO, i, &info); ++i) {
        const QueriedCodec codec(ICTYPE_VIDEO, info.fccHandler);
        if (!codec.isNamed(name, info)) continue;
        options->fccType = info.fccType;
        options->fccHandler = info.fccHandler;
        options->dwFlags = info.dwFlags; // as they stand, although these flags mean something else there
        return codec.fetchState(*options);
    }
    return -1;
}

void CCineStoreAVI::turnPlanes(unsigned int* image0, unsigned int* image1, unsigned int* image2, unsigned int* image3,
                               unsigned int* image4, bool mirror0, bool bottomUp0, bool mirror1, bool bottomUp1) const
{
    invert(image2, cine::planeSize(rects[2]));
    invert(image3, cine::stripSize(rects[1]));
    invert(image4, cine::planeSize(rects[3]));
    if (!bottomUp0) invert(image0, cine::planeSize(rects[0]));
    if (mirror0) mirror(image0, cine::planeSize(rects[0]));
    if (!bottomUp1) invert(image1, cine::planeSize(rects[1]));
    if (mirror1) mirror(image1, cine::planeSize(rects[1]));
}

bool CCineStoreAVI::AddFrame(unsigned int* image0, unsigned int* image1, unsigned int* image2, unsigned int* image3,
                             unsigned int* image4, CBitmap& mask0, CBitmap& mask1, bool mirror0, bool bottomUp0,
                             bool mirror1, bool bottomUp1)
{
    if (!outStream || rects.size() < composedRects) return false;
    turnPlanes(image0, image1, image2, image3, image4, mirror0, bottomUp0, mirror1, bottomUp1);
    if (!PlaceImageOnScreen(image0, image1, image2, image3, image4, mask0, mask1)) return false;
    bool written = false;
    if (writeFrame(frameIndex, written) < 2) ++droppedFrames;
    ++frameIndex;
    return written;
}

bool CCineStoreAVI::AddFrame(const CBitmap& bitmap, bool mirrored, bool bottomUp)
{
    if (!outStream || !frameBuffer) return false;
    unsigned int* const pixels = frameBuffer.get();
    if (bitmap.GetBitmapBits(static_cast<DWORD>(frameBytes(format)), pixels) == 0) return false;
    if (!bottomUp) qor_utils::InvertImage(pixels, format.biWidth, format.biHeight);
    if (mirrored) qor_utils::MirrorImage(pixels, format.biWidth, format.biHeight);
    bool written = false;
    writeFrame(frameIndex, written); // deliberate: dropped frames are not counted here
    ++frameIndex;
    return written;
}

bool CCineStoreAVI::PlaceImageOnScreen(unsigned int* image0, unsigned int* image1, unsigned int* image2,
                                       unsigned int* image3, unsigned int* image4, CBitmap& mask0, CBitmap& mask1)
try {
    static_assert(sizeof(unsigned int) == sizeof(std::uint32_t));
    if (!frameBuffer || rects.size() < composedRects) return false;
    RECT layout[composedRects];
    std::copy_n(rects.begin(), composedRects, layout);
    const cine::Mask masks[2] = {cine::Mask(mask0), cine::Mask(mask1)};
    const cine::Planes planes{{image0, image1, image2, image3, image4}, {&masks[0], &masks[1]}};
    cine::compose({frameBuffer.get(), {format.biWidth, format.biHeight}}, layout, planes);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool CCineStoreAVI::hasRoomFor(LONG position, LONG size) const
{
    const std::int64_t around = (std::int64_t{position} + 1) * bytesAroundFrame;
    return movieBytes + size + around + movieReserve <= movieLimit;
}

// The number of bytes that the stream made of the frame; 0 or less when it was not written.
LONG CCineStoreAVI::writeFrame(LONG position, bool& written)
{
    written = false;
    const auto size = static_cast<LONG>(format.biSizeImage);
    if (!hasRoomFor(position, size)) return 0;
    LONG samples = 0;
    LONG bytes = 0;
    const HRESULT result =
        AVIStreamWrite(outStream.get(), position, 1, frameBuffer.get(), size, AVIIF_KEYFRAME, &samples, &bytes);
    // Some implementations exchange the two counts of a compressed stream. With one sample asked for, the larger one is
    // the number of bytes either way.
    const LONG counted = std::max(samples, bytes);
    movieBytes += std::max<LONG>(counted, 0);
    if (FAILED(result) || !hasReachedDisk(path, movieBytes)) return 0;
    written = true;
    return counted;
}

bool CCineStoreAVI::EndStorage()
{
    if (outStream && frameBuffer) repeatLastFrame();
    closeMovie();
    if (completeCallback) completeCallback(path, userData);
    return true;
}

// As often as frames were dropped, so that the movie keeps its length. Deliberate: frameIndex stays.
void CCineStoreAVI::repeatLastFrame()
{
    bool written = false;
    for (std::int32_t i = 0; i < droppedFrames; ++i)
        writeFrame(frameIndex + i, written);
}

void CCineStoreAVI::closeMovie()
{
    outStream.reset();
    rawStream.reset();
    aviFile.reset();
}
