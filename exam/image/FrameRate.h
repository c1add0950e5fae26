#pragma once

#include "image/CineFile.h"

namespace exam {

// Frames per second at which a recording is played: its own rate, or 30 when it has none.
inline double FrameRate(const CineFile& cine)
{
    const int rate = cine.Description().frameRate; // frames per 1000 s
    return rate > 0 ? rate / 1000.0 : 30.0;
}

} // namespace exam
