#include "RawArchive.h"

#include <zlib.h>

#include <cstring>
#include <stdexcept>

namespace raw_archive {

namespace {

constexpr std::uint32_t localHeader = 0x04034b50;
constexpr std::uint32_t directoryHeader = 0x02014b50;
constexpr std::uint32_t endOfDirectory = 0x06054b50;
constexpr std::uint32_t wideEndOfDirectory = 0x06064b50;
constexpr std::uint32_t wideEndLocator = 0x07064b50;
constexpr std::uint32_t descriptor = 0x08074b50;
constexpr std::uint16_t descriptorFlag = 8;
constexpr std::uint32_t seeElsewhere = 0xFFFFFFFF;

template <class Number>
void Put(std::string& bytes, Number number)
{
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

bool IsWide(const Entry& entry)
{
    return entry.wide || entry.size >= seeElsewhere || entry.compressedSize >= seeElsewhere;
}

std::string WideSizes(const Entry& entry)
{
    std::string field;
    if (!IsWide(entry)) return field;
    Put<std::uint16_t>(field, 1);
    Put<std::uint16_t>(field, 16);
    Put(field, entry.size);
    Put(field, entry.compressedSize);
    return field;
}

void PutSizes(std::string& bytes, const Entry& entry)
{
    Put(bytes, entry.checksum);
    Put(bytes, IsWide(entry) ? seeElsewhere : static_cast<std::uint32_t>(entry.compressedSize));
    Put(bytes, IsWide(entry) ? seeElsewhere : static_cast<std::uint32_t>(entry.size));
}

void PutLengths(std::string& bytes, const Entry& entry)
{
    Put(bytes, static_cast<std::uint16_t>(entry.name.size()));
    Put(bytes, static_cast<std::uint16_t>(WideSizes(entry).size()));
}

void PutKind(std::string& bytes, const Entry& entry)
{
    Put<std::uint16_t>(bytes, IsWide(entry) ? 45 : 20);
    Put(bytes, entry.flags);
    Put(bytes, entry.method);
    Put<std::uint32_t>(bytes, 0x58A46000); // a day in 2024, at noon
}

void PutLocal(std::string& bytes, const Entry& entry)
{
    const bool isLater = (entry.flags & descriptorFlag) != 0;
    Put(bytes, localHeader);
    PutKind(bytes, entry);
    if (isLater)
        bytes.append(12, '\0');
    else
        PutSizes(bytes, entry);
    PutLengths(bytes, entry);
    bytes += entry.name + WideSizes(entry) + entry.data;
    if (!isLater) return;
    Put(bytes, descriptor);
    PutSizes(bytes, entry);
}

void PutListed(std::string& bytes, const Entry& entry, std::size_t offset)
{
    Put(bytes, directoryHeader);
    Put<std::uint16_t>(bytes, 20);
    PutKind(bytes, entry);
    PutSizes(bytes, entry);
    PutLengths(bytes, entry);
    bytes.append(10, '\0'); // comment, disk, attributes
    Put(bytes, static_cast<std::uint32_t>(offset));
    bytes += entry.name + WideSizes(entry);
}

void PutWideEnd(std::string& bytes, std::uint64_t count, std::uint64_t size, std::uint64_t offset)
{
    const std::uint64_t position = bytes.size();
    Put(bytes, wideEndOfDirectory);
    Put<std::uint64_t>(bytes, 44);
    Put<std::uint32_t>(bytes, 45 | 45 << 16);
    Put<std::uint64_t>(bytes, 0); // disks
    Put(bytes, count);
    Put(bytes, count);
    Put(bytes, size);
    Put(bytes, offset);
    Put(bytes, wideEndLocator);
    Put<std::uint32_t>(bytes, 0);
    Put(bytes, position);
    Put<std::uint32_t>(bytes, 1);
}

void PutEnd(std::string& bytes, std::uint16_t count, std::uint32_t size, std::uint32_t offset)
{
    Put(bytes, endOfDirectory);
    Put<std::uint32_t>(bytes, 0);
    Put(bytes, count);
    Put(bytes, count);
    Put(bytes, size);
    Put(bytes, offset);
    Put<std::uint16_t>(bytes, 0);
}

std::uint32_t Checksum(const std::string& content)
{
    return static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(content.data()),
                                            static_cast<uInt>(content.size())));
}

template <class Number>
Number Get(const std::string& bytes, std::size_t offset)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Number))
        throw std::runtime_error("the archive ends too early");
    Number number;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

