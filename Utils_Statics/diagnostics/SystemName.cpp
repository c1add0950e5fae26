#include "diagnostics/SystemName.h"

namespace utils_statics {

namespace {

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

} // namespace utils_statics
