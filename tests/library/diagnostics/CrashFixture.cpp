#include "CrashFixture.h"

#include <base/Encoding.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>

#include <atomic>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace crash_test {

namespace {

constexpr DWORD longestRun = 150'000; // milliseconds, on a busy machine

const std::wstring settingsKey = L"Software\\Kestrow\\Exam\\";

FILETIME Now()
{
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return now;
}

// Seconds from an arbitrary beginning.
long long Seconds(const FILETIME& moment)
{
    return static_cast<long long>(std::uint64_t{moment.dwHighDateTime} << 32 |
                                  moment.dwLowDateTime) /
           10'000'000;
}

// Converts a time of the report to seconds.
long long Seconds(const std::wstring& text)
{
    SYSTEMTIME time = {};
    FILETIME moment = {};
    if (std::swscanf(text.c_str(), L"%hu/%hu/%hu %hu:%hu:%hu", &time.wMonth, &time.wDay,
                     &time.wYear, &time.wHour, &time.wMinute, &time.wSecond) != 6 ||
        !SystemTimeToFileTime(&time, &moment))
        throw std::runtime_error("no time: " + base::Utf8FromWide(text));
    return Seconds(moment);
}

long long LocalSeconds(const FILETIME& utc)
{
    FILETIME local = {};
    FileTimeToLocalFileTime(&utc, &local);
    return Seconds(local);
}

} // namespace

std::wstring NameOf(const std::wstring& path)
{
    return path.substr(path.rfind(L'\\') + 1);
}

CrashTest::CrashTest() : m_searchPath(test_support::EnvironmentVariable(L"PATH")), m_begin(Now())
{
    static std::atomic<unsigned> serial{0};
    CreateDirectoryW((m_folder / L"app").c_str(), nullptr);
    CreateDirectoryW((m_folder / L"log").c_str(), nullptr);
    CopyFileW(test_support::BesideProgram(L"crash_child.exe").c_str(), Program().c_str(), TRUE);
    CopyFileW(test_support::BesideProgram(L"crash_witness.exe").c_str(),
              App(L"XCrashReport.exe").c_str(), TRUE);
    // The libraries of the child are beside this program.
    SetEnvironmentVariableW(L"PATH",
                            (test_support::BesideProgram(L"") + L";" + m_searchPath).c_str());
    const std::wstring event =
        L"crash" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++serial);
    m_reporterStarted.reset(CreateEventW(nullptr, TRUE, FALSE, event.c_str()));
    SetEnvironmentVariableW(L"CRASH_WITNESS", event.c_str());
}

CrashTest::~CrashTest()
{
    SetEnvironmentVariableW(L"PATH", m_searchPath.c_str());
    for (const auto& [section, name] : m_settings)
        RegDeleteKeyValueW(HKEY_CURRENT_USER, (settingsKey + section).c_str(), name.c_str());
}

base::Process CrashTest::Start(const std::wstring& arguments, const std::wstring& program,
                               DWORD flags)
{
    const std::wstring file = program.empty() ? Program() : program;
    std::wstring command = L"\"" + file + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info = {};
    // A busy machine refused a start once, for a reason that is not known.
    for (int attempt = 1; !CreateProcessW(file.c_str(), command.data(), nullptr, nullptr, FALSE,
                                          flags, nullptr, m_folder.Path().c_str(), &startup, &info);
         ++attempt) {
        if (attempt == 10)
            throw std::runtime_error("cannot start the child, error " +
                                     std::to_string(GetLastError()));
        Sleep(100);
    }
    const base::Thread thread(info.hThread);
    return base::Process(info.hProcess);
}

bool CrashTest::WaitFor(const base::Process& process)
{
    if (WaitForSingleObject(process.get(), longestRun) != WAIT_OBJECT_0) {
        TerminateProcess(process.get(), 99);
        return false;
    }
    GetExitCodeProcess(process.get(), &m_exitCode);
    return true;
}

bool CrashTest::Run(const std::wstring& arguments, const std::wstring& program)
{
    return WaitFor(Start(arguments, program, 0));
}

std::wstring CrashTest::UsualArguments(const std::wstring& kind) const
{
    return kind + L" --log \"" + (m_folder / L"log") + L"\" --facts \"" + (m_folder / L"facts") +
           L"\" ";
}

bool CrashTest::Crash(const std::wstring& kind, const std::wstring& more)
{
    return Run(UsualArguments(kind) + more);
}

