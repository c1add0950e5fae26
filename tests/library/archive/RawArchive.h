#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Zip archives made and read by their published layout, without the library's own zip routines: so
// that a test can write what no honest program writes, and look at what was written.
namespace raw_archive {

// One entry to write. The fields hold what the headers say, which need not be true.
struct Entry
{
    std::string name;
    std::string data; // as it stands in the archive
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t checksum = 0;
    std::uint64_t compressedSize = 0; // beyond 32 bits it is written as zip64 does
    std::uint64_t size = 0;
    bool wide = false; // write the sizes as zip64 does although they are small
};

// Entries whose headers tell the truth.
Entry Stored(std::string name, std::string content);
Entry Deflated(std::string name, const std::string& content);
// With the sizes and the checksum behind the data, as a program writes that cannot seek.
Entry WithDescriptor(Entry entry);

// With the archive's end as zip64 has it, where `wideEnd` says so.
std::string Write(const std::vector<Entry>& entries, bool wideEnd = false);

// What the directory of an archive tells of an entry.
struct Listed
{
    std::string name;
    std::uint16_t flags;
    std::uint16_t method;
    std::uint32_t time; // DOS date and time
    std::uint32_t checksum;
    std::uint32_t compressedSize;
    std::uint32_t size;
    std::string data; // as it stands in the archive
};

// The entries of a small and sound archive; throws std::runtime_error for any other.
std::vector<Listed> List(const std::string& archive);

// `content` deflated at the highest level by zlib, in one call.
std::string Deflate(const std::string& content);

} // namespace raw_archive
