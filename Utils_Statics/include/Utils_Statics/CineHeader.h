#pragma once

#include <qor_utils/uData.h>

#include <cstdint>

/// The first 76 bytes of a raw cine file, in memory exactly as on disk (little-endian, no padding).
/// docs/formats/raw-cine.md describes the file.
struct CineHeader
{
    /// The number of words of uDataDesc that are stored: all but the first, which is a tag of the
    /// running program.
    static constexpr int descWords = 11;
    static constexpr int extraValues = 6; ///< the number of the caller's integers

    uData type{}; ///< kind of data in the file
    /// The number of frames, or the size in bytes of the last ECG block (CCineStore::AddECGData).
    std::int32_t frameCount{};
    std::uint32_t desc[descWords]{};   ///< words two to twelve of the data description, verbatim
    std::int32_t extra[extraValues]{}; ///< the caller's six integers, stored without interpretation
};

static_assert(sizeof(CineHeader) == 76, "the header is written to the file as one block");
