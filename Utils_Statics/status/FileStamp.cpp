#include "status/FileStamp.h"

#include <windows.h>

namespace utils_statics {

namespace {

constexpr std::uint64_t settledAfter = 30'000'000; // three seconds

std::uint64_t Joined(DWORD high, DWORD low)
{
    return std::uint64_t{high} << 32 | low;
}

std::uint64_t Joined(const FILETIME& time)
{
    return Joined(time.dwHighDateTime, time.dwLowDateTime);
}

std::uint64_t Now()
{
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return Joined(now);
}

} // namespace

std::optional<FileStamp> StampOf(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA facts = {};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts)) return std::nullopt;
    const std::uint64_t written = Joined(facts.ftLastWriteTime);
    return FileStamp{written, Joined(facts.ftCreationTime),
                     Joined(facts.nFileSizeHigh, facts.nFileSizeLow),
                     written + settledAfter < Now()};
}

} // namespace utils_statics
