// The one file of the native build, which lies in memory: for the portable sources that read one
// whole, and for those that read it in parts.
#include "base/FileReader.h"

#include <base/FileContents.h>
#include <fuzz/InputFile.h>

#include <cstring>
#include <string_view>

namespace {

std::string_view s_bytes;

} // namespace

namespace fuzz {

std::wstring InputFile(std::string_view bytes)
{
    s_bytes = bytes;
    return L"file in memory";
}

} // namespace fuzz

namespace base {

std::optional<std::string> ReadFileWhole(const wchar_t*, std::size_t limit)
{
    if (s_bytes.size() > limit) return std::nullopt;
    return std::string(s_bytes);
}

} // namespace base

namespace exam {

FileKind KindOfFile(const std::wstring&)
{
    return FileKind::file;
}

std::wstring FindFileProblem(const std::wstring&)
{
    return L"";
}

bool FileReader::Open(const std::wstring&)
{
    m_size = static_cast<std::int64_t>(s_bytes.size());
    return true;
}

void FileReader::Rest() const {}

bool FileReader::Read(std::int64_t position, void* bytes, std::size_t size) const
{
    if (position < 0 || position > m_size || static_cast<std::uint64_t>(m_size - position) < size)
        return false;
    std::memcpy(bytes, s_bytes.data() + position, size);
    return true;
}

} // namespace exam
