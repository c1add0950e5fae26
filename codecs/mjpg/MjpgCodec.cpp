#include "JpegImage.h"

#include <windows.h>
#include <vfw.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <new>

namespace mjpg {

namespace {

// The state that an application may keep and restore.
struct State
{
    DWORD tag;
    DWORD quality;
};

constexpr DWORD fourcc = mmioFOURCC('M', 'J', 'P', 'G');
constexpr DWORD stateTag = mmioFOURCC('M', 'J', 'S', '1');
constexpr LONG largestSide = 16384;

bool HasPlausibleSize(const BITMAPINFOHEADER& format)
{
    return format.biSize >= sizeof(BITMAPINFOHEADER) && format.biWidth > 0 &&
           format.biWidth <= largestSide && format.biHeight != 0 &&
           format.biHeight >= -largestSide && format.biHeight <= largestSide;
}

int HeightOf(const BITMAPINFOHEADER& format)
{
    return format.biHeight < 0 ? -format.biHeight : format.biHeight;
}

bool IsRaw(const BITMAPINFOHEADER* format)
{
    return format && HasPlausibleSize(*format) && format->biCompression == BI_RGB &&
           (format->biBitCount == 24 || format->biBitCount == 32);
}

bool IsJpeg(const BITMAPINFOHEADER* format)
{
    return format && HasPlausibleSize(*format) && format->biHeight > 0 &&
           format->biCompression == fourcc;
}

bool HaveSameSize(const BITMAPINFOHEADER& a, const BITMAPINFOHEADER& b)
{
    return a.biWidth == b.biWidth && HeightOf(a) == HeightOf(b);
}

int RawStride(const BITMAPINFOHEADER& format)
{
    return (format.biWidth * format.biBitCount + 31) / 32 * 4;
}

LONG JpegBytes(const BITMAPINFOHEADER& format)
{
    return static_cast<LONG>(
        JpegBound(format.biWidth, HeightOf(format))); // less than 1 GiB for the largest side
}

FrameShape ShapeOf(const BITMAPINFOHEADER& raw)
{
    return {raw.biWidth, HeightOf(raw), RawStride(raw), raw.biBitCount / 8, raw.biHeight > 0};
}

LRESULT CompressQuery(const BITMAPINFOHEADER* input, const BITMAPINFOHEADER* output)
{
    if (!IsRaw(input)) return ICERR_BADFORMAT;
    return !output || (IsJpeg(output) && HaveSameSize(*input, *output)) ? ICERR_OK
                                                                        : ICERR_BADFORMAT;
}

LRESULT DecompressQuery(const BITMAPINFOHEADER* input, const BITMAPINFOHEADER* output)
{
    if (!IsJpeg(input)) return ICERR_BADFORMAT;
    return !output || (IsRaw(output) && HaveSameSize(*input, *output)) ? ICERR_OK : ICERR_BADFORMAT;
}

LRESULT StoreNumber(LPARAM address, DWORD number)
{
    if (!address) return ICERR_BADPARAM;
    *reinterpret_cast<DWORD*>(address) = number;
    return ICERR_OK;
}

// One opened instance of the codec. Every member handles the installable-compressor message of its
// name and returns that message's values.
class MjpgCodec
{
public:
    LRESULT Handle(UINT message, LPARAM first, LPARAM second);

private:
    LRESULT GetInfo(ICINFO* info, LPARAM size) const;
    LRESULT GetState(void* state, LPARAM size) const;
    LRESULT SetState(const void* state, LPARAM size);
    LRESULT SetQuality(const DWORD* quality);

    LRESULT CompressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const;
    LRESULT CompressGetSize(const BITMAPINFOHEADER* input) const;
    LRESULT Compress(const ICCOMPRESS* frame, LPARAM size) const;

    LRESULT DecompressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const;
    LRESULT Decompress(const ICDECOMPRESS* frame, LPARAM size) const;

