// The crash report with 100 modules, from the call of the filter, right behind the fault, to its
// return after the reporter was started. The program measures the processor time of the process,
// and the time that passes, which includes another program's writing of the dump. Each is measured
// in a process of its own, because a process has one report.
#include <qor_utils/LogOutput.h>
#include <qor_utils/MemoryDumper.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/MiniDumper.h>

#include <windows.h>
#include <process.h>
#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 5;
constexpr int modules = 100;
constexpr int goal = 300; // milliseconds of processor time
const wchar_t* const settings = L"Software\\Kestrow\\Exam\\System\\Path";

// The processor time of all threads, in units of 100 nanoseconds.
unsigned long long ProcessorTime()
{
    FILETIME start = {}, exit = {}, kernel = {}, user = {};
    GetProcessTimes(GetCurrentProcess(), &start, &exit, &kernel, &user);
    const auto units = [](const FILETIME& time) {
        return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    };
    return units(kernel) + units(user);
}

int LoadedModules()
{
    HMODULE loaded[1000] = {};
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), loaded, sizeof loaded, &size);
    return static_cast<int>(size / sizeof(HMODULE));
}

// Loads copies of a small library until there are enough modules.
void LoadModules(const std::wstring& folder)
{
    for (int i = 0; LoadedModules() < modules && i < modules; ++i) {
        const std::wstring path = folder + L"\\m" + std::to_wstring(i) + L".dll";
        CopyFileW(test_support::BesideProgram(L"blank.dll").c_str(), path.c_str(), FALSE);
        LoadLibraryW(path.c_str());
    }
}

unsigned long long PassedTime()
{
    return GetTickCount64() * 10'000;
}

using Clock = unsigned long long (*)();

unsigned long long DumpTime(Clock clock, const wchar_t* folder, EXCEPTION_POINTERS& exception)
{
    const unsigned long long before = clock();
    MemoryDumper::GenerateMiniDump((std::wstring(folder) + L"\\alone.dmp").c_str(), &exception, 0);
    return clock() - before;
}

// The child's work. The exit code holds the milliseconds of everything, and above 16 bits those of
// a dump alone.
int Measure(Clock clock, const wchar_t* folder)
{
    qor_utils::SetLogDirectory(folder);
    const MiniDumper dumper;
    LoadModules(folder);
    CONTEXT context = {};
    RtlCaptureContext(&context);
    EXCEPTION_RECORD record = {};
    record.ExceptionCode = STATUS_ILLEGAL_INSTRUCTION;
    EXCEPTION_POINTERS exception = {&record, &context};
    const unsigned long long dump = DumpTime(clock, folder, exception);
    const unsigned long long before = clock();
    if (LoadedModules() < modules || MiniDumper::TopLevelFilter(&exception) != 1) return -1;
    const unsigned long long all = clock() - before;
    return static_cast<int>(dump / 10'000 << 16 | all / 10'000);
}

// Returns the exit code, or -1 when the child cannot be started.
int RunChild(const std::wstring& option)
{
    const test_support::TemporaryFolder folder;
    const std::wstring program = test_support::ProgramPath();
    const auto quoted = [](const std::wstring& text) { return L"\"" + text + L"\""; };
    return static_cast<int>(_wspawnl(_P_WAIT, program.c_str(), quoted(program).c_str(),
                                     option.c_str(), quoted(folder.Path()).c_str(), nullptr));
}

// Makes this program the reporter that the crash handler starts; as such it ends at once.
void SetReporter()
{
    const std::wstring program = test_support::ProgramPath();
    const std::wstring name = program.substr(program.rfind(L'\\') + 1);
    const std::wstring parameters = L"--reporter";
    const auto set = [](const wchar_t* value, const std::wstring& text) {
        RegSetKeyValueW(HKEY_CURRENT_USER, settings, value, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    };
    set(L"CrashHandler", name);
    set(L"CrashHandler_Params", parameters);
}

void ForgetReporter()
{
    RegDeleteKeyValueW(HKEY_CURRENT_USER, settings, L"CrashHandler");
    RegDeleteKeyValueW(HKEY_CURRENT_USER, settings, L"CrashHandler_Params");
    DeleteFileW(test_support::BesideProgram(L"crashreport.ini").c_str());
}

struct Times
{
    int all;  // negative when a report was not written
    int dump; // milliseconds of the dump alone
};

Times Median(const std::wstring& option)
{
    std::vector<int> all;
    std::vector<int> dumps;
    for (int i = 0; i < rounds; ++i) {
        const int measured = RunChild(option);
        all.push_back(measured < 0 ? measured : measured & 0xFFFF);
        dumps.push_back(measured >> 16);
    }
    std::sort(all.begin(), all.end());
    std::sort(dumps.begin(), dumps.end());
    return {all.front() < 0 ? -1 : all[rounds / 2], dumps[rounds / 2]};
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (std::wstring(GetCommandLineW()).find(L"--reporter") != std::wstring::npos) return 0;
    if (count == 3)
        return Measure(std::wstring(arguments[1]) == L"--passed" ? PassedTime : ProcessorTime,
                       arguments[2]);
    SetReporter();
    const Times processor = Median(L"--processor");
    const Times passed = Median(L"--passed");
    ForgetReporter();
    if (processor.all < 0 || passed.all < 0) {
        std::printf("a report was not written\n");
        return 1;
    }
    std::printf(
        "crash report with %d modules, milliseconds, median of %d:\n"
        "  all until the reporter is started  %d of processor time (at most %d: %s), %d pass\n"
        "  a memory dump alone                %d of processor time, %d pass\n",
        modules, rounds, processor.all, goal, processor.all <= goal ? "met" : "missed", passed.all,
        processor.dump, passed.dump);
    return 0;
}
