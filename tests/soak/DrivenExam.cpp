#include "DrivenExam.h"

#include "Probe.h"

#include <test_support/Program.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <cwchar>
#include <utility>

namespace soak {

namespace {

constexpr UINT longestAnswer = 20'000; // milliseconds

struct Search
{
    const DrivenExam& exam;
    std::vector<HWND> found;
};

BOOL CALLBACK TakeShown(HWND window, LPARAM search)
{
    auto& taken = *reinterpret_cast<Search*>(search);
    if (taken.exam.Owns(window) && IsWindowVisible(window)) taken.found.push_back(window);
    return TRUE;
}

unsigned Property(HWND window, const wchar_t* name)
{
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(GetPropW(window, name)));
}

} // namespace

DrivenExam::DrivenExam(const std::wstring& program, const std::wstring& folder)
{
    SetEnvironmentVariableW(L"LOCALAPPDATA", (folder + L"\\user").c_str());
    std::wstring line = L"exam.exe --profile \"" + folder + L"\\exam.ini\" --log \"" + folder +
                        L"\\log\" --recordings \"" + folder + L"\\recordings\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.c_str(), &start, &process))
        return;
    m_process.reset(process.hProcess);
    m_id = process.dwProcessId;
    CloseHandle(process.hThread);
    FindWindow();
    if (m_window) PutHook();
}

DrivenExam::~DrivenExam()
{
    if (IsRunning()) TerminateProcess(m_process.get(), 1);
}

void DrivenExam::FindWindow()
{
    for (int i = 0; i < 300 && IsRunning(100); ++i)
        for (const HWND window : Windows())
            if (!GetWindow(window, GW_OWNER)) {
                m_window = window;
                return;
            }
}

void DrivenExam::PutHook()
{
    m_probe.reset(LoadLibraryW(test_support::BesideProgram(L"soakprobe.dll").c_str()));
    if (!m_probe) return;
    const auto procedure = reinterpret_cast<HOOKPROC>(
        reinterpret_cast<void*>(GetProcAddress(m_probe.get(), "CountOnRequest")));
    m_hook.reset(SetWindowsHookExW(WH_CALLWNDPROC, procedure, m_probe.get(),
                                   GetWindowThreadProcessId(m_window, nullptr)));
}

bool DrivenExam::IsRunning(DWORD milliseconds) const
{
    return m_process && WaitForSingleObject(m_process.get(), milliseconds) == WAIT_TIMEOUT;
}

bool DrivenExam::Ask(UINT message)
{
    DWORD_PTR result = 0;
    m_hangs = m_hangs ||
              !SendMessageTimeoutW(m_window, message, 0, 0, SMTO_NORMAL, longestAnswer, &result);
    return !m_hangs;
}

std::optional<Reading> DrivenExam::Read()
{
    if (!Ask(RegisterWindowMessageW(probeMessage))) return {};
    return Reading{0,
                   0,
                   {Property(m_window, handlesProperty), Property(m_window, filesProperty),
                    Property(m_window, drawingProperty), Property(m_window, userProperty),
                    Threads(), Megabytes()}};
}

DWORD DrivenExam::ExitCode() const
{
    DWORD code = MAXDWORD;
    if (!IsRunning(60'000)) GetExitCodeProcess(m_process.get(), &code);
    return code;
}

std::vector<HWND> DrivenExam::Windows() const
{
    Search search{*this, {}};
    EnumWindows(TakeShown, reinterpret_cast<LPARAM>(&search));
    return std::move(search.found);
}

HWND DrivenExam::FindShown(const wchar_t* windowClass) const
{
    for (const HWND window : Windows()) {
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        if (std::wcscmp(name, windowClass) == 0) return window;
    }
    return nullptr;
}

bool DrivenExam::Owns(HWND window) const
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == m_id;
}

unsigned DrivenExam::Threads() const
{
    const base::File snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL is = Process32FirstW(snapshot.get(), &entry); is;
         is = Process32NextW(snapshot.get(), &entry))
        if (entry.th32ProcessID == m_id) return entry.cntThreads;
    return 0;
}

unsigned DrivenExam::Megabytes() const
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(m_process.get(), &counters, sizeof counters);
    return static_cast<unsigned>(counters.PagefileUsage >> 20);
}

} // namespace soak
