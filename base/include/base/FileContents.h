#pragma once

#include <base/Handles.h>

#include <cstddef>
#include <optional>
#include <string>

namespace base {

/// The bytes of a file of at most `limit` bytes; `limit` is less than 4 GiB. None when the file
/// cannot be opened, is a folder, is larger or cannot be read to its end. `sharing` says what
/// others may do with the file meanwhile. Throws only when memory is short.
inline std::optional<std::string> ReadFileWhole(const wchar_t* path, std::size_t limit,
                                                DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE |
                                                                FILE_SHARE_DELETE)
{
    const File file(CreateFileW(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!file || !GetFileSizeEx(file.get(), &size)) return std::nullopt;
    if (static_cast<ULONGLONG>(size.QuadPart) > limit) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) ||
        read != bytes.size())
        return std::nullopt;
    return bytes;
}

} // namespace base
