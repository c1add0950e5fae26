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

bool WriteFrame(const FrameSource& source, int frame, const std::wstring& path)
{
    std::vector<std::uint8_t> bytes;
    CCineStore store;
    return source.ReadFrame(frame, bytes) && BeginCine(store, path, source.Description()) &&
           store.AddFrame(bytes.data(), static_cast<int>(bytes.size())) && store.EndStorage();
}

} // namespace exam
