#pragma once

namespace utils_statics {

// Radians of an angle in thousandths of a degree.
inline double ToRadians(int milliDegrees)
{
    return milliDegrees * 1.7453292519943296e-5;
}

} // namespace utils_statics
