#include "MjpgCodec.h"

#include "JpegImage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace mjpg {

namespace {

// What an application may keep and give back.
struct State
{
    DWORD tag;
    DWORD quality;
};

constexpr DWORD stateTag = mmioFOURCC('M', 'J', 'S', '1');
constexpr LONG largestSide = 16384;

bool hasPlausibleSize(const BITMAPINFOHEADER& format)
{
    return format.biSize >= sizeof(BITMAPINFOHEADER) && format.biWidth > 0 &&
           format.biWidth <= largestSide && format.biHeight != 0 &&
           format.biHeight >= -largestSide && format.biHeight <= largestSide;
}

int heightOf(const BITMAPINFOHEADER& format)
{
    return format.biHeight < 0 ? -format.biHeight : format.biHeight;
}

bool isRaw(const BITMAPINFOHEADER* format)
{
    return format && hasPlausibleSize(*format) && format->biCompression == BI_RGB &&
           (format->biBitCount == 24 || format->biBitCount == 32);
}

bool isJpeg(const BITMAPINFOHEADER* format)
{
    return format && hasPlausibleSize(*format) && format->biHeight > 0 &&
           format->biCompression == fourcc;
}

bool haveSameSize(const BITMAPINFOHEADER& a, const BITMAPINFOHEADER& b)
{
    return a.biWidth == b.biWidth && heightOf(a) == heightOf(b);
}

int rawStride(const BITMAPINFOHEADER& format)
{
    return (format.biWidth * format.biBitCount + 31) / 32 * 4;
}

LONG jpegBytes(const BITMAPINFOHEADER& format)
{
    return static_cast<LONG>(
        jpegBound(format.biWidth, heightOf(format))); // less than 1 GiB for the largest side
}

FrameShape shapeOf(const BITMAPINFOHEADER& raw)
{
    return {raw.biWidth, heightOf(raw), rawStride(raw), raw.biBitCount / 8, raw.biHeight > 0};
}

LRESULT compressQuery(const BITMAPINFOHEADER* input, const BITMAPINFOHEADER* output)
{
    if (!isRaw(input)) return ICERR_BADFORMAT;
    return !output || (isJpeg(output) && haveSameSize(*input, *output)) ? ICERR_OK
                                                                        : ICERR_BADFORMAT;
}

LRESULT decompressQuery(const BITMAPINFOHEADER* input, const BITMAPINFOHEADER* output)
{
    if (!isJpeg(input)) return ICERR_BADFORMAT;
    return !output || (isRaw(output) && haveSameSize(*input, *output)) ? ICERR_OK : ICERR_BADFORMAT;
}

LRESULT storeNumber(LPARAM address, DWORD number)
{
    if (!address) return ICERR_BADPARAM;
    *reinterpret_cast<DWORD*>(address) = number;
    return ICERR_OK;
}

} // namespace

LRESULT MjpgCodec::handle(UINT message, LPARAM first, LPARAM second)
{
    const auto input = reinterpret_cast<const BITMAPINFOHEADER*>(first);
    const auto output = reinterpret_cast<BITMAPINFOHEADER*>(second);
    switch (message) {
    case ICM_GETINFO: return getInfo(reinterpret_cast<ICINFO*>(first), second);
    case ICM_GETSTATE: return getState(reinterpret_cast<void*>(first), second);
    case ICM_SETSTATE: return setState(reinterpret_cast<const void*>(first), second);
    case ICM_GETDEFAULTQUALITY: return storeNumber(first, defaultQuality);
    case ICM_GETQUALITY: return storeNumber(first, m_quality);
    case ICM_SETQUALITY: return setQuality(reinterpret_cast<const DWORD*>(first));
    case ICM_GETDEFAULTKEYFRAMERATE: return storeNumber(first, 1);

    case ICM_COMPRESS_QUERY:
    case ICM_COMPRESS_BEGIN: return compressQuery(input, output);
    case ICM_COMPRESS_GET_FORMAT: return compressGetFormat(input, output);
    case ICM_COMPRESS_GET_SIZE: return compressGetSize(input);
    case ICM_COMPRESS: return compress(reinterpret_cast<const ICCOMPRESS*>(first), second);
    case ICM_COMPRESS_END: return ICERR_OK;

    case ICM_DECOMPRESS_QUERY:
    case ICM_DECOMPRESS_BEGIN: return decompressQuery(input, output);
    case ICM_DECOMPRESS_GET_FORMAT: return decompressGetFormat(input, output);
    case ICM_DECOMPRESS: return decompress(reinterpret_cast<const ICDECOMPRESS*>(first), second);
    case ICM_DECOMPRESS_END: return ICERR_OK;

    default: return ICERR_UNSUPPORTED; // dialogs, palettes and drawing among them
    }
}

