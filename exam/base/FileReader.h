#pragma once

#include <base/Handles.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace exam {

/// A file that is open for reading at any position, however large it is. Others may write to it and
/// delete it meanwhile.
class FileReader
{
public:
    /// False when the file cannot be opened.
    bool Open(const std::wstring& path);

    /// The size in bytes when the file was opened.
    std::int64_t Size() const { return m_size; }

    /// Fills `bytes` from `position` on. False when the file ends before, or cannot be read.
    bool Read(std::int64_t position, void* bytes, std::size_t size) const;

private:
    base::File m_file;
    std::int64_t m_size = 0;
};

} // namespace exam
