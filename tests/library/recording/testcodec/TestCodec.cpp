#include "TestCodec.h"

#include <vfw.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

constexpr DWORD fourcc = mmioFOURCC('T', 'S', 'T', '1');

constinit TestCodecOrders s_orders{};

void PassGate()
{
    if (s_orders.closing) SetEvent(s_orders.closing);
    if (s_orders.mayClose) WaitForSingleObject(s_orders.mayClose, INFINITE);
}

LRESULT Close()
{
    PassGate();
    ++s_orders.closed;
    return 1;
}

LRESULT End()
{
    PassGate();
    ++s_orders.ended;
    return ICERR_OK;
}

LRESULT Begin(LRESULT answer)
{
    if (answer == ICERR_OK) ++s_orders.begun;
    return answer;
}

LRESULT GetInfo(ICINFO* info)
{
    *info = {};
    info->dwSize = sizeof *info;
    info->fccType = ICTYPE_VIDEO;
    info->fccHandler = fourcc;
    info->dwFlags = s_orders.flags;
    info->dwVersionICM = ICVERSION;
    std::wcscpy(info->szName, s_orders.shortName);
    return sizeof *info;
}

LRESULT GetState(BYTE* state, LPARAM size)
{
    ++s_orders.statesRead;
    if (s_orders.stateSize < 0) return ICERR_UNSUPPORTED;
    if (!state) return s_orders.stateSize;
    for (LPARAM i = 0; i < size; ++i)
        state[i] = static_cast<BYTE>(testCodecStateStart + i);
    return ICERR_OK;
}

LRESULT SetState(const BYTE* state, LPARAM size)
{
    ++s_orders.statesWritten;
    std::memset(s_orders.state, 0, sizeof s_orders.state);
    if (state)
        std::memcpy(s_orders.state, state,
                    std::min<std::size_t>(static_cast<std::size_t>(size), sizeof s_orders.state));
    return size;
}

LRESULT Query(const BITMAPINFOHEADER* input)
{
    return s_orders.refuseFormat || input->biCompression != BI_RGB ? ICERR_BADFORMAT : ICERR_OK;
}

LRESULT GetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output)
{
    if (output) {
        *output = *input;
        output->biSize = sizeof *output;
        output->biBitCount = 24;
        output->biCompression = fourcc;
        return ICERR_OK;
    }
    return sizeof(BITMAPINFOHEADER);
}

LRESULT Compress(const ICCOMPRESS* frame)
{
    const LONG index = s_orders.frames++;
    s_orders.quality = static_cast<LONG>(frame->dwQuality);
    s_orders.asked = frame->dwFlags & ICCOMPRESS_KEYFRAME;
    if (s_orders.failFrom >= 0 && index >= s_orders.failFrom) return ICERR_ERROR;
    const auto bytes =
        static_cast<DWORD>(s_orders.frameBytes[index % TestCodecOrders::scriptedFrames]);
    std::memcpy(frame->lpOutput, frame->lpInput, bytes);
    frame->lpbiOutput->biSizeImage = bytes;
    if (frame->lpdwFlags) *frame->lpdwFlags = AVIIF_KEYFRAME;
    return ICERR_OK;
}

LRESULT Handle(UINT message, LPARAM first, LPARAM second)
{
    const auto input = reinterpret_cast<const BITMAPINFOHEADER*>(first);
    switch (message) {
    case ICM_GETINFO: return GetInfo(reinterpret_cast<ICINFO*>(first));
    case ICM_GETSTATE: return GetState(reinterpret_cast<BYTE*>(first), second);
    case ICM_SETSTATE: return SetState(reinterpret_cast<const BYTE*>(first), second);
    case ICM_COMPRESS_QUERY: return Query(input);
    case ICM_COMPRESS_GET_FORMAT:
        return GetFormat(input, reinterpret_cast<BITMAPINFOHEADER*>(second));
    case ICM_COMPRESS_GET_SIZE: return input->biWidth * input->biHeight * 4 + 64;
    case ICM_COMPRESS_BEGIN: return Begin(Query(input));
    case ICM_COMPRESS: return Compress(reinterpret_cast<const ICCOMPRESS*>(first));
    case ICM_COMPRESS_END: return End();
    default: return ICERR_UNSUPPORTED;
    }
}

} // namespace

extern "C" __declspec(dllexport) TestCodecOrders* TestCodecOrdersOfThisProcess()
{
    return &s_orders;
}

extern "C" __declspec(dllexport) LRESULT CALLBACK
    DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM first, LPARAM second)
{
    ++s_orders.messages;
    switch (message) {
    case DRV_LOAD:
    case DRV_FREE:
    case DRV_ENABLE:
    case DRV_DISABLE: return 1;
    case DRV_OPEN:
        if (s_orders.refuseOpen) return 0;
        ++s_orders.opened;
        return 1;
    case DRV_CLOSE: return Close();
    default:
        return message < DRV_USER ? DefDriverProc(id, driver, message, first, second)
                                  : Handle(message, first, second);
    }
}
