#pragma once

#include <base/Handles.h>

#include <cstddef>
#include <cstdint>

namespace utils_statics {

// An executable file whose bytes are not trusted.
class ExecutableFile
{
public:
    explicit ExecutableFile(const wchar_t* path) noexcept;

    // 0 when there is no such file.
    std::uint64_t Size() const noexcept { return m_size; }

    bool Contains(std::uint64_t offset, std::uint64_t size) const noexcept
    {
        return offset <= m_size && m_size - offset >= size;
    }

    // False when part of the record lies outside the file, and when more reads are made than any
    // honest file needs.
    template <class Record>
    bool Read(std::uint64_t offset, Record& record) noexcept
    {
        return ReadBytes(offset, &record, sizeof record);
    }

private:
    bool ReadBytes(std::uint64_t offset, void* bytes, std::size_t size) noexcept;

    base::File m_file;
    std::uint64_t m_size = 0;
    int m_readsLeft = 20000;
};

} // namespace utils_statics
