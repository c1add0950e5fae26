#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace utils_statics {

// What changes when a file is written to, or when another takes its place.
struct FileStamp
{
    std::uint64_t written = 0; // in 100 ns
    std::uint64_t created = 0; // in 100 ns
    std::uint64_t size = 0;    // in bytes
    // The file was last written so long ago that a later change cannot have the same time. The
    // clocks of some file systems tick every two seconds.
    bool isSettled = false;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// Nothing when there is no such file.
std::optional<FileStamp> StampOf(const std::wstring& path);

} // namespace utils_statics
