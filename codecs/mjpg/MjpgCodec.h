#pragma once

#include <windows.h>
#include <vfw.h>

namespace mjpg {

constexpr DWORD fourcc = mmioFOURCC('M', 'J', 'P', 'G');

/// One opened instance of the codec. Every member answers the installable-compressor message of its
/// name, with that message's return values.
class MjpgCodec
{
public:
    LRESULT handle(UINT message, LPARAM first, LPARAM second);

private:
    LRESULT getInfo(ICINFO* info, LPARAM size) const;
    LRESULT getState(void* state, LPARAM size) const;
    LRESULT setState(const void* state, LPARAM size);
    LRESULT setQuality(const DWORD* quality);

    LRESULT compressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const;
    LRESULT compressGetSize(const BITMAPINFOHEADER* input) const;
    LRESULT compress(const ICCOMPRESS* frame, LPARAM size) const;

    LRESULT decompressGetFormat(const BITMAPINFOHEADER* input, BITMAPINFOHEADER* output) const;
    LRESULT decompress(const ICDECOMPRESS* frame, LPARAM size) const;

    static constexpr DWORD defaultQuality = 7500;
    DWORD m_quality = defaultQuality; ///< for frames that come without one
};

} // namespace mjpg
