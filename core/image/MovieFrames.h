#pragma once

#include "base/FileReader.h"
#include "image/PixelFrames.h"

#include <base/VideoCodec.h>

#include <cstdint>
#include <string>
#include <vector>

namespace exam {

/// The frames of an AVI movie that all stand by themselves, as those of recordings do. They are
/// read on demand, and decoded by the codec that the movie names.
class MovieFrames : public PixelFrames
{
public:
    /// False when the file is no whole movie, or its codec is missing.
    bool Open(const std::wstring& path);

    bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const override;
    void Rest() const override { m_file.Rest(); }

private:
    bool ReadHeaders(std::int64_t begin, std::int64_t end);
    bool ReadIndex(std::int64_t begin, std::int64_t end);
    bool FindDecoder(FOURCC handler);

    FileReader m_file;
    std::int64_t m_frames = 0; // the position from which the index counts
    std::int64_t m_end = 0;    // and where the frames end
    std::vector<std::uint32_t> m_index;
    int m_framesPer1000s = 0;
    BITMAPINFOHEADER m_format{}; // in the file
    BITMAPINFOHEADER m_shown{};  // as it is decoded
    base::VideoCodec m_codec;    // empty: the frames are not compressed
};

} // namespace exam
