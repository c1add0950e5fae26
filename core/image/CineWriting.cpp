#include "image/CineWriting.h"

#include <cstdint>
#include <vector>

namespace exam {

bool BeginCine(CCineStore& store, const std::wstring& path, const CineDescription& cine)
{
    return store.InitStorage(path.c_str(), cine.type, cine.stream, cine.steerAngle, cine.apexAngle,
                             cine.lineOffset, cine.apertureLines, static_cast<int>(cine.origin),
                             cine.unused);
}

bool WriteFrame(const FrameSource& source, int frame, const std::wstring& path)
{
    std::vector<std::uint8_t> bytes;
    CCineStore store;
    return source.ReadFrame(frame, bytes) && BeginCine(store, path, source.Description()) &&
           store.AddFrame(bytes.data(), static_cast<int>(bytes.size())) && store.EndStorage();
}

} // namespace exam