bool CrashTest::CrashDebugged(const std::wstring& kind)
{
    const base::Process process = Start(UsualArguments(kind), {}, DEBUG_ONLY_THIS_PROCESS);
    DEBUG_EVENT event = {};
    while (event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT) {
        if (!WaitForDebugEvent(&event, longestRun)) return false;
        const bool isBreakpoint = event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
                                  event.u.Exception.ExceptionRecord.ExceptionCode ==
                                      static_cast<DWORD>(EXCEPTION_BREAKPOINT); // the loader's
        if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT)
            base::File(event.u.CreateProcessInfo.hFile).reset();
        if (event.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT)
            base::File(event.u.LoadDll.hFile).reset();
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId,
                           isBreakpoint ? DBG_CONTINUE : DBG_EXCEPTION_NOT_HANDLED);
    }
    return WaitFor(process);
}

bool CrashTest::IsReporterStarted(DWORD milliseconds) const
{
    return WaitForSingleObject(m_reporterStarted.get(), milliseconds) == WAIT_OBJECT_0;
}

std::wstring CrashTest::ReporterCommand() const
{
    const std::string bytes = test_support::ReadFile(App(L"witness"));
    std::wstring text(bytes.size() / 2, L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * 2);
    EXPECT_EQ(text[0] & STARTF_USESHOWWINDOW, STARTF_USESHOWWINDOW);
    EXPECT_EQ(text[1], SW_SHOW);
    return text.substr(2);
}

std::wstring CrashTest::ReporterSetting(const wchar_t* section, const wchar_t* name) const
{
    wchar_t text[1024] = {};
    GetPrivateProfileStringW(section, name, L"(none)", text, 1024, App(L"crashreport.ini").c_str());
    return text;
}

std::vector<std::wstring> CrashTest::FilesOf(const std::wstring& folder,
                                             const std::wstring& end) const
{
    std::vector<std::wstring> paths;
    WIN32_FIND_DATAW found = {};
    const base::Find find(FindFirstFileW((folder + L"\\*" + end).c_str(), &found));
    if (!find) return paths;
    do {
        paths.push_back(folder + L"\\" + found.cFileName);
    } while (FindNextFileW(find.get(), &found));
    return paths;
}

Report CrashTest::TheReport() const
{
    const std::vector<std::wstring> paths = FilesOf(m_folder / L"log", L".txt");
    if (paths.size() != 1)
        throw std::runtime_error(std::to_string(paths.size()) + " reports instead of one");
    Report report = ParseReport(test_support::ReadFile(paths[0]));
    EXPECT_EQ(report.baseName + L".txt", NameOf(paths[0]));
    return report;
}

Facts CrashTest::TheFacts() const
{
    const std::string bytes = test_support::ReadFile(m_folder / L"facts");
    Facts facts = {};
    if (bytes.size() != sizeof facts) throw std::runtime_error("no facts of the child");
    std::memcpy(static_cast<void*>(&facts), bytes.data(), sizeof facts);
    return facts;
}

std::vector<KnownModule> CrashTest::KnownModules() const
{
    std::vector<KnownModule> modules;
    std::istringstream lines(test_support::ReadFile(m_folder / L"facts.txt"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        KnownModule module = {};
        std::string path;
        words >> std::hex >> module.base >> module.size >> std::ws;
        std::getline(words, path);
        module.path = base::WideFromUtf8(path);
        modules.push_back(module);
    }
    return modules;
}

void CrashTest::SetSetting(const wchar_t* section, const wchar_t* name, DWORD type,
                           const void* bytes, DWORD size)
{
    m_settings.emplace_back(section, name);
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, (settingsKey + section).c_str(), name, type, bytes,
                              size),
              ERROR_SUCCESS);
}

void CrashTest::SetText(const wchar_t* section, const wchar_t* name, const std::wstring& text)
{
    SetSetting(section, name, REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * 2));
}

void CrashTest::ExpectTrue(const Report& report, const ExceptionFacts& facts) const
{
    ExpectException(report, facts);
    ExpectMachine(report);
    ExpectRegisters(report, facts.context);
    ExpectStack(report, facts);
    ExpectModules(report);
}

void CrashTest::ExpectException(const Report& report, const ExceptionFacts& facts) const
{
    EXPECT_EQ(report.process, L"crash_child");
    EXPECT_EQ(report.code, facts.code);
    EXPECT_EQ(report.segment, LOWORD(facts.context.SegCs)) << "a selector has 16 bits";
    EXPECT_EQ(report.instruction, facts.context.*codePointer);
    const bool isViolation = facts.code == STATUS_ACCESS_VIOLATION && facts.parameterCount >= 2;
    EXPECT_EQ(report.violation.has_value(), isViolation);
    if (isViolation && report.violation) {
        EXPECT_EQ(report.violation->first, facts.parameters[0] ? L"Write to" : L"Read from");
        EXPECT_EQ(report.violation->second, facts.parameters[1]);
    }
    for (std::size_t i = 0; i < report.bytes.size(); ++i)
        EXPECT_EQ(report.bytes[i], i < facts.byteCount ? facts.bytes[i] : -1) << i;
}

