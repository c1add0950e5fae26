#include "diagnostics/VersionFile.h"

#include <base/Handles.h>

#include <algorithm>
#include <cstdint>

namespace utils_statics {

namespace {

constexpr WORD versionType = 16; // RT_VERSION, as a number
constexpr std::uint64_t pageSize = 0x1000;
constexpr std::uint64_t sectorSize = 0x200; // images are mapped in whole sectors

constexpr std::uint64_t RoundedUp(std::uint64_t size, std::uint64_t unit)
{
    return (size + unit - 1) / unit * unit;
}

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

// An executable file whose bytes are not trusted.
class ExecutableFile
{
public:
    explicit ExecutableFile(const wchar_t* path) noexcept : m_file(OpenFound(path))
    {
        LARGE_INTEGER size = {};
        if (m_file && GetFileSizeEx(m_file.get(), &size))
            m_size = static_cast<std::uint64_t>(size.QuadPart);
    }

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
    bool ReadBytes(std::uint64_t offset, void* bytes, std::size_t size) noexcept
    {
        if (m_readsLeft == 0 || !Contains(offset, size)) return false;
        --m_readsLeft;
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        DWORD read = 0;
        return ReadFile(m_file.get(), bytes, static_cast<DWORD>(size), &read, &place) &&
               read == size;
    }

    base::File m_file;
    std::uint64_t m_size = 0;
    int m_readsLeft = 20000;
};

// An executable file of 32 or 64 bits.
class PortableExecutable
{
public:
    PortableExecutable(ExecutableFile& file, std::uint64_t header) noexcept
        : m_file(file), m_header(header)
    {
    }

    bool HasSoundVersionResource() noexcept
    {
        constexpr std::uint64_t optional = sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER);
        IMAGE_FILE_HEADER header = {};
        WORD magic = 0;
        if (!m_file.Read(m_header + sizeof(DWORD), header) ||
            !m_file.Read(m_header + optional, magic))
            return false;
        m_sectionTable = m_header + optional + header.SizeOfOptionalHeader;
        m_sectionCount = header.NumberOfSections;
        return magic == IMAGE_NT_OPTIONAL_HDR32_MAGIC
                   ? HasSoundResources<IMAGE_OPTIONAL_HEADER32>(m_header + optional)
                   : magic == IMAGE_NT_OPTIONAL_HDR64_MAGIC &&
                         HasSoundResources<IMAGE_OPTIONAL_HEADER64>(m_header + optional);
    }

private:
    enum Level
    {
        typeLevel,
        nameLevel,
        languageLevel
    };

    // Bytes that are contiguous both in the file and in the image.
    struct Extent
    {
        std::uint64_t address = 0;
        std::uint64_t offset = 0; // in the file
        std::uint64_t size = 0;

        bool Contains(std::uint64_t at, std::uint64_t length) const noexcept
        {
            return at >= address && at - address <= size && size - (at - address) >= length;
        }
    };

    template <class OptionalHeader>
    bool HasSoundResources(std::uint64_t offset) noexcept
    {
        OptionalHeader header = {};
        if (!m_file.Read(offset, header)) return false;
        m_imageSize = header.SizeOfImage;
        m_headersSize = header.SizeOfHeaders;
        m_isFlat = header.SectionAlignment % pageSize != 0;
        m_root = header.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE].VirtualAddress;
        return FindExtent(m_root, m_resources) && IsSoundTable(0, typeLevel);
    }

    bool ReadSection(unsigned index, IMAGE_SECTION_HEADER& section) noexcept
    {
        return m_file.Read(m_sectionTable + std::uint64_t{index} * sizeof section, section);
    }

    // The size of a section in the image.
    static std::uint64_t ImageSize(const IMAGE_SECTION_HEADER& section) noexcept
    {
        const DWORD size =
            section.Misc.VirtualSize ? section.Misc.VirtualSize : section.SizeOfRawData;
        return RoundedUp(size, pageSize);
    }

    // Finds the part of a section that is the same in the file and in the image. The section is the
    // first whose data contains the address, as in the platform's own search. False when there is
    // none.
    bool FindExtent(std::uint64_t address, Extent& extent) noexcept
    {
        for (unsigned i = 0; i < m_sectionCount; ++i) {
            IMAGE_SECTION_HEADER section = {};
            if (!ReadSection(i, section)) return false;
            extent = {section.VirtualAddress, section.PointerToRawData, section.SizeOfRawData};
            if (extent.address + extent.size > UINT32_MAX) return false; // sums that wrap
            if (!extent.Contains(address, 1)) continue;
            extent.size =
                std::min({extent.size, ImageSize(section), Left(m_imageSize, extent.address),
                          Left(m_file.Size(), extent.offset)});
            return IsSameInImage(extent) && (m_isFlat || IsAlone(i, extent));
        }
        return false;
    }

    static std::uint64_t Left(std::uint64_t size, std::uint64_t offset) noexcept
    {
        return size - std::min(size, offset);
    }

    // True when the bytes of the file have that address in the image.
    bool IsSameInImage(const Extent& extent) const noexcept
    {
        return extent.address == extent.offset ||
               (!m_isFlat && extent.offset % sectorSize == 0 && extent.address >= m_headersSize);
    }

    // True when no other section overlaps the extent in the image.
    bool IsAlone(unsigned index, const Extent& extent) noexcept
    {
        for (unsigned i = 0; i < m_sectionCount; ++i) {
            IMAGE_SECTION_HEADER section = {};
            if (!ReadSection(i, section)) return false;
            const std::uint64_t begin = section.VirtualAddress;
            if (i != index && begin < extent.address + extent.size &&
                begin + ImageSize(section) > extent.address)
                return false;
        }
        return true;
    }

