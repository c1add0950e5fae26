#pragma once

// A recording of many frames takes no room on the disk: all but its header and first frame is a
// hole.

#include "image/CineWriting.h"
#include "image/RawCine.h"

#include <base/Handles.h>
#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/CineHeader.h>

#include <winioctl.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace large_cine {

using namespace exam;

// False when the disk has not the room that some platforms take for a hole.
inline bool HasRoom(const std::wstring& folder, std::int64_t bytes)
{
    ULARGE_INTEGER free = {};
    return GetDiskFreeSpaceExW(folder.c_str(), &free, nullptr, nullptr) &&
           free.QuadPart > static_cast<ULONGLONG>(bytes) + 100'000'000;
}

// Writes `path` with so many frames of 30 a second; false when it cannot be written.
inline bool WriteLargeCine(const std::wstring& path, int frames, int lineCount, int sampleCount)
{
    CineDescription cine;
    cine.stream.lines = lineCount;
    cine.stream.samples = sampleCount;
    cine.stream.bitsPerSample = 8;
    cine.stream.samplingFreq = 20'000'000;
    cine.stream.soundSpeed = 1540;
    cine.stream.probeType = qor_utils::linearProbe;
    cine.stream.pitch = 200;
    cine.stream.elements = lineCount;
    cine.apertureLines = lineCount;
    cine.stream.frameRate = 30'000;
    std::string frame(static_cast<std::size_t>(lineCount) * static_cast<std::size_t>(sampleCount),
                      '\xC8');
    CCineStore store;
    if (!BeginCine(store, path, cine) ||
        !store.AddFrame(frame.data(), static_cast<int>(frame.size())) || !store.EndStorage())
        return false;
    const base::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD unused = 0;
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &unused, nullptr);
    LARGE_INTEGER end = {};
    end.QuadPart =
        static_cast<LONGLONG>(sizeof(CineHeader)) + static_cast<LONGLONG>(frame.size()) * frames;
    LARGE_INTEGER countPlace = {};
    countPlace.QuadPart = offsetof(CineHeader, frameCount);
    return SetFilePointerEx(file.get(), countPlace, nullptr, FILE_BEGIN) &&
           WriteFile(file.get(), &frames, sizeof frames, &unused, nullptr) &&
           SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.get());
}

} // namespace large_cine
