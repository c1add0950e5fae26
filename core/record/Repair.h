#pragma once

#include <string>
#include <vector>

namespace exam {

/// The result of a repair.
struct Repaired
{
    std::wstring path;
    int frames = 0;
    std::wstring problem; ///< one sentence about the file; empty when it is whole now
};

/// Repairs a movie or a raw cine whose recording was cut off. The frames that are whole stay, and
/// the header and the index are made anew. The repaired file takes the place of the damaged one
/// when it has proved to be whole, and not before. A file without damage is left as it is.
Repaired RepairRecording(const std::wstring& path);

/// Repairs the recordings of a folder that were cut off. Those that another program still writes,
/// and those without a frame, are left alone. The result names the repaired ones, and those that
/// cannot be repaired.
std::vector<Repaired> RepairFolder(const std::wstring& folder);

/// Repairs a recording and prints the result. False, with a sentence on standard error, when it is
/// not whole afterwards.
bool RepairCommand(const std::wstring& path);

} // namespace exam
