#pragma once

#include "CrashFacts.h"
#include "CrashReportParser.h"

#include <base/Handles.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace crash_test {

// What a loaded module is, as the process saw it.
struct KnownModule
{
    std::uint64_t base;
    std::uint32_t size;
    std::wstring path;
};

// Runs children that really crash, in a folder of their own: app\ has the program and what stands
// in for the crash reporter, log\ is the log folder.
class CrashTest : public testing::Test
{
protected:
    CrashTest();
    ~CrashTest() override;

    std::wstring App(const std::wstring& name) const { return m_folder / (L"app\\" + name); }
    std::wstring Log(const std::wstring& name) const { return m_folder / (L"log\\" + name); }
    std::wstring Program() const { return App(L"crash_child.exe"); }

    // Runs the child to its end; false when it does not end in time. The exit code is kept.
    bool Run(const std::wstring& arguments, const std::wstring& program = {});
    // The same, with the usual log folder and facts.
    bool Crash(const std::wstring& kind, const std::wstring& more = {});
    // The same, with this program as the child's debugger, which handles nothing.
    bool CrashDebugged(const std::wstring& kind);

    // Whether the platform calls a filter for such a crash, with more stack than the lowest page,
    // which is not to be used.
    bool IsFiltered(const std::wstring& kind)
    {
        return Run(L"is-filtered " + kind + L" 4096") && m_exitCode == 0;
    }

    // Whether the reporter is started within its time. Asked only when it should be, or to see a
    // moment that it is not.
    bool IsReporterStarted(DWORD milliseconds = 20'000) const;
    // Its command line.
    std::wstring ReporterCommand() const;

    // The files of a folder whose names end so.
    std::vector<std::wstring> FilesOf(const std::wstring& folder, const std::wstring& end) const;

    // The one report of the log folder, parsed; a failure of the test when there is not one.
    Report TheReport() const;

    // What the child knew.
    Facts TheFacts() const;
    std::vector<KnownModule> KnownModules() const;

    // Checks all of the report against what the child knew of the exception, itself and its
    // machine.
    void ExpectTrue(const Report& report, const ExceptionFacts& facts) const;

    // Setting the crash handler reads, taken back at the end of the test.
    void SetSetting(const wchar_t* section, const wchar_t* name, DWORD type, const void* bytes,
                    DWORD size);
    void SetText(const wchar_t* section, const wchar_t* name, const std::wstring& text);

    DWORD m_exitCode = 0;

private:
    std::wstring UsualArguments(const std::wstring& kind) const;
    base::Process Start(const std::wstring& arguments, const std::wstring& program, DWORD flags);
    bool WaitFor(const base::Process& process);

    void ExpectException(const Report& report, const ExceptionFacts& facts) const;
    void ExpectMachine(const Report& report) const;
    void ExpectRegisters(const Report& report, const CONTEXT& context) const;
    void ExpectStack(const Report& report, const ExceptionFacts& facts) const;
    void ExpectModules(const Report& report) const;

    const test_support::TemporaryFolder m_folder;
    std::wstring m_searchPath; // of this process, before the test
    base::Event m_reporterStarted;
    std::vector<std::pair<std::wstring, std::wstring>> m_settings;
    FILETIME m_begin = {};
};

} // namespace crash_test
