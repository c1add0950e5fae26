#pragma once

#include <cstdint>

/// The kinds of data a scanner delivers.
enum uData : std::int32_t
{
    uDataBMode = 0,
    uDataColour = 1,
    uDataSpectral = 2,
    uDataMMode = 3,
    uDataEcg = 4
};

/// The description of one data stream: twelve 32-bit integers. A file holds all but the tag, as
/// they are in memory.
struct uDataDesc
{
    std::int32_t tag = 0;           ///< free for the running program's use
    std::int32_t lines = 0;         ///< scan lines
    std::int32_t samples = 0;       ///< samples on a line
    std::int32_t bitsPerSample = 0; ///< size of a sample
    std::int32_t samplingFreq = 0;  ///< Hz
    std::int32_t soundSpeed = 0;    ///< m/s
    std::int32_t probeType = 0;     ///< a ProbeType; the next fields are like those of ZelProbe
    std::int32_t elements = 0;      ///< number of the probe's elements
    std::int32_t pitch = 0;         ///< microns
    std::int32_t radius = 0;        ///< microns
    std::int32_t sectorAngle = 0;   ///< thousandths of a degree
    std::int32_t frameRate = 0;     ///< frames in 1000 seconds (mHz)

    /// Compares all twelve words.
    friend constexpr bool operator==(const uDataDesc&, const uDataDesc&) = default;
};

static_assert(sizeof(uDataDesc) == 48, "the description is stored in files");
