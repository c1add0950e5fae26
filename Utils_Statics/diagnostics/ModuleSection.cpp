// Every module in the process's address space.
#include "diagnostics/FaultGuard.h"
#include "diagnostics/ReportSections.h"

#include <Utils_Statics/CMiniVersion.h>

#include <algorithm>
#include <climits>

namespace utils_statics {

namespace {

using ModulePath = FixedText<1024>;
using VersionText = int (CMiniVersion::*)(unsigned short*, int) const noexcept;
using VersionNumbers = int (CMiniVersion::*)(unsigned short*) const noexcept;

bool IsImage(std::uintptr_t base) noexcept
{
    WORD signature = 0;
    return ReadMemory(base, signature) && signature == IMAGE_DOS_SIGNATURE;
}

void WriteImageHeaders(ReportText& report, std::uintptr_t base) noexcept
{
    IMAGE_DOS_HEADER dos = {};
    IMAGE_NT_HEADERS nt = {};
    if (!ReadMemory(base, dos) || !ReadMemory(base + static_cast<DWORD>(dos.e_lfanew), nt) ||
        nt.Signature != IMAGE_NT_SIGNATURE)
        return;
    report.Write(L"Image Base: 0x" ADDRESS_FORMAT L"  Image Size: 0x%08x\r\n", base,
                 nt.OptionalHeader.SizeOfImage);
    report.Write(L"Checksum:   0x%08x  Time Stamp: 0x%08x\r\n", nt.OptionalHeader.CheckSum,
                 nt.FileHeader.TimeDateStamp);
}

void WriteFileDetails(ReportText& report, const ModulePath& path) noexcept
{
    WIN32_FILE_ATTRIBUTE_DATA file = {};
    if (!GetFileAttributesExW(path.Text(), GetFileExInfoStandard, &file)) return;
    const int size = file.nFileSizeHigh
                         ? INT_MAX
                         : static_cast<int>(std::min<DWORD>(file.nFileSizeLow, INT_MAX));
    report.Write(L"File Size:  %-10d  File Time:  %s\r\n", size,
                 LocalTimeText(file.ftLastWriteTime).Text());
}

void WriteVersionText(ReportText& report, const wchar_t* format, const CMiniVersion& version,
                      VersionText get) noexcept
{
    static constinit unsigned short text[520] = {};
    (version.*get)(text, static_cast<int>(std::size(text)));
    report.Write(format, text);
}

void WriteVersionNumbers(ReportText& report, const wchar_t* format, const CMiniVersion& version,
                         VersionNumbers get) noexcept
{
    unsigned short number[4] = {};
    (version.*get)(number);
    report.Write(format, number[0], number[1], number[2], number[3]);
}

void WriteVersion(ReportText& report, const ModulePath& path) noexcept
{
    CMiniVersion version(path.Text());
    report.Write(L"Version Information:\r\n");
    WriteVersionText(report, L"   Company:    %s\r\n", version, &CMiniVersion::GetCompanyName);
    WriteVersionText(report, L"   Product:    %s\r\n", version, &CMiniVersion::GetProductName);
    WriteVersionText(report, L"   FileDesc:   %s\r\n", version, &CMiniVersion::GetFileDescription);
    WriteVersionNumbers(report, L"   FileVer:    %d.%d.%d.%d\r\n", version,
                        &CMiniVersion::GetFileVersion);
    WriteVersionNumbers(report, L"   ProdVer:    %d.%d.%d.%d\r\n", version,
                        &CMiniVersion::GetProductVersion);
    version.Release();
}

void WriteModule(ReportText& report, std::uintptr_t base, int number) noexcept
{
    ModulePath path;
    const bool isKnown =
        GetModuleFileNameW(reinterpret_cast<HMODULE>(base), path.data(), ModulePath::capacity) != 0;
    path.Measure();
    report.Write(L"Module %d\r\n", number);
    report.Write(L"%s\r\n", isKnown ? path.Text() : L"Unknown");
    WriteImageHeaders(report, base);
    if (isKnown) {
        WriteFileDetails(report, path);
        FaultGuard::Run([&] { WriteVersion(report, path); });
    }
    report.Write(L"\r\n");
}

// The end of the addresses to search: all there are, where that is feasible.
std::uintptr_t EndOfAddresses() noexcept
{
    SYSTEM_INFO info = {};
    GetSystemInfo(&info);
    return sizeof(void*) > 4 ? reinterpret_cast<std::uintptr_t>(info.lpMaximumApplicationAddress)
                             : UINTPTR_MAX;
}

} // namespace

void WriteModules(ReportText& report) noexcept
{
    constexpr std::uintptr_t skipped = 0x10000; // bytes skipped where a query fails
    const std::uintptr_t end = EndOfAddresses();
    std::uintptr_t lastBase = 0;
    int number = 0;
    for (std::uintptr_t address = 0, step = 0; step <= end - address;) {
        address += step;
        step = skipped;
        MEMORY_BASIC_INFORMATION region = {};
        if (!VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region)) continue;
        step = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize - address;
        const auto base = reinterpret_cast<std::uintptr_t>(region.AllocationBase);
        if (region.State != MEM_COMMIT || base <= lastBase) continue;
        lastBase = base;
        if (!IsImage(base)) continue;
        ++number;
        FaultGuard::Run([&] { WriteModule(report, base, number); });
    }
}

} // namespace utils_statics
