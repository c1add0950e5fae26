// The process's times, and what is known of the system and of the process.
#include "diagnostics/ReportSections.h"

#include <psapi.h>

#include <algorithm>
#include <climits>

namespace utils_statics {

namespace {

constinit OSVERSIONINFOW s_system = {};

// A release and the last build that has its name.
struct NamedBuild
{
    DWORD minor;
    DWORD lastBuild;
    const wchar_t* name;
};
constexpr DWORD anyBuild = 0xFFFF;
constexpr NamedBuild builds[] = {
    {0, 950, L"Windows 95"},       {0, 1080, L"Windows 95 SP1"},  {0, anyBuild, L"Windows 95 OSR2"},
    {10, 1998, L"Windows 98"},     {10, 2182, L"Windows 98 SP1"}, {10, anyBuild, L"Windows 98 SE"},
    {90, anyBuild, L"Windows ME"},
};

struct NamedVersion
{
    DWORD major;
    DWORD minor;
    const wchar_t* name;
};
constexpr NamedVersion versions[] = {
    {3, 51, L"Windows NT 3.51"}, {4, 0, L"Windows NT 4"},        {5, 0, L"Windows 2000"},
    {5, 1, L"Windows XP"},       {5, 2, L"Windows 2003 Server"},
};

constexpr DWORD platformCE = 3;
constexpr const wchar_t* unknown = L"unknown Windows version";

const wchar_t* NameOfBuild(const OSVERSIONINFOW& system) noexcept
{
    const DWORD build = LOWORD(system.dwBuildNumber); // the high half repeats the version
    for (const NamedBuild& named : builds)
        if (named.minor == system.dwMinorVersion && build <= named.lastBuild) return named.name;
    return unknown;
}

const wchar_t* NameOfVersion(const OSVERSIONINFOW& system) noexcept
{
    for (const NamedVersion& named : versions)
        if (named.major == system.dwMajorVersion && named.minor == system.dwMinorVersion)
            return named.name;
    return unknown;
}

// Units of 100 nanoseconds.
unsigned long long TimeUnits(const FILETIME& time) noexcept
{
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Megabytes, rounded up, so that any use at all is not 0.
int MegaBytes(unsigned long long bytes) noexcept
{
    constexpr unsigned long long megaByte = 1ULL << 20;
    return static_cast<int>(
        std::min<unsigned long long>((bytes + megaByte - 1) / megaByte, INT_MAX));
}

FILETIME Now() noexcept
{
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return now;
}

// Writes the time as days to milliseconds. A run of less than a millisecond, or one during which
// the clock was set back, is given in the platform's own units.
void WriteRunTime(ReportText& report, const FILETIME& start, const FILETIME& end) noexcept
{
    constexpr unsigned long long perMillisecond = 10'000;
    const unsigned long long units = std::max(TimeUnits(end), TimeUnits(start)) - TimeUnits(start);
    const unsigned long long milliseconds = units / perMillisecond;
    if (milliseconds == 0) {
        report.Write(L"Process run time: %I64u 10ths of a \u00B5s.\r\n", units);
        return;
    }
    report.Write(L"Process run time: %I64u days, %I64u hours, %I64u minutes, %I64u seconds, %I64u "
                 L"milliseconds.\r\n",
                 milliseconds / 86'400'000, milliseconds / 3'600'000 % 24,
                 milliseconds / 60'000 % 60, milliseconds / 1'000 % 60, milliseconds % 1'000);
}

void WriteProgramAndUser(ReportText& report, const CrashFiles& files) noexcept
{
    FixedText<512> user;
    auto size = static_cast<DWORD>(decltype(user)::capacity);
    if (GetUserNameW(user.data(), &size))
        user.Measure();
    else
        user = L"Unknown";
    report.Write(L"%s, run by %s.\r\n", files.program.Text(), user.Text());
}

void WriteSystemMemory(ReportText& report) noexcept
{
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    if (!GlobalMemoryStatusEx(&memory)) return;
    report.Write(L"System Memory Details.\r\n");
    report.Write(L"%d%% memory in use.\r\n", memory.dwMemoryLoad);
    report.Write(L"%d MBytes physical memory.\r\n", MegaBytes(memory.ullTotalPhys));
    report.Write(L"%d MBytes physical memory free.\r\n", MegaBytes(memory.ullAvailPhys));
    report.Write(L"%d MBytes paging file.\r\n", MegaBytes(memory.ullTotalPageFile));
    report.Write(L"%d MBytes paging file free.\r\n", MegaBytes(memory.ullAvailPageFile));
    report.Write(L"%d MBytes user address space.\r\n", MegaBytes(memory.ullTotalVirtual));
    report.Write(L"%d MBytes user address space free.\r\n", MegaBytes(memory.ullAvailVirtual));
}

void WriteProcessMemory(ReportText& report) noexcept
{
    PROCESS_MEMORY_COUNTERS_EX used = {};
    if (!GetProcessMemoryInfo(GetCurrentProcess(),
                              reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&used), sizeof used))
        return;
    report.Write(L"Process Memory Details.\r\n");
    report.Write(L"%d page faults.\r\n", used.PageFaultCount);
    report.Write(L"%d MBytes peak working set.\r\n", MegaBytes(used.PeakWorkingSetSize));
    report.Write(L"%d MBytes working set.\r\n", MegaBytes(used.WorkingSetSize));
    report.Write(L"%d MBytes peak paged pool.\r\n", MegaBytes(used.QuotaPeakPagedPoolUsage));
    report.Write(L"%d MBytes paged pool.\r\n", MegaBytes(used.QuotaPagedPoolUsage));
    report.Write(L"%d MBytes peak non-paged pool.\r\n", MegaBytes(used.QuotaPeakNonPagedPoolUsage));
    report.Write(L"%d MBytes non-paged pool.\r\n", MegaBytes(used.QuotaNonPagedPoolUsage));
    report.Write(L"%d MBytes peak pagefile usage.\r\n", MegaBytes(used.PeakPagefileUsage));
    report.Write(L"%d MBytes pagefile usage.\r\n", MegaBytes(used.PagefileUsage));
    report.Write(L"%d MBytes private memory usage.\r\n", MegaBytes(used.PrivateUsage));
}

} // namespace

const wchar_t* SystemName(const OSVERSIONINFOW& system) noexcept
{
    switch (system.dwPlatformId) {
    case VER_PLATFORM_WIN32_WINDOWS: return NameOfBuild(system);
    case VER_PLATFORM_WIN32_NT: return NameOfVersion(system);
    case platformCE: return L"Windows CE";
    default: return unknown;
    }
}

// RtlGetVersion tells the system's own version. GetVersionEx tells the one that the program claims
// to know.
void PrepareSystemDetails() noexcept
{
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    s_system.dwOSVersionInfoSize = sizeof s_system;
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const auto getVersion = reinterpret_cast<GetVersion>(
        reinterpret_cast<void*>(ntdll ? GetProcAddress(ntdll, "RtlGetVersion") : nullptr));
    if (getVersion) getVersion(&s_system);
}

void WriteProcessTimes(ReportText& report) noexcept
{
    FILETIME start = {};
    FILETIME exit = {};
    FILETIME kernel = {};
    FILETIME user = {};
    const FILETIME end = Now(); // the platform has no end time for a process that still runs
    const bool isKnown =
        GetProcessTimes(GetCurrentProcess(), &start, &exit, &kernel, &user) != FALSE;
    report.Write(L"Process start time: %s.\r\n",
                 isKnown ? LocalTimeText(start).Text() : L"Unknown");
    report.Write(L"Process end time: %s.\r\n", LocalTimeText(end).Text());
    if (isKnown) WriteRunTime(report, start, end);
}

void WriteSystemDetails(ReportText& report, const CrashFiles& files) noexcept
{
    report.Write(L"Error occurred at %s.\r\n", LocalTimeText(Now()).Text());
    WriteProgramAndUser(report, files);
    FixedText<64> version;
    wsprintfW(version.data(), L"%u.%u.%u", s_system.dwMajorVersion, s_system.dwMinorVersion,
              s_system.dwBuildNumber);
    report.Write(L"Operating system:  %s (%s).\r\n", SystemName(s_system), version.Text());
    SYSTEM_INFO info = {};
    GetSystemInfo(&info);
    report.Write(L"%d processor(s), type %d.\r\n", info.dwNumberOfProcessors, info.dwProcessorType);
    WriteSystemMemory(report);
    WriteProcessMemory(report);
}

} // namespace utils_statics
