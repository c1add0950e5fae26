#pragma once

#include <qor_utils/UPoint.h>

#include <vector>

namespace exam {

/// Gives the bins of a spectrum their velocities, in the units of CDopplerScaling.
struct FlowScale
{
    int pulsePeriod = 0; ///< microseconds
    int frequency = 0;   ///< transmitted, Hz
    int bins = 0;        ///< bin `bins / 2` is velocity 0
    int vesselAngle = 0; ///< between beam and flow, thousandths of a degree

    friend bool operator==(const FlowScale&, const FlowScale&) = default;
};

/// Spectra of a flow at regular times, and their traces. Columns are numbered from the beginning
/// of the acquisition.
struct FlowSpectrum
{
    static constexpr int traceCount = 4;

    FlowScale scale;
    UPoint gateBegin; ///< scan line and sample of the sample volume's end towards the probe
    UPoint gateEnd;   ///< the same of its other end
    int firstColumn = 0;
    int columns = 0;
    double columnsPerSecond = 100;
    std::vector<unsigned char> levels; ///< grey levels, scale.bins x columns, column by column
    std::vector<unsigned char> traces; ///< traceCount x columns, in the order of eTraceType
};

} // namespace exam
