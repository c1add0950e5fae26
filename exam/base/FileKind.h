#pragma once

#include <string>

namespace exam {

/// The kind of thing that a path names.
enum class FileKind
{
    missing, ///< nothing
    file,    ///< a file on a disk, which this user may be allowed to open or not
    folder,
    device ///< a device or a pipe: anything else that can be opened
};

FileKind KindOfFile(const std::wstring& path);

/// One sentence that says what keeps a path from being opened as a file; empty for a file.
std::wstring FindFileProblem(const std::wstring& path);

} // namespace exam
