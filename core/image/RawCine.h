#pragma once

#include "base/FileReader.h"

#include <qor_utils/uData.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace exam {

/// The frames of a raw cine come from one of these.
enum class CineOrigin : std::int32_t
{
    recorded = 0,
    simulated = 1 ///< they show no patient
};

/// The content of a raw cine file's header, in the terms of this application.
/// docs/formats/raw-cine.md describes the format.
struct CineDescription
{
    uData type = uDataBMode;
    std::int32_t count = 0;         ///< frames; 0 when the recording was not finished
    uDataDesc stream;               ///< sizes, sampling, probe and frame rate; its tag is 0
    std::int32_t steerAngle = 0;    ///< thousandths of a degree
    std::int32_t apexAngle = 0;     ///< virtual apex, thousandths of a degree; 0: none
    std::int32_t lineOffset = 0;    ///< lines
    std::int32_t apertureLines = 0; ///< scan lines over the aperture; 0: one per element
    CineOrigin origin = CineOrigin::recorded;
    std::int32_t unused = 0;

    /// The size of a frame in bytes. Only B-mode headers give it, so other types have no result,
    /// and neither have numbers that no frame can have.
    std::optional<std::int64_t> FrameSize() const;
};

/// A raw cine file of any kind of data, open for reading.
class RawCine
{
public:
    /// Opens `path` and reads its header. The result is empty, or one sentence that says what is
    /// wrong with the file.
    std::wstring Open(const std::wstring& path);

    const CineDescription& Description() const { return m_description; }

    /// The number of bytes after the header.
    std::int64_t PayloadSize() const { return m_payloadSize; }

    /// Closes the file until it is read again.
    void Rest() const { m_file.Rest(); }

    /// Fills `bytes` with the payload from `offset` on. False when the payload ends before that, or
    /// cannot be read.
    bool Read(std::int64_t offset, std::span<std::uint8_t> bytes) const;

private:
    FileReader m_file;
    CineDescription m_description;
    std::int64_t m_payloadSize = 0;
};

} // namespace exam
