// A program that crashes, for the tests of the crash report.
//
// - "crash_child KIND [OPTIONS]" crashes in the way of that name, which CrashKinds.cpp lists.
// - "crash_child is-filtered KIND" ends with 0 when the platform calls a filter for such a crash,
//   with enough stack to go on on another one.
//
// The options are these:
//
// - "--thread STACK" crashes on a new thread with a stack of that many bytes.
// - "--log FOLDER" sets the log folder.
// - "--late-log FOLDER" sets the log folder after the crash handler was made.
// - "--facts FILE" writes what the process knows of itself: its crash to FILE, the rest to
//   FILE.txt.
// - "--modules FOLDER" loads every library of a folder.
// - "--bare yes" makes no crash handler.
// - "--calls yes" lists the places from which the library calls the platform during the crash, and
//   "--fail PLACE" makes the next call from there fail, and says so (crash_fault_child only).
// - "--inheritable NAME" opens the event of that name for every program that inherits handles;
//   CRASH_HANDLE then holds the handle.
#include "CrashFacts.h"
#include "CrashFaults.h"
#include "CrashKinds.h"
#include "diagnostics/FaultGuard.h"

#include <base/Encoding.h>
#include <base/Handles.h>
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/MiniDumper.h>

#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace crash_test;

Facts* s_facts = nullptr;

Facts* MapFacts(const std::wstring& path)
{
    const base::File file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                      nullptr, CREATE_ALWAYS, 0, nullptr));
    const base::Event mapping(
        CreateFileMappingW(file.get(), nullptr, PAGE_READWRITE, 0, sizeof(Facts), nullptr));
    return static_cast<Facts*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, sizeof(Facts)));
}

// Copies the readable part of the code that was running, without touching guard pages.
void CopyCode(ExceptionFacts& facts)
{
    for (std::uint8_t& byte : facts.bytes) {
        auto* const address =
            reinterpret_cast<std::uint8_t*>(facts.context.*codePointer) + facts.byteCount;
        MEMORY_BASIC_INFORMATION region = {};
        VirtualQuery(address, &region, sizeof region);
        if (region.State != MEM_COMMIT || (region.Protect & (PAGE_GUARD | PAGE_NOACCESS))) return;
        byte = *address;
        ++facts.byteCount;
    }
}

// Exceptions that the platform and the compiler use as messages, and that are always handled.
bool IsMessage(DWORD code)
{
    constexpr DWORD threadName = 0x406D1388, gccThrow = 0x20474343;
    constexpr DWORD debuggerText = 0x40010006, wideDebuggerText = 0x4001000A;
    return code == threadName || code == gccThrow || code == debuggerText ||
           code == wideDebuggerText;
}

LONG WINAPI Record(EXCEPTION_POINTERS* exception)
{
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (IsMessage(record.ExceptionCode)) return EXCEPTION_CONTINUE_SEARCH;
    const LONG index = InterlockedIncrement(&s_facts->count) - 1;
    if (index >= 4) return EXCEPTION_CONTINUE_SEARCH;
    if (index == 0) GetSystemTimeAsFileTime(&s_facts->begin);
    ExceptionFacts& facts = s_facts->exceptions[index];
    facts.code = record.ExceptionCode;
    facts.thread = GetCurrentThreadId();
    facts.address = reinterpret_cast<std::uintptr_t>(record.ExceptionAddress);
    facts.stackBase = reinterpret_cast<std::uintptr_t>(utils_statics::ThreadBlock().StackBase);
    facts.parameterCount = record.NumberParameters;
    for (DWORD i = 0; i < 2 && i < record.NumberParameters; ++i)
        facts.parameters[i] = record.ExceptionInformation[i];
    facts.context = *exception->ContextRecord;
    CopyCode(facts);
    return EXCEPTION_CONTINUE_SEARCH;
}

// Writes "base size path" for every module.
void WriteModules(std::FILE* file)
{
    std::vector<HMODULE> modules(2000);
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &size);
    modules.resize(size / sizeof(HMODULE));
    for (HMODULE module : modules) {
        MODULEINFO info = {};
        wchar_t path[1024] = {};
        GetModuleInformation(GetCurrentProcess(), module, &info, sizeof info);
        GetModuleFileNameW(module, path, 1024);
        std::fprintf(file, "%llx %lx %s\n",
                     static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(module)),
                     info.SizeOfImage, base::Utf8FromWide(path).c_str());
    }
}