void Expect(const std::string& bytes, std::size_t offset, std::uint32_t signature)
{
    if (Get<std::uint32_t>(bytes, offset) != signature)
        throw std::runtime_error("a header of the archive is not where it should be");
}

std::string DataAt(const std::string& archive, std::size_t offset, std::uint32_t size)
{
    Expect(archive, offset, localHeader);
    const std::size_t lengths = std::size_t{Get<std::uint16_t>(archive, offset + 26)} +
                                Get<std::uint16_t>(archive, offset + 28);
    return archive.substr(offset + 30 + lengths, size);
}

// Reads one entry of the directory and moves `offset` behind it.
Listed NextListed(const std::string& archive, std::size_t& offset)
{
    Expect(archive, offset, directoryHeader);
    const auto nameSize = Get<std::uint16_t>(archive, offset + 28);
    Listed entry = {
        archive.substr(offset + 46, nameSize),    Get<std::uint16_t>(archive, offset + 8),
        Get<std::uint16_t>(archive, offset + 10), Get<std::uint32_t>(archive, offset + 12),
        Get<std::uint32_t>(archive, offset + 16), Get<std::uint32_t>(archive, offset + 20),
        Get<std::uint32_t>(archive, offset + 24), {}};
    entry.data = DataAt(archive, Get<std::uint32_t>(archive, offset + 42), entry.compressedSize);
    offset += 46u + nameSize + Get<std::uint16_t>(archive, offset + 30) +
              Get<std::uint16_t>(archive, offset + 32);
    return entry;
}

} // namespace

Entry Stored(std::string name, std::string content)
{
    Entry entry;
    entry.name = std::move(name);
    entry.checksum = Checksum(content);
    entry.compressedSize = entry.size = content.size();
    entry.data = std::move(content);
    return entry;
}

Entry Deflated(std::string name, const std::string& content)
{
    Entry entry = Stored(std::move(name), content);
    entry.method = Z_DEFLATED;
    entry.data = Deflate(content);
    entry.compressedSize = entry.data.size();
    return entry;
}

Entry WithDescriptor(Entry entry)
{
    entry.flags |= descriptorFlag;
    return entry;
}

std::string Write(const std::vector<Entry>& entries, bool wideEnd)
{
    std::string archive;
    std::string directory;
    for (const Entry& entry : entries) {
        PutListed(directory, entry, archive.size());
        PutLocal(archive, entry);
    }
    const std::size_t offset = archive.size();
    archive += directory;
    if (wideEnd) PutWideEnd(archive, entries.size(), directory.size(), offset);
    PutEnd(archive, wideEnd ? 0xFFFF : static_cast<std::uint16_t>(entries.size()),
           wideEnd ? seeElsewhere : static_cast<std::uint32_t>(directory.size()),
           wideEnd ? seeElsewhere : static_cast<std::uint32_t>(offset));
    return archive;
}

std::vector<Listed> List(const std::string& archive)
{
    constexpr std::size_t endSize = 22; // there is no comment
    if (archive.size() < endSize) throw std::runtime_error("too short for an archive");
    const std::size_t end = archive.size() - endSize;
    Expect(archive, end, endOfDirectory);
    std::vector<Listed> entries(Get<std::uint16_t>(archive, end + 10));
    std::size_t offset = Get<std::uint32_t>(archive, end + 16);
    for (Listed& entry : entries)
        entry = NextListed(archive, offset);
    if (offset != end) throw std::runtime_error("something lies behind the archive's directory");
    return entries;
}

std::string Deflate(const std::string& content)
{
    z_stream stream = {};
    if (deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib does not start");
    std::string data(deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(data.data());
    stream.avail_out = static_cast<uInt>(data.size());
    const int result = deflate(&stream, Z_FINISH);
    data.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::runtime_error("zlib does not deflate");
    return data;
}

} // namespace raw_archive
