#pragma once

#include <windows.h>
#include <vfw.h>

namespace mjpg {

constexpr DWORD fourcc = mmioFOURCC('M', 'J', 'P', 'G');

/// One opened instance of the codec. Every member handles the installable-compressor message of its
/// name and returns that message's values.
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
    DWORD m_quality = defaultQuality; ///< for frames without one of their own
};

} // namespace mjpg