    static constexpr DWORD defaultQuality = 7500;
    DWORD m_quality = defaultQuality; // for frames without one of their own
};

LRESULT MjpgCodec::Handle(UINT message, LPARAM first, LPARAM second)
{
    const auto* const input = reinterpret_cast<const BITMAPINFOHEADER*>(first);
    auto* const output = reinterpret_cast<BITMAPINFOHEADER*>(second);
    switch (message) {
    case ICM_GETINFO: return GetInfo(reinterpret_cast<ICINFO*>(first), second);
    case ICM_GETSTATE: return GetState(reinterpret_cast<void*>(first), second);
    case ICM_SETSTATE: return SetState(reinterpret_cast<const void*>(first), second);
    case ICM_GETDEFAULTQUALITY: return StoreNumber(first, defaultQuality);
    case ICM_GETQUALITY: return StoreNumber(first, m_quality);
    case ICM_SETQUALITY: return SetQuality(reinterpret_cast<const DWORD*>(first));
    case ICM_GETDEFAULTKEYFRAMERATE: return StoreNumber(first, 1);

    case ICM_COMPRESS_QUERY:
    case ICM_COMPRESS_BEGIN: return CompressQuery(input, output);
    case ICM_COMPRESS_GET_FORMAT: return CompressGetFormat(input, output);
    case ICM_COMPRESS_GET_SIZE: return CompressGetSize(input);
    case ICM_COMPRESS: return Compress(reinterpret_cast<const ICCOMPRESS*>(first), second);
    case ICM_COMPRESS_END: return ICERR_OK;

    case ICM_DECOMPRESS_QUERY:
    case ICM_DECOMPRESS_BEGIN: return DecompressQuery(input, output);
    case ICM_DECOMPRESS_GET_FORMAT: return DecompressGetFormat(input, output);
    case ICM_DECOMPRESS: return Decompress(reinterpret_cast<const ICDECOMPRESS*>(first), second);
    case ICM_DECOMPRESS_END: return ICERR_OK;

    default: return ICERR_UNSUPPORTED; // such as dialogs, palettes and drawing
    }
}

LRESULT MjpgCodec::GetInfo(ICINFO* info, LPARAM size) const
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

LRESULT MjpgCodec::GetState(void* state, LPARAM size) const
{
    if (!state) return sizeof(State);
    if (size < static_cast<LPARAM>(sizeof(State))) return ICERR_BADSIZE;
    const State own{stateTag, m_quality};
    std::memcpy(state, &own, sizeof own);
    return ICERR_OK;
}

// Returns the number of bytes taken, or 0 for a state of another codec.
LRESULT MjpgCodec::SetState(const void* state, LPARAM size)
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

LRESULT MjpgCodec::SetQuality(const DWORD* quality)
{
    if (!quality) return ICERR_BADPARAM;
    m_quality = *quality == static_cast<DWORD>(ICQUALITY_DEFAULT)
                    ? defaultQuality
                    : std::min<DWORD>(*quality, bestQuality);
    return ICERR_OK;
}

LRESULT MjpgCodec::CompressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const
{
    if (!IsRaw(input)) return ICERR_BADFORMAT;
    if (!output) return sizeof *output;
    *output = {};
    output->biSize = sizeof *output;
    output->biWidth = input->biWidth;
    output->biHeight = HeightOf(*input);
    output->biPlanes = 1;
    output->biBitCount = 24;
    output->biCompression = fourcc;
    output->biSizeImage = static_cast<DWORD>(JpegBytes(*input));
    return ICERR_OK;
}

LRESULT MjpgCodec::CompressGetSize(const BITMAPINFOHEADER* input) const
{
    return IsRaw(input) ? JpegBytes(*input) : 0;
}

LRESULT MjpgCodec::Compress(const ICCOMPRESS* frame, LPARAM size) const
{
    if (!frame || size < static_cast<LPARAM>(sizeof *frame) || !frame->lpInput || !frame->lpOutput)
        return ICERR_BADPARAM;
    if (CompressQuery(frame->lpbiInput, frame->lpbiOutput) != ICERR_OK || !frame->lpbiOutput)
        return ICERR_BADFORMAT;
    const DWORD quality = frame->dwQuality == static_cast<DWORD>(ICQUALITY_DEFAULT)
                              ? m_quality
                              : std::min<DWORD>(frame->dwQuality, bestQuality);
    const std::size_t bytes =
        EncodeJpeg(static_cast<const std::uint8_t*>(frame->lpInput), ShapeOf(*frame->lpbiInput),
                   static_cast<int>(quality), static_cast<std::uint8_t*>(frame->lpOutput));
    if (bytes == 0) return ICERR_MEMORY;
    frame->lpbiOutput->biSizeImage = static_cast<DWORD>(bytes);
    if (frame->lpckid) *frame->lpckid = mmioFOURCC('d', 'c', 0, 0);
    if (frame->lpdwFlags) *frame->lpdwFlags = AVIIF_KEYFRAME;
    return ICERR_OK;
}

LRESULT MjpgCodec::DecompressGetFormat(const BITMAPINFOHEADER* input,
                                       BITMAPINFOHEADER* output) const
{
    if (!IsJpeg(input)) return ICERR_BADFORMAT;
    if (!output) return sizeof *output;
    *output = {};
    output->biSize = sizeof *output;
    output->biWidth = input->biWidth;
    output->biHeight = input->biHeight;
    output->biPlanes = 1;
    output->biBitCount = 24;
    output->biCompression = BI_RGB;
    output->biSizeImage = static_cast<DWORD>(RawStride(*output) * output->biHeight);
    return ICERR_OK;
}

LRESULT MjpgCodec::Decompress(const ICDECOMPRESS* frame, LPARAM size) const
{
    if (!frame || size < static_cast<LPARAM>(sizeof *frame) || !frame->lpInput || !frame->lpOutput)
        return ICERR_BADPARAM;
    if (DecompressQuery(frame->lpbiInput, frame->lpbiOutput) != ICERR_OK || !frame->lpbiOutput)
        return ICERR_BADFORMAT;
    if (frame->lpbiInput->biSizeImage == 0)
        return ICERR_OK; // an empty frame repeats the one before
    const bool decoded =
        DecodeJpeg(static_cast<const std::uint8_t*>(frame->lpInput), frame->lpbiInput->biSizeImage,
                   static_cast<std::uint8_t*>(frame->lpOutput), ShapeOf(*frame->lpbiOutput));
    return decoded ? ICERR_OK : ICERR_ERROR;
}

// The identifier of an open without a description, which only allows the codec to be configured.
constexpr LRESULT openedForConfiguration = -65536;

LRESULT OpenCodec(const ICOPEN* open)
{
    if (!open) return openedForConfiguration;
    if (open->fccType != ICTYPE_VIDEO) return 0;
    return reinterpret_cast<LRESULT>(new (std::nothrow) MjpgCodec);
}

MjpgCodec* CodecOf(DWORD_PTR id)
{
    const bool isCodec = id != 0 && static_cast<LRESULT>(id) != openedForConfiguration;
    return isCodec ? reinterpret_cast<MjpgCodec*>(id) : nullptr;
}

} // namespace

// The entry point that Video for Windows calls for every message.
extern "C" __declspec(dllexport) LRESULT CALLBACK
    DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM first, LPARAM second)
{
    switch (message) {
    case DRV_LOAD:
    case DRV_FREE:
    case DRV_ENABLE:
    case DRV_DISABLE: return 1;
    case DRV_OPEN: return OpenCodec(reinterpret_cast<const ICOPEN*>(second));
    case DRV_CLOSE: delete CodecOf(id); return 1;
    case DRV_QUERYCONFIGURE: return 0; // there is no dialog
    case DRV_CONFIGURE:
    case DRV_INSTALL:
    case DRV_REMOVE: return DRVCNF_OK;
    default: break;
    }
    if (message < DRV_USER) return DefDriverProc(id, driver, message, first, second);
    MjpgCodec* const codec = CodecOf(id);
    return codec ? codec->Handle(message, first, second) : ICERR_UNSUPPORTED;
}

} // namespace mjpg
