#pragma once

#include <base/Handles.h>

namespace base {

/// Whether a file can be opened in the way that replacing it needs; also where there is none. False
/// with GetLastError.
inline bool IsReplaceable(const wchar_t* place)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const File opened(CreateFileW(place, GENERIC_READ | DELETE, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    return opened || GetLastError() == ERROR_FILE_NOT_FOUND;
}

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
    // Asked first, because not every platform removes the backup it begins when it must not
    // replace.
    if (!IsReplaceable(place)) return false;
    if (ReplaceFileW(place, file, nullptr, 0, nullptr, nullptr)) return true;
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return GetLastError() == ERROR_FILE_NOT_FOUND && MoveFileExW(file, place, flags);
}

} // namespace base
