#pragma once

#include <windows.h>

namespace base {

/// Moves a file to the place of another on the same volume in one step. A file that is replaced
/// hands on its access rights, attributes and time of creation. False, with GetLastError, when
/// neither was changed; so it is where the place is a folder.
inline bool MoveOver(const wchar_t* file, const wchar_t* place)
{
    // Asked first, because not every platform refuses to put a file in the place of an empty
    // folder.
    const DWORD attributes = GetFileAttributesW(place);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (ReplaceFileW(place, file, nullptr, 0, nullptr, nullptr)) return true;
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return GetLastError() == ERROR_FILE_NOT_FOUND && MoveFileExW(file, place, flags);
}

} // namespace base