void LoadModules(const std::wstring& folder)
{
    WIN32_FIND_DATAW found = {};
    const base::Find find(FindFirstFileW((folder + L"\\*.dll").c_str(), &found));
    if (!find) return;
    do {
        LoadLibraryW((folder + L"\\" + found.cFileName).c_str());
    } while (FindNextFileW(find.get(), &found));
}

std::string s_kind;

DWORD WINAPI CrashOnThread(void*)
{
    ULONG spareStack = 64 * 1024; // without it not every platform calls a filter on a full stack
    SetThreadStackGuarantee(&spareStack);
    Crash(s_kind);
    return 0;
}

HANDLE s_isMeasured = nullptr;
std::uintptr_t s_stackLeft = 0;

LONG WINAPI MeasureStack(EXCEPTION_POINTERS*)
{
    const char here = 0;
    MEMORY_BASIC_INFORMATION stack = {};
    VirtualQuery(&here, &stack, sizeof stack);
    s_stackLeft = reinterpret_cast<std::uintptr_t>(&here) -
                  reinterpret_cast<std::uintptr_t>(stack.AllocationBase);
    SetEvent(s_isMeasured);
    Sleep(INFINITE);
    return 0;
}

// Not every platform keeps the reserve that SetThreadStackGuarantee asks for, or calls the filter
// at all.
int CheckFilter(const wchar_t* kind, std::uintptr_t needed)
{
    s_isMeasured = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetUnhandledExceptionFilter(MeasureStack);
    s_kind = base::Utf8FromWide(kind);
    const base::Thread thread(CreateThread(nullptr, 1048576, CrashOnThread, nullptr,
                                           STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    WaitForSingleObject(s_isMeasured, 10'000);
    TerminateProcess(GetCurrentProcess(), s_stackLeft >= needed ? 0 : 1); // whatever locks are held
    return 1;
}

void OpenInheritable(const std::wstring& name)
{
    const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, TRUE, name.c_str()); // stays open
    wchar_t number[32];
    wsprintfW(number, L"%u", static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(event)));
    SetEnvironmentVariableW(L"CRASH_HANDLE", number);
}

int Run(int count, wchar_t** arguments)
{
    if (count < 2) return 2;
    std::map<std::wstring, std::wstring> options;
    for (int i = 2; i + 1 < count; i += 2)
        options[arguments[i]] = arguments[i + 1];
    s_kind = base::Utf8FromWide(arguments[1]);
    if (s_kind == "is-filtered" && count == 4)
        return CheckFilter(arguments[2], std::stoul(arguments[3]));

    if (const std::wstring log = options[L"--log"]; !log.empty()) qor_utils::SetLogDirectory(log);
    if (options[L"--bare"].empty()) MiniDumper();
    if (const std::wstring log = options[L"--late-log"]; !log.empty())
        qor_utils::SetLogDirectory(log);
    if (const std::wstring folder = options[L"--modules"]; !folder.empty()) LoadModules(folder);
    if (const std::wstring name = options[L"--inheritable"]; !name.empty()) OpenInheritable(name);
    if (const std::wstring facts = options[L"--facts"]; !facts.empty()) {
        s_facts = MapFacts(facts);
        std::FILE* const file = _wfopen((facts + L".txt").c_str(), L"wb");
        WriteModules(file);
        std::fclose(file);
        AddVectoredExceptionHandler(TRUE, Record);
    }

    if (!options[L"--calls"].empty() && !ListCallsOfTheCrash()) return 1;
    const std::string place = base::Utf8FromWide(options[L"--fail"]);
    if (!place.empty() && !LetFail(place)) return 1;
    if (const std::wstring size = options[L"--thread"]; !size.empty()) {
        const base::Thread thread(CreateThread(nullptr, std::stoul(size), CrashOnThread, nullptr,
                                               STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
        WaitForSingleObject(thread.get(), INFINITE);
    } else {
        Crash(s_kind);
    }
    std::fprintf(stderr, "nothing crashed\n");
    return 3;
}

// Crashes while the program's own objects are constructed, before its main function.
struct StartUp
{
    StartUp()
    {
        int count = 0;
        wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
        if (count > 1 && arguments[1] == std::wstring(L"start-up")) Run(count, arguments);
    }
};
const StartUp s_startUp;

} // namespace

int wmain(int count, wchar_t** arguments)
{
    return Run(count, arguments);
}
