#include "diagnostics/ExecutableFile.h"

namespace utils_statics {

namespace {

base::File OpenFound(const wchar_t* path) noexcept
{
    wchar_t found[1024];
    const DWORD capacity = sizeof found / sizeof *found;
    const DWORD length = SearchPathW(nullptr, path, L".dll", capacity, found, nullptr);
    if (length == 0 || length >= capacity) return {};
    return base::File(CreateFileW(found, GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr));
}

} // namespace

ExecutableFile::ExecutableFile(const wchar_t* path) noexcept : m_file(OpenFound(path))
{
    LARGE_INTEGER size = {};
    if (m_file && GetFileSizeEx(m_file.get(), &size))
        m_size = static_cast<std::uint64_t>(size.QuadPart);
}

bool ExecutableFile::ReadBytes(std::uint64_t offset, void* bytes, std::size_t size) noexcept
{
    if (m_readsLeft == 0 || !Contains(offset, size)) return false;
    --m_readsLeft;
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD read = 0;
    return ReadFile(m_file.get(), bytes, static_cast<DWORD>(size), &read, &place) && read == size;
}

} // namespace utils_statics
