#include "image/FrameSource.h"

namespace exam {

namespace {

constexpr double usualFramesPerSecond = 30;

} // namespace

double FrameSource::FramesPerSecond() const
{
    const int rate = Description().stream.frameRate; // frames per 1000 s
    return rate > 0 ? rate / 1000.0 : usualFramesPerSecond;
}

FlowSpectrum FrameSource::Flow(int) const
{
    return {};
}

} // namespace exam
