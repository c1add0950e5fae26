#pragma once

#include <base/Handles.h>

namespace base {

/// True when a file can be opened in the way needed to replace it, or does not exist. GetLastError
/// gives the reason for false.
inline bool IsReplaceable(const wchar_t* place)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const File opened(CreateFileW(place, GENERIC_READ | DELETE, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    return opened || GetLastError() == ERROR_FILE_NOT_FOUND;
}

/// Moves a file to the place of another on the same volume in one step. The new file keeps the
/// access rights, attributes and creation time of the file that it replaces. False, with
/// GetLastError, when neither file was changed, as for a folder at the place.
inline bool MoveOver(const wchar_t* file, const wchar_t* place)
{
    // This is checked first, because some platforms put a file in the place of an empty folder.
    const DWORD attributes = GetFileAttributesW(place);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    // This is checked first, because some platforms leave a backup behind when they must not
    // replace.
    if (!IsReplaceable(place)) return false;
    if (ReplaceFileW(place, file, nullptr, 0, nullptr, nullptr)) return true;
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return GetLastError() == ERROR_FILE_NOT_FOUND && MoveFileExW(file, place, flags);
}

} // namespace base
