#pragma once

#include "CrashFacts.h"
#include "CrashReportParser.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/TemporaryFolder.h>

#include <optional>
#include <string>
#include <vector>

namespace crash_test {

// The file name of a path.
std::wstring NameOf(const std::wstring& path);

// A loaded module as the process saw it.
struct KnownModule
{
    std::uint64_t base;
    std::uint32_t size;
    std::wstring path;
};

// Runs children that really crash, in a folder of their own: app\ has the program and a stand-in
// for the crash reporter, log\ is the log folder.
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
    // Runs the child with the usual log folder and facts.
    bool Crash(const std::wstring& kind, const std::wstring& more = {});
    // Runs the child as Crash does, with this program as its debugger, which handles nothing.
    bool CrashDebugged(const std::wstring& kind);

    // True when the platform calls a filter for such a crash, with more stack than the lowest page,
    // which must not be used.
    bool IsFiltered(const std::wstring& kind)
    {
        return Run(L"is-filtered " + kind + L" 4096") && m_exitCode == 0;
    }

    // True when the reporter is started within its time. Ask only when it should be, or to see for
    // a moment that it is not.
    bool IsReporterStarted(DWORD milliseconds = 20'000) const;
    // The reporter's command line.
    std::wstring ReporterCommand() const;

    // A text of the settings file that tells the reporter what to collect; "(none)" without one.
    std::wstring ReporterSetting(const wchar_t* section, const wchar_t* name) const;

    // The files of a folder whose names have this end.
    std::vector<std::wstring> FilesOf(const std::wstring& folder, const std::wstring& end) const;

    // The only report of the log folder, parsed; the test fails when there is not exactly one.
    Report TheReport() const;

    // The child's own facts.
    Facts TheFacts() const;
    std::vector<KnownModule> KnownModules() const;

    // Checks all of the report against the child's knowledge of the exception, itself and its
    // machine.
    void ExpectTrue(const Report& report, const ExceptionFacts& facts) const;

    // Sets a setting that the crash handler reads, until the end of the test.
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
    std::wstring m_searchPath; // search path of this process before the test
    base::Event m_reporterStarted;
    std::vector<std::pair<std::wstring, std::wstring>> m_settings;
    FILETIME m_begin = {};
};

} // namespace crash_test
