#include "image/MovieFrames.h"

#include "image/AviChunks.h"

#include <vfw.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace exam {

namespace {

bool IsPossible(const BITMAPINFOHEADER& format)
{
    constexpr int mostPixels = PixelFrames::mostPixels;
    return format.biSize >= sizeof format && format.biWidth > 0 && format.biWidth <= mostPixels &&
           format.biHeight >= -mostPixels && format.biHeight <= mostPixels;
}

DWORD SizeOfRows(const BITMAPINFOHEADER& format)
{
    const auto width = static_cast<DWORD>(format.biWidth);
    return (width * format.biBitCount + 31) / 32 * 4 *
           static_cast<DWORD>(std::abs(format.biHeight));
}

} // namespace

bool MovieFrames::Open(const std::wstring& path)
{
    if (!m_file.Open(path)) return false;
    const auto riff = ReadChunk(m_file, 0, m_file.Size());
    if (!riff || riff->name != formtypeAVI) return false;
    const auto headers = FindChunk(m_file, *riff, listtypeAVIHEADER);
    const auto movie = FindChunk(m_file, *riff, listtypeAVIMOVIE);
    const auto index = FindChunk(m_file, *riff, ckidAVINEWINDEX);
    if (!headers || !movie || !index || !ReadHeaders(headers->begin, headers->end)) return false;
    m_frames = movie->begin - listType;
    m_end = movie->end;
    std::vector<std::uint8_t> first;
    return ReadIndex(index->begin, index->end) &&
           Describe({m_format.biWidth, std::abs(m_format.biHeight)},
                    static_cast<int>(m_index.size()), m_framesPer1000s) &&
           ReadFrame(0, first);
}

bool MovieFrames::ReadHeaders(std::int64_t begin, std::int64_t end)
{
    const auto stream = FindChunk(m_file, {0, begin, end}, listtypeSTREAMHEADER);
    if (!stream) return false;
    const auto header = FindChunk(m_file, *stream, ckidSTREAMHEADER);
    const auto format = FindChunk(m_file, *stream, ckidSTREAMFORMAT);
    AVIStreamHeader facts = {};
    const auto size = static_cast<std::int64_t>(offsetof(AVIStreamHeader, dwStart));
    if (!header || !format || header->end - header->begin < size ||
        format->end - format->begin < std::int64_t{sizeof m_format} ||
        !m_file.Read(header->begin, &facts, static_cast<std::size_t>(size)) ||
        !m_file.Read(format->begin, &m_format, sizeof m_format))
        return false;
    const double rate = 1000.0 * facts.dwRate / std::max<DWORD>(1, facts.dwScale);
    m_framesPer1000s = static_cast<int>(std::lround(std::min(rate, 1e7)));
    return facts.fccType == streamtypeVIDEO && IsPossible(m_format) &&
           FindDecoder(facts.fccHandler);
}

bool MovieFrames::FindDecoder(FOURCC handler)
{
    m_shown = m_format;
    if (m_format.biCompression == BI_RGB) return true;
    m_shown = {sizeof m_shown, m_format.biWidth, m_format.biHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    m_shown.biSizeImage = SizeOfRows(m_shown);
    m_format.biSize = sizeof m_format; // what follows it in the file is not read
    m_codec.reset(ICLocate(ICTYPE_VIDEO, handler, &m_format, &m_shown, ICMODE_DECOMPRESS));
    return m_codec && ICDecompressBegin(m_codec.get(), &m_format, &m_shown) == ICERR_OK;
}

// A frame that needs the one before it cannot be shown by itself.
bool MovieFrames::ReadIndex(std::int64_t begin, std::int64_t end)
{
    constexpr std::int64_t mostFrames = 10'000'000;
    const std::int64_t count = (end - begin) / std::int64_t{sizeof(AVIINDEXENTRY)};
    if (count < 1 || count > mostFrames) return false;
    std::vector<AVIINDEXENTRY> entries(static_cast<std::size_t>(count));
    if (!m_file.Read(begin, entries.data(), entries.size() * sizeof(AVIINDEXENTRY))) return false;
    for (const AVIINDEXENTRY& entry : entries) {
        if (!IsFrame(entry.ckid) || (entry.dwFlags & AVIIF_KEYFRAME) == 0) return false;
        m_index.push_back(entry.dwChunkOffset);
    }
    return true;
}

bool MovieFrames::ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const
{
    if (frame < 0 || frame >= Frames()) return false;
    const auto chunk =
        ReadChunk(m_file, m_frames + m_index[static_cast<std::size_t>(frame)], m_end);
    if (!chunk || !IsFrame(chunk->name) || chunk->end - chunk->begin > mostFrameBytes) return false;
    std::vector<std::uint8_t> read(static_cast<std::size_t>(chunk->end - chunk->begin));
    if (!m_file.Read(chunk->begin, read.data(), read.size())) return false;
    std::vector<std::uint8_t> rows;
    if (m_codec) {
        BITMAPINFOHEADER in = m_format;
        BITMAPINFOHEADER out = m_shown;
        in.biSizeImage = static_cast<DWORD>(read.size());
        rows.resize(out.biSizeImage);
        if (ICDecompress(m_codec.get(), 0, &in, read.data(), &out, rows.data()) != ICERR_OK)
            return false;
    } else {
        rows = std::move(read);
    }
    return rows.size() >= SizeOfRows(m_shown) && ToPlanes(m_shown, rows.data(), bytes);
}

} // namespace exam
