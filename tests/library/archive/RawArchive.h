#pragma once

#include <test_support/LogCapture.h>

#include <cstdint>
#include <string>
#include <vector>

// Makes and reads zip archives by their published layout, without the library's own zip routines.
// So a test can write what no honest program writes, and look at what was written.
namespace raw_archive {

// An entry to write. The fields hold the headers' claims, which need not be true.
struct Entry
{
    std::string name;
    std::string data; // bytes in the archive
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t checksum = 0;
    std::uint64_t compressedSize = 0; // written as zip64 does when it is beyond 32 bits
    std::uint64_t size = 0;
    bool wide = false; // writes the sizes as zip64 does even when they are small
};

// Entries whose headers tell the truth.
Entry Stored(std::string name, std::string content);
Entry Deflated(std::string name, const std::string& content);
// Puts the sizes and the checksum behind the data, as a program does that cannot seek.
Entry WithDescriptor(Entry entry);

// With `wideEnd` the archive ends in zip64 form.
std::string Write(const std::vector<Entry>& entries, bool wideEnd = false);

// An entry as the directory of an archive lists it.
struct Listed
{
    std::string name;
    std::uint16_t flags;
    std::uint16_t method;
    std::uint32_t time; // DOS date and time
    std::uint32_t checksum;
    std::uint32_t compressedSize;
    std::uint32_t size;
    std::string data; // bytes in the archive
};

// The entries of a small and sound archive; throws std::runtime_error for any other.
std::vector<Listed> List(const std::string& archive);

// `content` deflated at the highest level by zlib, in one call.
std::string Deflate(const std::string& content);

} // namespace raw_archive

// Expects that the archives have logged one failure.
inline void ExpectLogged(test_support::LogCapture& log, const std::wstring& text)
{
    log.ExpectOne("Utils_Statics/ZipArchive", 1, text);
}
