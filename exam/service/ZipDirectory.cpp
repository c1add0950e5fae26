#include "service/ZipDirectory.h"

#include <base/Encoding.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace exam {

namespace {

constexpr std::size_t endSize = 22; // size of the record at the end of an archive
constexpr std::size_t longestComment = 0xFFFF;
constexpr std::size_t wideLocatorSize = 20; // size of the record before that, with wide fields
constexpr std::size_t wideEndSize = 56;
constexpr std::size_t entrySize = 46;
constexpr std::uint64_t largestDirectory = 0x10000000; // 256 MiB

// The bytes of an archive. A number beyond their end reads as 0.
class Bytes
{
public:
    explicit Bytes(std::string bytes) : m_bytes(std::move(bytes)) {}

    template <class Number>
    Number At(std::size_t offset) const
    {
        Number number = 0;
        if (offset <= m_bytes.size() && m_bytes.size() - offset >= sizeof number)
            std::memcpy(&number, m_bytes.data() + offset, sizeof number);
        return number;
    }

    std::string_view Text(std::size_t offset, std::size_t size) const
    {
        return offset <= m_bytes.size() ? std::string_view(m_bytes).substr(offset, size)
                                        : std::string_view();
    }

    std::size_t FindLast(const char* mark) const { return m_bytes.rfind(mark); }
    std::size_t Size() const { return m_bytes.size(); }

private:
    std::string m_bytes;
};

// The position and size of the directory.
struct Place
{
    std::uint64_t offset;
    std::uint64_t size;
    std::uint64_t count;
};

class ArchiveFile
{
public:
    explicit ArchiveFile(const std::wstring& path)
        : m_file(std::filesystem::path(path), std::ios::binary)
    {
        m_file.seekg(0, std::ios::end);
        m_size = m_file ? static_cast<std::uint64_t>(m_file.tellg()) : 0;
    }

    std::uint64_t Size() const { return m_size; }

    Bytes Read(std::uint64_t offset, std::uint64_t size)
    {
        const bool isThere =
            offset <= m_size && m_size - offset >= size && size <= largestDirectory;
        std::string bytes(static_cast<std::size_t>(isThere ? size : 0), '\0');
        m_file.seekg(static_cast<std::streamoff>(offset));
        m_file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!m_file) bytes.clear();
        return Bytes(std::move(bytes));
    }

private:
    std::ifstream m_file;
    std::uint64_t m_size = 0;
};

// An archive of more than 65534 entries or 4 GiB keeps the directory's place in a record of its
// own.
std::optional<Place> FindWidePlace(ArchiveFile& file, const Bytes& locator)
{
    if (locator.Text(0, 4) != "PK\6\7") return std::nullopt;
    const Bytes end = file.Read(locator.At<std::uint64_t>(8), wideEndSize);
    if (end.Text(0, 4) != "PK\6\6") return std::nullopt;
    return Place{end.At<std::uint64_t>(48), end.At<std::uint64_t>(40), end.At<std::uint64_t>(32)};
}

std::optional<Place> FindDirectory(ArchiveFile& file)
{
    const std::uint64_t tail =
        std::min<std::uint64_t>(file.Size(), endSize + longestComment + wideLocatorSize);
    const Bytes bytes = file.Read(file.Size() - tail, tail);
    const std::size_t end = bytes.FindLast("PK\5\6");
    if (end == std::string::npos || bytes.Size() - end < endSize) return std::nullopt;
    const Place place{bytes.At<std::uint32_t>(end + 16), bytes.At<std::uint32_t>(end + 12),
                      bytes.At<std::uint16_t>(end + 10)};
    const bool isWide = place.count == 0xFFFF || place.offset == 0xFFFFFFFF;
    if (!isWide || end < wideLocatorSize) return place;
    const std::uint64_t locator = file.Size() - tail + end - wideLocatorSize;
    // 65535 can also be the true number of entries in an archive without wide fields.
    return FindWidePlace(file, file.Read(locator, wideLocatorSize)).value_or(place);
}

std::wstring NameText(std::string_view bytes, bool isUtf8)
{
    const UINT codePage = isUtf8 ? CP_UTF8 : CP_ACP;
    return base::WideFromBytes(codePage, bytes).value_or(std::wstring());
}

} // namespace

std::optional<std::vector<std::wstring>> ReadEntryNames(const std::wstring& archive)
{
    constexpr std::uint16_t utf8Flag = 0x800;
    ArchiveFile file(archive);
    const std::optional<Place> place = FindDirectory(file);
    if (!place || place->count > place->size / entrySize) return std::nullopt;
    const Bytes directory = file.Read(place->offset, place->size);
    std::vector<std::wstring> names;
    std::size_t at = 0;
    for (std::uint64_t i = 0; i < place->count; ++i) {
        if (directory.Text(at, 4) != "PK\1\2") return std::nullopt;
        const std::size_t size = directory.At<std::uint16_t>(at + 28);
        const bool isUtf8 = (directory.At<std::uint16_t>(at + 8) & utf8Flag) != 0;
        names.push_back(NameText(directory.Text(at + entrySize, size), isUtf8));
        at += entrySize + size + directory.At<std::uint16_t>(at + 30) +
              directory.At<std::uint16_t>(at + 32);
    }
    return names;
}

bool IsFolderName(const std::wstring& name)
{
    return name.ends_with(L'/') || name.ends_with(L'\\');
}

} // namespace exam
