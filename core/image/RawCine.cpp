#include "image/RawCine.h"

#include "base/FileReader.h"

#include <Utils_Statics/CineHeader.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

namespace exam {

namespace {

constexpr std::int64_t headerSize = sizeof(CineHeader);

// The use of the header's six free integers.
enum Extra
{
    steerAngleExtra,
    apexAngleExtra,
    lineOffsetExtra,
    apertureLinesExtra,
    originExtra,
    unusedExtra
};

uDataDesc ToStream(const std::uint32_t (&words)[CineHeader::descWords])
{
    std::array<std::uint32_t, CineHeader::descWords + 1> all{}; // the tag comes first
    std::copy(std::begin(words), std::end(words), all.begin() + 1);
    return std::bit_cast<uDataDesc>(all);
}

CineDescription ToDescription(const CineHeader& header)
{
    return {header.type,
            header.frameCount,
            ToStream(header.desc),
            header.extra[steerAngleExtra],
            header.extra[apexAngleExtra],
            header.extra[lineOffsetExtra],
            header.extra[apertureLinesExtra],
            CineOrigin{header.extra[originExtra]},
            header.extra[unusedExtra]};
}

} // namespace

std::optional<std::int64_t> CineDescription::FrameSize() const
{
    const std::int32_t bits = stream.bitsPerSample;
    if (type != uDataBMode || stream.lines < 1 || stream.samples < 1 || bits < 8 || bits > 64 ||
        bits % 8 != 0)
        return {};
    const std::int64_t values = std::int64_t{stream.lines} * stream.samples;
    const std::int64_t bytes = bits / 8;
    if (values > std::numeric_limits<std::int64_t>::max() / bytes) return {};
    return values * bytes;
}

std::wstring RawCine::Open(const std::wstring& path)
{
    if (std::wstring problem = FindFileProblem(path); !problem.empty()) return problem;
    if (!m_file.Open(path)) return L"the file cannot be read";
    m_payloadSize = m_file.Size() - headerSize;
    if (m_payloadSize < 0) return L"the file is shorter than the 76 bytes of a header";
    CineHeader header;
    if (!m_file.Read(0, &header, sizeof header)) return L"the file cannot be read";
    m_description = ToDescription(header);
    return L"";
}

bool RawCine::Read(std::int64_t offset, std::span<std::uint8_t> bytes) const
{
    return offset >= 0 && m_file.Read(headerSize + offset, bytes.data(), bytes.size());
}

} // namespace exam
