#pragma once

namespace utils_statics {

// Converts an angle from thousandths of a degree to radians.
inline double ToRadians(int milliDegrees)
{
    return milliDegrees * 1.7453292519943296e-5;
}

} // namespace utils_statics
