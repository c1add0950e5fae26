#include "base/FileReader.h"

namespace exam {

bool FileReader::Open(const std::wstring& path)
{
    m_file.reset(CreateFileW(path.c_str(), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!m_file || !GetFileSizeEx(m_file.get(), &size)) return false;
    m_size = size.QuadPart;
    return true;
}

bool FileReader::Read(std::int64_t position, void* bytes, std::size_t size) const
{
    LARGE_INTEGER place{};
    place.QuadPart = position;
    DWORD read = 0;
    return position >= 0 && size <= MAXDWORD &&
           SetFilePointerEx(m_file.get(), place, nullptr, FILE_BEGIN) &&
           ReadFile(m_file.get(), bytes, static_cast<DWORD>(size), &read, nullptr) && read == size;
}

} // namespace exam