    // Reads a record of the resources by its offset from their root.
    template <class Record>
    bool ReadResource(std::uint64_t offset, Record& record) noexcept
    {
        const std::uint64_t address = m_root + offset;
        return m_resources.Contains(address, sizeof record) &&
               m_file.Read(m_resources.offset + (address - m_resources.address), record);
    }

    bool IsSoundTable(std::uint64_t offset, Level level) noexcept
    {
        IMAGE_RESOURCE_DIRECTORY table = {};
        if (!ReadResource(offset, table)) return false;
        const unsigned count = unsigned{table.NumberOfNamedEntries} + table.NumberOfIdEntries;
        for (unsigned i = 0; i < count; ++i) {
            IMAGE_RESOURCE_DIRECTORY_ENTRY entry = {};
            if (!ReadResource(offset + sizeof table + std::uint64_t{i} * sizeof entry, entry) ||
                !IsSoundEntry(entry, level))
                return false;
        }
        return count > 0 || level != languageLevel;
    }

    // Only entries of the version resource count. The platform takes any of its languages.
    bool IsSoundEntry(const IMAGE_RESOURCE_DIRECTORY_ENTRY& entry, Level level) noexcept
    {
        const bool isTable = entry.DataIsDirectory != 0;
        if (level == languageLevel) return !isTable && IsSoundData(entry.OffsetToData);
        const WORD wanted = level == typeLevel ? versionType : VS_VERSION_INFO;
        if (entry.Id != wanted) return true;
        return isTable && IsSoundTable(entry.OffsetToDirectory,
                                       level == typeLevel ? nameLevel : languageLevel);
    }

    bool IsSoundData(std::uint64_t offset) noexcept
    {
        IMAGE_RESOURCE_DATA_ENTRY data = {};
        Extent extent;
        return ReadResource(offset, data) && FindExtent(data.OffsetToData, extent) &&
               extent.Contains(data.OffsetToData, data.Size);
    }

    ExecutableFile& m_file;
    std::uint64_t m_header;
    std::uint64_t m_sectionTable = 0;
    unsigned m_sectionCount = 0;
    std::uint64_t m_imageSize = 0;
    std::uint64_t m_headersSize = 0;
    bool m_isFlat = false;    // mapped as it is, without regard to sections
    std::uint64_t m_root = 0; // the address of the resources
    Extent m_resources;       // in the section that they lie in
};

// An executable file of 16 bits, whose resource table has types, each followed by its resources.
class NewExecutable
{
public:
    NewExecutable(ExecutableFile& file, std::uint64_t header) noexcept
        : m_file(file), m_header(header)
    {
    }

    bool HasSoundVersionResource() noexcept
    {
        IMAGE_OS2_HEADER header = {};
        if (!m_file.Read(m_header, header)) return false;
        m_end = m_header + header.ne_restab; // the table of names follows
        std::uint64_t at = m_header + header.ne_rsrctab;
        if (!ReadEntry(at, m_shift) || m_shift > 15) return false;
        at += sizeof m_shift;
        for (Type type = {}; ReadEntry(at, type) && type.id != 0;) {
            at += sizeof type;
            if (type.id == (isNumber | versionType)) return HasSoundName(at, type.count);
            at += std::uint64_t{type.count} * sizeof(Name);
        }
        return false;
    }

private:
    static constexpr WORD isNumber = 0x8000;

    struct Type
    {
        WORD id;
        WORD count;
        DWORD unused;
    };

    struct Name
    {
        WORD offset; // in units of the file's alignment, like the size
        WORD size;
        WORD flags;
        WORD id;
        DWORD unused;
    };

    template <class Entry>
    bool ReadEntry(std::uint64_t at, Entry& entry) noexcept
    {
        return at + sizeof entry <= m_end && m_file.Read(at, entry);
    }

    bool HasSoundName(std::uint64_t at, unsigned count) noexcept
    {
        Name name = {};
        for (unsigned i = 0; i < count && ReadEntry(at + std::uint64_t{i} * sizeof name, name); ++i)
            if (name.id == (isNumber | VS_VERSION_INFO)) return IsSoundData(name);
        return false;
    }

    // The platform computes the size of its buffer from what the fixed information leaves.
    bool IsSoundData(const Name& name) const noexcept
    {
        const std::uint64_t size = std::uint64_t{name.size} << m_shift;
        return size > sizeof(VS_FIXEDFILEINFO) &&
               m_file.Contains(std::uint64_t{name.offset} << m_shift, size);
    }

    ExecutableFile& m_file;
    std::uint64_t m_header;
    std::uint64_t m_end = 0;
    WORD m_shift = 0;
};

} // namespace

std::optional<VersionLayout> LayoutOfVersionResource(const wchar_t* path) noexcept
{
    ExecutableFile file(path);
    IMAGE_DOS_HEADER dos = {};
    WORD signature = 0;
    if (!file.Read(0, dos) || dos.e_magic != IMAGE_DOS_SIGNATURE) return std::nullopt;
    const auto header = static_cast<DWORD>(dos.e_lfanew);
    if (!file.Read(header, signature)) return std::nullopt;
    if (signature == LOWORD(IMAGE_NT_SIGNATURE) &&
        PortableExecutable(file, header).HasSoundVersionResource())
        return VersionLayout::wide;
    if (signature == IMAGE_OS2_SIGNATURE && NewExecutable(file, header).HasSoundVersionResource())
        return VersionLayout::narrow;
    return std::nullopt;
}

} // namespace utils_statics
