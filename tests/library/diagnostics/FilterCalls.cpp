#include "FilterCalls.h"

#include "CrashFacts.h"
#include "diagnostics/FaultGuard.h"

#include <test_support/ImportHook.h>

#include <cstdint>
#include <cstring>
#include <string_view>

namespace crash_test {

void CallFilter()
{
    Exception exception;
    const LONG first = exception.Filter();
    const LONG second = exception.Filter();
    ExitProcess(static_cast<UINT>(first * 10 + second));
}

void CallFilterForErrorModes()
{
    Exception exception;
    SetErrorMode(SEM_FAILCRITICALERRORS);
    exception.Filter();
    const UINT first = GetErrorMode();
    SetErrorMode(SEM_FAILCRITICALERRORS);
    exception.Filter();
    ExitProcess(first << 4 | GetErrorMode());
}

void CallFilterWithAnUnreadableStack()
{
    constexpr std::uintptr_t page = 0x1000;
    volatile char room[3 * page];
    room[0] = 0;
    const std::uintptr_t hole = (reinterpret_cast<std::uintptr_t>(room) + 2 * page) / page * page;
    Exception exception;
    exception.context.*stackPointer = hole - 64;
    DWORD before = 0;
    VirtualProtect(reinterpret_cast<void*>(hole), page, PAGE_NOACCESS, &before);
    ExitProcess(static_cast<UINT>(exception.Filter()));
}

namespace {

// The arguments with which the report's file was created.
struct Creation
{
    DWORD access, share, disposition, flags;
};
Creation s_creation = {};

HANDLE WINAPI SeeCreation(const wchar_t* path, DWORD access, DWORD share,
                          SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                          HANDLE form)
{
    const std::wstring_view name = path;
    if (name.ends_with(L".txt")) s_creation = {access, share, disposition, flags};
    return CreateFileW(path, access, share, security, disposition, flags, form);
}

} // namespace

void CallFilterForCreation()
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "CreateFileW", &SeeCreation);
    Exception().Filter();
    ExitProcess(s_creation.access == GENERIC_WRITE && s_creation.share == 0 &&
                s_creation.disposition == CREATE_ALWAYS &&
                s_creation.flags == (FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH));
}

namespace {

// The times of a process that began at s_begin and crashes at s_now, in UTC.
FILETIME s_begin = {};
FILETIME s_now = {};

BOOL WINAPI TellTimes(HANDLE, FILETIME* begin, FILETIME*, FILETIME*, FILETIME*)
{
    *begin = s_begin;
    return TRUE;
}

void WINAPI TellNow(FILETIME* now)
{
    *now = s_now;
}

} // namespace

void CallFilterAfter(long long units)
{
    const SYSTEMTIME end = {2024, 6, 0, 30, 9, 5, 7, 0};
    SystemTimeToFileTime(&end, &s_now);
    const auto now = static_cast<long long>(s_now.dwHighDateTime) << 32 | s_now.dwLowDateTime;
    s_begin.dwHighDateTime = static_cast<DWORD>((now - units) >> 32);
    s_begin.dwLowDateTime = static_cast<DWORD>(now - units);
    const test_support::ImportHook times(L"Utils_Statics.dll", "GetProcessTimes", &TellTimes);
    const test_support::ImportHook clock(L"Utils_Statics.dll", "GetSystemTimeAsFileTime", &TellNow);
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

namespace {

BOOL WINAPI Fault(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*)
{
    RaiseException(static_cast<DWORD>(STATUS_ACCESS_VIOLATION), 0, 0, nullptr);
    return FALSE;
}

BOOL WINAPI TellAndWrite(const wchar_t* section, const wchar_t* name, const wchar_t* value,
                         const wchar_t* file)
{
    OutputDebugStringW(L"a message");
    return WritePrivateProfileStringW(section, name, value, file);
}

void CallFilterWith(decltype(&Fault) write)
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "WritePrivateProfileStringW", write);
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

} // namespace

void CallFilterWithAFaultInIt()
{
    CallFilterWith(&Fault);
}

void CallFilterWithAMessageInIt()
{
    CallFilterWith(&TellAndWrite);
}

namespace {

BOOL WINAPI TellNoName(wchar_t*, DWORD*)
{
    return FALSE;
}

} // namespace

void CallFilterForAnUnknownUser()
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "GetUserNameW", &TellNoName);
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

namespace {

LONG WINAPI TellOldSystem(OSVERSIONINFOW* system)
{
    system->dwPlatformId = VER_PLATFORM_WIN32_NT;
    system->dwMajorVersion = 5;
    system->dwMinorVersion = 1;
    system->dwBuildNumber = 2600;
    return 0;
}

FARPROC WINAPI FindOldSystem(HMODULE library, const char* name)
{
    if (std::strcmp(name, "RtlGetVersion") != 0) return GetProcAddress(library, name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&TellOldSystem));
}

} // namespace

void CallFilterOnAnOldSystem()
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "GetProcAddress", &FindOldSystem);
    ExitProcess(static_cast<UINT>(Exception().Filter()));
}

} // namespace crash_test
