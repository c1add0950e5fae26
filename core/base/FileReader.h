#pragma once

#include <base/Handles.h>

#include <cstddef>
#include <cstdint>
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

/// A file for reading at any position, however large it is. Others may write to it and delete it
/// meanwhile.
class FileReader
{
public:
    /// False when the file cannot be opened.
    bool Open(const std::wstring& path);

    /// Closes the file until it is read again. It cannot be read any more when it was changed
    /// meanwhile.
    void Rest() const;

    /// The size in bytes when the file was opened.
    std::int64_t Size() const { return m_size; }

    /// Fills `bytes` from `position` on. False when the file ends before, or cannot be read.
    bool Read(std::int64_t position, void* bytes, std::size_t size) const;

private:
    bool Reopen() const;

    std::wstring m_path;
    mutable base::File m_file;
    std::int64_t m_size = 0;
    std::int64_t m_written = 0; // the time of the last write, in the platform's units
};

} // namespace exam
