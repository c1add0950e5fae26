#pragma once

#include <qor_utils/ZelProbe.h>
#include <qor_utils/uData.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace exam {

// A raw cine file of grey levels, read whole. docs/formats/raw-cine.md describes the format.
class CineFile
{
public:
    // Reads `path`; an empty result text means success, else it is one sentence that says what is
    // wrong with the file. A file whose count field is 0 (the recording was cut off) holds as many
    // frames as its size gives.
    std::wstring Open(const std::wstring& path);

    uData Type() const { return m_type; }
    const uDataDesc& Description() const { return m_description; }
    int Frames() const { return m_frames; }
    int Lines() const { return m_description.lines; }
    int Samples() const { return m_description.samples; }

    // Whether the header's own count agrees with the size of the file.
    bool IsComplete() const { return m_complete; }

    ZelProbe Probe() const;
    int Steering() const { return m_extra[0]; }   // thousandths of a degree
    int Apex() const { return m_extra[1]; }       // thousandths of a degree, 0 = none
    int LineOffset() const { return m_extra[2]; } // lines
    int LineCount() const
    {
        return m_extra[3];
    } // scan lines over the aperture, 0 = one per element

    // Lines() x Samples() bytes, line by line; `frame` from 0 to Frames() - 1. Valid while the
    // object is not changed.
    std::span<const std::uint8_t> Frame(int frame) const;

private:
    std::wstring ReadHeader(std::span<const std::uint8_t> bytes);
    std::size_t FrameSize() const;

    uData m_type = uDataBMode;
    uDataDesc m_description{};
    std::int32_t m_extra[6] = {};
    int m_frames = 0;
    bool m_complete = false;
    std::vector<std::uint8_t> m_payload;
};

} // namespace exam
