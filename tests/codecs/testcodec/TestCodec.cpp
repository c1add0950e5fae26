#include "TestCodec.h"

#include <vfw.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

constexpr DWORD fourcc = mmioFOURCC('T', 'S', 'T', '1');

constinit TestCodecOrders orders{};

void passGate()
{
    if (orders.closing) SetEvent(orders.closing);
    if (orders.mayClose) WaitForSingleObject(orders.mayClose, INFINITE);
}

LRESULT close()
{
    passGate();
    ++orders.closed;
    return 1;
}

LRESULT end()
{
    passGate();
    ++orders.ended;
    return ICERR_OK;
}

LRESULT begin(LRESULT answer)
{
    if (answer == ICERR_OK) ++orders.begun;
    return answer;
}

LRESULT getInfo(ICINFO* info)
{
    *info = {};
    info->dwSize = sizeof *info;
    info->fccType = ICTYPE_VIDEO;
    info->fccHandler = fourcc;
    info->dwFlags = orders.flags;
    info->dwVersionICM = ICVERSION;
    std::wcscpy(info->szName, orders.shortName);
    return sizeof *info;
}

LRESULT getState(BYTE* state, LPARAM size)
{
    ++orders.statesRead;
    if (orders.stateSize < 0) return ICERR_UNSUPPORTED;
    if (!state) return orders.stateSize;
    for (LPARAM i = 0; i < size; ++i)
        state[i] = static_cast<BYTE>(testCodecStateStart + i);
    return ICERR_OK;
}

LRESULT setState(const BYTE* state, LPARAM size)
{
    ++orders.statesWritten;
    std::memset(orders.state, 0, sizeof orders.state);
    if (state)
        std::memcpy(orders.state, state,
                    std::min<std::size_t>(static_cast<std::size_t>(size), sizeof orders.state));
    return size;
}

LRESULT query(const BITMAPINFOHEADER* input)
{
    return orders.refuseFormat || input->biCompression != BI_RGB ? ICERR_BADFORMAT : ICERR_OK;
}

LRESULT getFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output)
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

LRESULT compress(const ICCOMPRESS* frame)
{
    const LONG index = orders.frames++;
    orders.quality = static_cast<LONG>(frame->dwQuality);
    orders.asked = frame->dwFlags & ICCOMPRESS_KEYFRAME;
    if (orders.failFrom >= 0 && index >= orders.failFrom) return ICERR_ERROR;
    const auto bytes =
        static_cast<DWORD>(orders.frameBytes[index % TestCodecOrders::scriptedFrames]);
    std::memcpy(frame->lpOutput, frame->lpInput, bytes);
    frame->lpbiOutput->biSizeImage = bytes;
    if (frame->lpdwFlags) *frame->lpdwFlags = AVIIF_KEYFRAME;
    return ICERR_OK;
}

LRESULT handle(UINT message, LPARAM first, LPARAM second)
{
    const auto input = reinterpret_cast<const BITMAPINFOHEADER*>(first);
    switch (message) {
    case ICM_GETINFO: return getInfo(reinterpret_cast<ICINFO*>(first));
    case ICM_GETSTATE: return getState(reinterpret_cast<BYTE*>(first), second);
    case ICM_SETSTATE: return setState(reinterpret_cast<const BYTE*>(first), second);
    case ICM_COMPRESS_QUERY: return query(input);
    case ICM_COMPRESS_GET_FORMAT:
        return getFormat(input, reinterpret_cast<BITMAPINFOHEADER*>(second));
    case ICM_COMPRESS_GET_SIZE: return input->biWidth * input->biHeight * 4 + 64;
    case ICM_COMPRESS_BEGIN: return begin(query(input));
    case ICM_COMPRESS: return compress(reinterpret_cast<const ICCOMPRESS*>(first));
    case ICM_COMPRESS_END: return end();
    default: return ICERR_UNSUPPORTED;
    }
}

} // namespace

extern "C" __declspec(dllexport) TestCodecOrders* TestCodecOrdersOfThisProcess()
{
    return &orders;
}

extern "C" __declspec(dllexport) LRESULT CALLBACK
    DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM first, LPARAM second)
{
    ++orders.messages;
    switch (message) {
    case DRV_LOAD:
    case DRV_FREE:
    case DRV_ENABLE:
    case DRV_DISABLE: return 1;
    case DRV_OPEN:
        if (orders.refuseOpen) return 0;
        ++orders.opened;
        return 1;
    case DRV_CLOSE: return close();
    default:
        return message < DRV_USER ? DefDriverProc(id, driver, message, first, second)
                                  : handle(message, first, second);
    }
}
