#pragma once

#include <windows.h>
#include <vfw.h>

#include <cstdint>
#include <string>
#include <vector>

// A finished movie, opened for reading; its video stream as stored in the file.
class AviMovie
{
public:
    explicit AviMovie(const std::wstring& path)
    {
        AVIFileInit();
        if (AVIFileOpenW(&m_file, path.c_str(), OF_READ | OF_SHARE_DENY_NONE, nullptr) != AVIERR_OK)
            return;
        if (AVIFileGetStream(m_file, &m_stream, streamtypeVIDEO, 0) != AVIERR_OK) return;
        AVIStreamInfoW(m_stream, &info, sizeof info);
        LONG size = sizeof format;
        AVIStreamReadFormat(m_stream, 0, &format, &size);
    }
    ~AviMovie()
    {
        if (m_stream) AVIStreamRelease(m_stream);
        if (m_file) AVIFileRelease(m_file);
        AVIFileExit();
    }
    AviMovie(const AviMovie&) = delete;
    AviMovie& operator=(const AviMovie&) = delete;

    bool IsOpen() const { return m_stream != nullptr; }
    LONG Length() const { return m_stream ? AVIStreamLength(m_stream) : -1; }

    bool IsKeyFrame(LONG index) const
    {
        return AVIStreamFindSample(m_stream, index, FIND_KEY | FIND_PREV) == index;
    }

    // The bytes of one frame; empty for a missing one.
    std::vector<std::uint8_t> Frame(LONG index) const
    {
        LONG bytes = 0;
        LONG samples = 0;
        if (AVIStreamRead(m_stream, index, 1, nullptr, 0, &bytes, &samples) != AVIERR_OK ||
            bytes <= 0)
            return {};
        std::vector<std::uint8_t> data(static_cast<std::size_t>(bytes));
        if (AVIStreamRead(m_stream, index, 1, data.data(), bytes, &bytes, &samples) != AVIERR_OK)
            return {};
        data.resize(static_cast<std::size_t>(bytes));
        return data;
    }

    AVISTREAMINFOW info{};
    BITMAPINFOHEADER format{};

private:
    PAVIFILE m_file = nullptr;
    PAVISTREAM m_stream = nullptr;
};
