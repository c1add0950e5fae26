#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Reads a crash report line by line, by the format that docs/formats/crash-report.md describes.
namespace crash_test {

struct StackLine
{
    std::uint64_t address;
    std::vector<std::uint32_t> words;
    std::wstring characters;
};

struct Module
{
    std::wstring path;
    std::uint64_t base = 0;
    std::uint32_t size = 0;
    std::uint32_t checksum = 0;
    std::uint32_t timeStamp = 0;
    long long fileSize = -1; // -1: the line is left out
    std::wstring fileTime;
    bool hasVersion = false;
    std::wstring company, product, description, fileVersion, productVersion;
};

struct Report
{
    std::wstring process, exception, faultModule;
    std::uint32_t code = 0;
    std::uint32_t segment = 0;
    std::uint64_t instruction = 0;
    std::wstring startTime, endTime, runTime;
    std::optional<std::pair<std::wstring, std::uint64_t>> violation;
    std::wstring errorTime, program, user, system, systemVersion;
    int processors = 0;
    int processorType = 0;
    std::vector<int> systemMemory;  // load, physical, free, paging file, free, addresses, free
    std::vector<int> processMemory; // page faults, then megabytes, private usage last
    std::map<std::wstring, std::uint64_t> registers;
    std::vector<int> bytes; // -1 for a byte that could not be read
    std::vector<StackLine> stack;
    bool isStackCut = false; // an exception cut the stack
    std::vector<Module> modules;
    std::wstring baseName;
};

// Throws std::runtime_error, with the line's number and text, at the first line that breaks the
// format.
Report ParseReport(const std::string& file);

} // namespace crash_test
