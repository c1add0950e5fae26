#include "MjpgCodec.h"

#include <new>

namespace {

// The identifier of an open without a description, which only allows the codec to be configured.
constexpr LRESULT openedForConfiguration = -65536;

LRESULT OpenCodec(const ICOPEN* open)
{
    if (!open) return openedForConfiguration;
    if (open->fccType != ICTYPE_VIDEO) return 0;
    return reinterpret_cast<LRESULT>(new (std::nothrow) mjpg::MjpgCodec);
}

mjpg::MjpgCodec* CodecOf(DWORD_PTR id)
{
    const bool isCodec = id != 0 && static_cast<LRESULT>(id) != openedForConfiguration;
    return isCodec ? reinterpret_cast<mjpg::MjpgCodec*>(id) : nullptr;
}

LRESULT Handle(DWORD_PTR id, HDRVR driver, UINT message, LPARAM first, LPARAM second)
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
    mjpg::MjpgCodec* const codec = CodecOf(id);
    return codec ? codec->Handle(message, first, second) : ICERR_UNSUPPORTED;
}

} // namespace

/// The entry point that Video for Windows calls for every message.
extern "C" __declspec(dllexport) LRESULT CALLBACK
    DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM first, LPARAM second)
{
    return Handle(id, driver, message, first, second);
}