LRESULT MjpgCodec::getInfo(ICINFO* info, LPARAM size) const
{
    if (!info || size < static_cast<LPARAM>(sizeof *info)) return 0;
    *info = {};
    info->dwSize = sizeof *info;
    info->fccType = ICTYPE_VIDEO;
    info->fccHandler = fourcc;
    info->dwFlags = VIDCF_QUALITY;
    info->dwVersion = 0x00010000;
    info->dwVersionICM = ICVERSION;
    std::wcscpy(info->szName, L"MJPG");
    std::wcscpy(info->szDescription, L"Motion-JPEG");
    return sizeof *info;
}

LRESULT MjpgCodec::getState(void* state, LPARAM size) const
{
    if (!state) return sizeof(State);
    if (size < static_cast<LPARAM>(sizeof(State))) return ICERR_BADSIZE;
    const State own{stateTag, m_quality};
    std::memcpy(state, &own, sizeof own);
    return ICERR_OK;
}

// The number of bytes taken, 0 for a state that is not ours.
LRESULT MjpgCodec::setState(const void* state, LPARAM size)
{
    if (!state) {
        m_quality = defaultQuality;
        return 0;
    }
    State given{};
    if (size < static_cast<LPARAM>(sizeof given)) return 0;
    std::memcpy(&given, state, sizeof given);
    if (given.tag != stateTag || given.quality > bestQuality) return 0;
    m_quality = given.quality;
    return sizeof given;
}

LRESULT MjpgCodec::setQuality(const DWORD* quality)
{
    if (!quality) return ICERR_BADPARAM;
    m_quality = *quality == static_cast<DWORD>(ICQUALITY_DEFAULT)
                    ? defaultQuality
                    : std::min<DWORD>(*quality, bestQuality);
    return ICERR_OK;
}

LRESULT MjpgCodec::compressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const
{
    if (!isRaw(input)) return ICERR_BADFORMAT;
    if (!output) return sizeof *output;
    *output = {};
    output->biSize = sizeof *output;
    output->biWidth = input->biWidth;
    output->biHeight = heightOf(*input);
    output->biPlanes = 1;
    output->biBitCount = 24;
    output->biCompression = fourcc;
    output->biSizeImage = static_cast<DWORD>(jpegBytes(*input));
    return ICERR_OK;
}

LRESULT MjpgCodec::compressGetSize(const BITMAPINFOHEADER* input) const
{
    return isRaw(input) ? jpegBytes(*input) : 0;
}

LRESULT MjpgCodec::compress(const ICCOMPRESS* frame, LPARAM size) const
{
    if (!frame || size < static_cast<LPARAM>(sizeof *frame) || !frame->lpInput || !frame->lpOutput)
        return ICERR_BADPARAM;
    if (compressQuery(frame->lpbiInput, frame->lpbiOutput) != ICERR_OK || !frame->lpbiOutput)
        return ICERR_BADFORMAT;
    const DWORD quality = frame->dwQuality > bestQuality ? m_quality : frame->dwQuality;
    const std::size_t bytes =
        encodeJpeg(static_cast<const std::uint8_t*>(frame->lpInput), shapeOf(*frame->lpbiInput),
                   static_cast<int>(quality), static_cast<std::uint8_t*>(frame->lpOutput));
    if (bytes == 0) return ICERR_MEMORY;
    frame->lpbiOutput->biSizeImage = static_cast<DWORD>(bytes);
    if (frame->lpckid) *frame->lpckid = mmioFOURCC('d', 'c', 0, 0);
    if (frame->lpdwFlags) *frame->lpdwFlags = AVIIF_KEYFRAME;
    return ICERR_OK;
}

LRESULT MjpgCodec::decompressGetFormat(const BITMAPINFOHEADER* input,
                                       BITMAPINFOHEADER* output) const
{
    if (!isJpeg(input)) return ICERR_BADFORMAT;
    if (!output) return sizeof *output;
    *output = {};
    output->biSize = sizeof *output;
    output->biWidth = input->biWidth;
    output->biHeight = input->biHeight;
    output->biPlanes = 1;
    output->biBitCount = 24;
    output->biCompression = BI_RGB;
    output->biSizeImage = static_cast<DWORD>(rawStride(*output) * output->biHeight);
    return ICERR_OK;
}

LRESULT MjpgCodec::decompress(const ICDECOMPRESS* frame, LPARAM size) const
{
    if (!frame || size < static_cast<LPARAM>(sizeof *frame) || !frame->lpInput || !frame->lpOutput)
        return ICERR_BADPARAM;
    if (decompressQuery(frame->lpbiInput, frame->lpbiOutput) != ICERR_OK || !frame->lpbiOutput)
        return ICERR_BADFORMAT;
    if (frame->lpbiInput->biSizeImage == 0)
        return ICERR_OK; // an empty frame repeats the one before
    const bool decoded =
        decodeJpeg(static_cast<const std::uint8_t*>(frame->lpInput), frame->lpbiInput->biSizeImage,
                   static_cast<std::uint8_t*>(frame->lpOutput), shapeOf(*frame->lpbiOutput));
    return decoded ? ICERR_OK : ICERR_ERROR;
}

} // namespace mjpg
