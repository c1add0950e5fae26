#include "image/CineFile.h"

#include <cstring>
#include <filesystem>
#include <fstream>

namespace exam {

namespace {

constexpr std::size_t headerSize = 76;
constexpr int mostLines = 4096;
constexpr int mostSamples = 65536;

// The header as it lies in the file; all fields little-endian, which is this processor's order.
struct Header
{
    std::int32_t type;
    std::int32_t count;
    std::int32_t description[11]; // the fields of uDataDesc after its tag
    std::int32_t extra[6];
};
static_assert(sizeof(Header) == headerSize);

std::vector<std::uint8_t> ReadWhole(const std::wstring& path)
{
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

std::wstring CineFile::Open(const std::wstring& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return L"there is no such file";
    const std::vector<std::uint8_t> bytes = ReadWhole(path);
    if (bytes.size() < headerSize) return L"the file is shorter than the 76 bytes of a header";
    if (std::wstring problem = ReadHeader(bytes); !problem.empty()) return problem;

    m_payload.assign(bytes.begin() + headerSize, bytes.end());
    const std::size_t held = m_payload.size() / FrameSize();
    m_complete =
        m_frames > 0 && m_payload.size() == FrameSize() * static_cast<std::size_t>(m_frames);
    if (m_frames == 0 || static_cast<std::size_t>(m_frames) > held)
        m_frames = static_cast<int>(held);
    return m_frames > 0 ? L"" : L"the file holds no whole frame";
}

std::wstring CineFile::ReadHeader(std::span<const std::uint8_t> bytes)
{
    Header header;
    std::memcpy(&header, bytes.data(), sizeof header);
    m_type = static_cast<uData>(header.type);
    m_frames = header.count;
    static_assert(sizeof(uDataDesc) == sizeof(std::int32_t) + sizeof header.description);
    std::memcpy(reinterpret_cast<char*>(&m_description) + sizeof(std::int32_t), header.description,
                sizeof header.description);
    std::memcpy(m_extra, header.extra, sizeof m_extra);

    if (m_type != uDataBMode) return L"the file does not hold B-mode frames";
    if (m_description.bitsPerSample != 8) return L"only frames of 8 bits a sample are shown";
    if (m_description.lines < 1 || m_description.lines > mostLines || m_description.samples < 2 ||
        m_description.samples > mostSamples)
        return L"the header gives an impossible frame size";
    if (m_frames < 0) return L"the header gives a negative count";
    if (m_description.samplingFreq <= 0 || m_description.soundSpeed <= 0)
        return L"the header gives no sampling frequency or no speed of sound";
    return L"";
}

ZelProbe CineFile::Probe() const
{
    ZelProbe probe{};
    probe.type = m_description.probeType;
    probe.elements = m_description.elements;
    probe.pitch = m_description.pitch;
    probe.radius = m_description.radius;
    probe.sectorAngle = m_description.sectorAngle;
    return probe;
}

std::size_t CineFile::FrameSize() const
{
    return static_cast<std::size_t>(Lines()) * static_cast<std::size_t>(Samples());
}

std::span<const std::uint8_t> CineFile::Frame(int frame) const
{
    if (frame < 0 || frame >= m_frames) return {};
    return std::span(m_payload).subspan(FrameSize() * static_cast<std::size_t>(frame), FrameSize());
}

} // namespace exam