void CrashTest::ExpectMachine(const Report& report) const
{
    const long long begin = LocalSeconds(m_begin);
    const long long end = LocalSeconds(Now());
    for (const std::wstring& time : {report.startTime, report.endTime, report.errorTime}) {
        EXPECT_GE(Seconds(time), begin);
        EXPECT_LE(Seconds(time), end);
    }
    EXPECT_LE(Seconds(report.startTime), Seconds(report.endTime));
    EXPECT_EQ(report.program, Program());
    wchar_t user[257] = {};
    DWORD size = 257;
    GetUserNameW(user, &size);
    EXPECT_EQ(report.user, user);
    SYSTEM_INFO info = {};
    GetSystemInfo(&info);
    EXPECT_EQ(report.processors, static_cast<int>(info.dwNumberOfProcessors));
    EXPECT_EQ(report.processorType, static_cast<int>(info.dwProcessorType));
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    EXPECT_EQ(report.systemMemory[1], static_cast<int>((memory.ullTotalPhys + 0xFFFFF) >> 20));
    EXPECT_EQ(report.systemMemory[5], static_cast<int>((memory.ullTotalVirtual + 0xFFFFF) >> 20));
    EXPECT_LE(report.systemMemory[2], report.systemMemory[1]);
    EXPECT_LE(report.systemMemory[6], report.systemMemory[5]);
    EXPECT_GE(report.processMemory[1], report.processMemory[2]) << "the peak is the highest";
    EXPECT_GT(report.processMemory[2], 0);
}

void CrashTest::ExpectRegisters(const Report& report, const CONTEXT& context) const
{
    using Values = std::map<std::wstring, std::uint64_t>;
#ifdef _WIN64
    const Values expected = {
        {L"RAX", context.Rax},     {L"RBX", context.Rbx},    {L"RCX", context.Rcx},
        {L"RDX", context.Rdx},     {L"RSI", context.Rsi},    {L"RDI", context.Rdi},
        {L"RBP", context.Rbp},     {L"RSP", context.Rsp},    {L"R8", context.R8},
        {L"R9", context.R9},       {L"R10", context.R10},    {L"R11", context.R11},
        {L"R12", context.R12},     {L"R13", context.R13},    {L"R14", context.R14},
        {L"R15", context.R15},     {L"RIP", context.Rip},    {L"EFlags", context.EFlags},
        {L"SegCs", context.SegCs}, {L"SegSs", context.SegSs}};
#else
    const Values expected = {
        {L"EAX", context.Eax},       {L"EBX", context.Ebx},     {L"ECX", context.Ecx},
        {L"EDX", context.Edx},       {L"ESI", context.Esi},     {L"EDI", context.Edi},
        {L"EBP", context.Ebp},       {L"ESP", context.Esp},     {L"EIP", context.Eip},
        {L"EFlags", context.EFlags}, {L"SegCs", context.SegCs}, {L"SegSs", context.SegSs}};
#endif
    for (const auto& [name, value] : expected)
        EXPECT_EQ(report.registers.at(name), value) << base::Utf8FromWide(name);
    EXPECT_EQ(report.registers.size(), expected.size());
}

void CrashTest::ExpectStack(const Report& report, const ExceptionFacts& facts) const
{
    const std::uint64_t first = facts.context.*stackPointer;
    std::size_t words = 0;
    for (const StackLine& line : report.stack) {
        EXPECT_EQ(line.address, first + words * 4);
        for (std::size_t i = 0; i < line.words.size() * 4; ++i) {
            const auto byte = static_cast<wchar_t>(line.words[i / 4] >> i % 4 * 8 & 0xFF);
            EXPECT_EQ(line.characters[i], byte >= 0x20 && byte <= 0x7E ? byte : L'.');
        }
        words += line.words.size();
    }
    if (report.isStackCut) return;
    const std::uint64_t above = first < facts.stackBase ? facts.stackBase - first : 0;
    EXPECT_EQ(words, std::min<std::uint64_t>(above, 0x3000) / 4);
}

void CrashTest::ExpectModules(const Report& report) const
{
    const std::vector<KnownModule> known = KnownModules();
    EXPECT_GT(known.size(), 5u);
    std::uint64_t last = 0;
    std::map<std::uint64_t, const Module*> reported;
    for (const Module& module : report.modules) {
        EXPECT_GT(module.base, last) << "in the order of their addresses";
        last = module.base;
        reported[module.base] = &module;
    }
    for (const KnownModule& module : known) {
        ASSERT_TRUE(reported.contains(module.base)) << base::Utf8FromWide(module.path);
        EXPECT_EQ(reported[module.base]->path, module.path);
        EXPECT_EQ(reported[module.base]->size, module.size);
        EXPECT_TRUE(reported[module.base]->hasVersion);
    }
}

} // namespace crash_test
