// Crashes that leave little to work with, and reports that meet obstacles.
#include "CrashFixture.h"

#include <base/Encoding.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>

#include <cstring>

namespace crash_test {
namespace {

using test_support::FileExists;
using test_support::WriteFile;

class CrashTrouble : public CrashTest
{
protected:
    // Expects that a crash is reported in full, with dump, settings and reporter.
    void ExpectReported(const std::wstring& kind, const std::wstring& more = {})
    {
        ASSERT_TRUE(Crash(kind, more)) << "the process has to end";
        EXPECT_TRUE(IsReporterStarted());
        ExpectTrue(TheReport(), TheFacts().exceptions[0]);
        EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
        EXPECT_TRUE(FileExists(App(L"crashreport.ini")));
    }
};

// Exhausted stacks: in plain code, and in calls that hold the platform's locks.
class ExhaustedStack : public CrashTrouble, public testing::WithParamInterface<const wchar_t*>
{
protected:
    void SetUp() override
    {
        if (!IsFiltered(GetParam()))
            GTEST_SKIP() << "the platform calls no filter for it, or leaves it no stack";
    }
};

TEST_P(ExhaustedStack, OfTheFirstThread)
{
    ExpectReported(GetParam());
    EXPECT_EQ(m_exitCode, STATUS_STACK_OVERFLOW);
}

TEST_P(ExhaustedStack, OfAnotherThread)
{
    ExpectReported(GetParam(), L"--thread 1048576");
    EXPECT_EQ(m_exitCode, STATUS_STACK_OVERFLOW);
}

// The process ends by its exception even when the platform would do something else.
TEST_P(ExhaustedStack, WithoutAReporter)
{
    DeleteFileW(App(L"XCrashReport.exe").c_str());
    ASSERT_TRUE(Crash(GetParam()));
    EXPECT_EQ(m_exitCode, STATUS_STACK_OVERFLOW);
    ExpectTrue(TheReport(), TheFacts().exceptions[0]);
}

std::string NameOfKind(const testing::TestParamInfo<const wchar_t*>& kind)
{
    std::string name = base::Utf8FromWide(kind.param);
    std::erase(name, '-');
    return name;
}
INSTANTIATE_TEST_SUITE_P(All, ExhaustedStack,
                         testing::Values(L"stack-overflow", L"overflow-in-heap",
                                         L"overflow-in-loader"),
                         NameOfKind);

TEST_F(CrashTrouble, AThreadWithASmallStack)
{
    ExpectReported(L"read", L"--thread 65536");
}

TEST_F(CrashTrouble, ADestroyedStack)
{
    ExpectReported(L"destroyed-stack");
}

TEST_F(CrashTrouble, AStackThatIsNotTheThreadsOwn)
{
    if (sizeof(void*) > 4)
        GTEST_SKIP() << "a 64-bit platform finds the filter by the thread's stack";
    ExpectReported(L"left-stack");
}

TEST_F(CrashTrouble, AnExhaustedHeap)
{
    if (sizeof(void*) > 4) GTEST_SKIP() << "no process fills so many addresses in a test's time";
    ExpectReported(L"heap-exhausted");
}

// The platform has no memory to tell anybody of this exception.
TEST_F(CrashTrouble, AnUncaughtExceptionOfAnExhaustedHeap)
{
    if (sizeof(void*) > 4) GTEST_SKIP() << "no process fills so many addresses in a test's time";
    if (!IsFiltered(L"bad-alloc")) GTEST_SKIP() << "the platform calls no filter for it";
    ASSERT_TRUE(Crash(L"bad-alloc")) << "the process has to end";
    EXPECT_TRUE(IsReporterStarted());
    EXPECT_EQ(TheReport().process, L"crash_child");
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
}

TEST_F(CrashTrouble, AHandlerThatCrashes)
{
    ASSERT_TRUE(Crash(L"vectored-handler"));
    EXPECT_TRUE(IsReporterStarted());
    const Facts facts = TheFacts();
    EXPECT_EQ(facts.exceptions[0].code, 0xE0000001u);
    EXPECT_EQ(facts.exceptions[1].code, STATUS_ACCESS_VIOLATION);
    ExpectTrue(TheReport(), facts.exceptions[1]);
}

TEST_F(CrashTrouble, ACatchBlockThatCrashes)
{
    ExpectReported(L"catch-block");
}

TEST_F(CrashTrouble, TwoThreadsAtOnce)
{
    ASSERT_TRUE(Crash(L"two-threads"));
    EXPECT_TRUE(IsReporterStarted());
    const Facts facts = TheFacts();
    ASSERT_EQ(facts.count, 2);
    const Report report = TheReport(); // there is one report, and it is whole
    const bool isSecond = report.stack.at(0).address == facts.exceptions[1].context.*stackPointer;
    ExpectTrue(report, facts.exceptions[isSecond]);
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
}

TEST_F(CrashTrouble, ASecondThreadWaitsForTheReport)
{
    ExpectReported(L"second-thread");
    const Facts facts = TheFacts();
    EXPECT_EQ(facts.count, 2);
    EXPECT_NE(facts.exceptions[0].thread, facts.exceptions[1].thread);
}

// The first thread's report may need the lock. Then the process ends without it, but soon.
TEST_F(CrashTrouble, ASecondThreadWithALockWaitsNotForEver)
{
    for (const wchar_t* const kind : {L"second-heap-lock", L"second-loader-lock"}) {
        const ULONGLONG begin = GetTickCount64();
        ASSERT_TRUE(Crash(kind)) << base::Utf8FromWide(kind);
        EXPECT_LT(GetTickCount64() - begin, 30'000u) << base::Utf8FromWide(kind);
    }
}

TEST_F(CrashTrouble, UnderTheHeapsLock)
{
    ExpectReported(L"heap-lock");
}

TEST_F(CrashTrouble, UnderTheLoadersLock)
{
    ExpectReported(L"loader-lock");
}

TEST_F(CrashTrouble, InTheLoggersHook)
{
    ExpectReported(L"log-hook");
}

// The log folder cannot be read under this lock, so the last known one is used.
TEST_F(CrashTrouble, UnderTheLockOfTheLoggersFolder)
{
    ExpectReported(L"logger-folder-lock");
}

TEST_F(CrashTrouble, UnderTheLockOfTheLoggersFile)
{
    ExpectReported(L"logger-file-lock");
}

TEST_F(CrashTrouble, TheReportGoesWhereTheLogIsAtTheTimeOfTheCrash)
{
    CreateDirectoryW(App(L"late").c_str(), nullptr);
    ASSERT_TRUE(Crash(L"read", L"--late-log \"" + App(L"late") + L"\""));
    EXPECT_EQ(FilesOf(App(L"late"), L".txt").size(), 1u);
    EXPECT_TRUE(FilesOf(Log(L""), L".txt").empty());
}

TEST_F(CrashTrouble, AMissingLogFolderIsMade)
{
    ASSERT_TRUE(Crash(L"read", L"--late-log \"" + App(L"new\\deep") + L"\""));
    EXPECT_EQ(FilesOf(App(L"new\\deep"), L".txt").size(), 1u);
    EXPECT_TRUE(IsReporterStarted());
}

TEST_F(CrashTrouble, WithoutAnyReportFileTheRestIsLeftOut)
{
    WriteFile(App(L"file"), "where a folder should be");
    ASSERT_TRUE(Crash(L"read", L"--late-log \"" + App(L"file\\log") + L"\""));
    EXPECT_EQ(m_exitCode, STATUS_ACCESS_VIOLATION);
    EXPECT_FALSE(FileExists(App(L"crashreport.ini")));
    EXPECT_FALSE(IsReporterStarted(500));
}

TEST_F(CrashTrouble, ALogFolderOfAnyCharacters)
{
    const std::wstring log = App(L"\u65E5\u8A8C \u00E9");
    ASSERT_TRUE(Crash(L"read", L"--late-log \"" + log + L"\""));
    EXPECT_TRUE(IsReporterStarted());
    ASSERT_EQ(FilesOf(log, L".txt").size(), 1u);
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File002"),
              FilesOf(log, L".txt")[0] + L",Crash Log,Text Document");
}

// The settings hold the name in an encoding that can express it.
TEST_F(CrashTrouble, AProgramOfAnyName)
{
    const std::wstring program = App(L"\u65E5\u8A8C.exe");
    ASSERT_TRUE(CopyFileW(Program().c_str(), program.c_str(), TRUE));
    ASSERT_TRUE(Run(L"read --log \"" + Log(L"") + L".\"", program));
    const std::vector<std::wstring> dumps = FilesOf(Log(L""), L".dmp");
    ASSERT_EQ(dumps.size(), 1u);
    EXPECT_EQ(NameOf(ReporterSetting(L"FilesToAdd", L"File001")),
              NameOf(dumps[0]) + L",Crash Dump,DMP File");
}

TEST_F(CrashTrouble, AnActionLogOfAnyName)
{
    WriteFile(Log(L"\u65E5\u8A8C.xml"), "<log/>");
    ASSERT_TRUE(Crash(L"read"));
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File004"),
              Log(L"\\\u65E5\u8A8C.xml") + L",Action Log,Text Document");
}

TEST_F(CrashTrouble, SettingsThatAreThereAreKeptInAnyEncoding)
{
    WritePrivateProfileStringW(L"Mail", L"To", L"Ren\u00E9", App(L"crashreport.ini").c_str());
    WriteFile(Log(L"\u65E5\u8A8C.xml"), "<log/>");
    ASSERT_TRUE(Crash(L"read"));
    EXPECT_EQ(ReporterSetting(L"Mail", L"To"), L"Ren\u00E9");
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File004"),
              Log(L"\\\u65E5\u8A8C.xml") + L",Action Log,Text Document");
}

TEST_F(CrashTrouble, WithoutAReporterTheFilesAreWrittenAllTheSame)
{
    DeleteFileW(App(L"XCrashReport.exe").c_str());
    ASSERT_TRUE(Crash(L"read"));
    ExpectTrue(TheReport(), TheFacts().exceptions[0]);
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
    EXPECT_TRUE(FileExists(App(L"crashreport.ini")));
}

TEST_F(CrashTrouble, TheReporterIsTheOneThatTheRegistryNames)
{
    MoveFileW(App(L"XCrashReport.exe").c_str(), App(L"other reporter.exe").c_str());
    SetText(L"System\\Path", L"CrashHandler", L"other reporter.exe");
    SetText(L"System\\Path", L"CrashHandler_Params", L"/silent /x:\"y z\"");
    ASSERT_TRUE(Crash(L"read"));
    ASSERT_TRUE(IsReporterStarted());
    EXPECT_EQ(ReporterCommand(), L" /silent /x:\"y z\" \"crash_child.exe\"");
}

// The kind of a dump, as its header states it.
std::uint64_t TypeOfDump(const std::wstring& path)
{
    constexpr std::size_t offset = 24;
    const std::string bytes = test_support::ReadFile(path);
    std::uint64_t type = ~std::uint64_t{0};
    if (bytes.size() >= offset + sizeof type)
        std::memcpy(&type, bytes.data() + offset, sizeof type);
    return type;
}

TEST_F(CrashTrouble, SettingsOfWrongTypesGiveTheDefaults)
{
    const DWORD number = 5;
    SetSetting(L"System\\Path", L"CrashHandler", REG_DWORD, &number, sizeof number);
    SetSetting(L"System\\Path", L"CrashHandler_Params", REG_BINARY, "abcdefgh", 8);
    SetText(L"System\\HW Options", L"DumpType", L"2");
    ASSERT_TRUE(Crash(L"read"));
    ASSERT_TRUE(IsReporterStarted());
    EXPECT_EQ(ReporterCommand(), L"  \"crash_child.exe\"");
    const std::vector<std::wstring> dumps = FilesOf(Log(L""), L".dmp");
    ASSERT_EQ(dumps.size(), 1u);
    EXPECT_EQ(TypeOfDump(dumps[0]), 0u);
}

TEST_F(CrashTrouble, ATextOfTheRegistryNeedsNoNull)
{
    SetSetting(L"System\\Path", L"CrashHandler_Params", REG_SZ, L"/abc", 8);
    ASSERT_TRUE(Crash(L"read"));
    ASSERT_TRUE(IsReporterStarted());
    EXPECT_EQ(ReporterCommand(), L" /abc \"crash_child.exe\"");
}

TEST_F(CrashTrouble, ATextOfTheRegistryMayFillItsRoom)
{
    const std::wstring longest = L"/" + std::wstring(1022, L'x');
    SetText(L"System\\Path", L"CrashHandler_Params", longest);
    ASSERT_TRUE(Crash(L"read"));
    ASSERT_TRUE(IsReporterStarted());
    EXPECT_EQ(ReporterCommand(), L" " + longest + L" \"crash_child.exe\"");
}

TEST_F(CrashTrouble, ATextOfTheRegistryThatDoesNotFitGivesTheDefault)
{
    SetText(L"System\\Path", L"CrashHandler", std::wstring(5000, L'x'));
    ASSERT_TRUE(Crash(L"read"));
    EXPECT_TRUE(IsReporterStarted());
}

TEST_F(CrashTrouble, TheDumpIsOfTheTypeThatTheRegistrySays)
{
    const DWORD withDataSegments = 1;
    SetSetting(L"System\\HW Options", L"DumpType", REG_DWORD, &withDataSegments,
               sizeof withDataSegments);
    ASSERT_TRUE(Crash(L"read"));
    const std::vector<std::wstring> dumps = FilesOf(Log(L""), L".dmp");
    ASSERT_EQ(dumps.size(), 1u);
    EXPECT_EQ(TypeOfDump(dumps[0]), withDataSegments);
}

void SetCreated(const std::wstring& path, WORD year)
{
    const SYSTEMTIME time = {year, 1, 0, 1, 0, 0, 0, 0};
    FILETIME created = {};
    SystemTimeToFileTime(&time, &created);
    const base::File file(
        CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    SetFileTime(file.get(), &created, nullptr, nullptr);
}

// The file name of a pattern that the platform reports as created last. Not every platform keeps
// the time that was set.
std::wstring NewestOf(const std::wstring& pattern)
{
    WIN32_FIND_DATAW found = {}, newest = {};
    const base::Find find(FindFirstFileW(pattern.c_str(), &found));
    for (BOOL isFound = find.get() != INVALID_HANDLE_VALUE; isFound;
         isFound = FindNextFileW(find.get(), &found))
        if (!newest.cFileName[0] ||
            CompareFileTime(&found.ftCreationTime, &newest.ftCreationTime) > 0)
            newest = found;
    return newest.cFileName;
}

TEST_F(CrashTrouble, TheNewestActionLogIsCollected)
{
    for (const wchar_t* name : {L"a.xml", L"b.xml", L"c.xml", L"d.txt.old"})
        WriteFile(Log(name), "<log/>");
    SetCreated(Log(L"a.xml"), 2021);
    SetCreated(Log(L"b.xml"), 2023);
    SetCreated(Log(L"c.xml"), 2022);
    ASSERT_TRUE(Crash(L"read"));
    // The folder has a separator of its own, so there are two.
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File004"),
              Log(L"\\" + NewestOf(Log(L"*.xml")) + L",Action Log,Text Document"));
}

TEST_F(CrashTrouble, SettingsThatAreNotWrittenStayAsTheyAre)
{
    WritePrivateProfileStringW(L"FilesToAdd", L"File004", L"old", App(L"crashreport.ini").c_str());
    WritePrivateProfileStringW(L"Mail", L"To", L"kept", App(L"crashreport.ini").c_str());
    ASSERT_TRUE(Crash(L"read"));
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File004"), L"old") << "there is no action log";
    EXPECT_EQ(ReporterSetting(L"Mail", L"To"), L"kept");
}

TEST_F(CrashTrouble, OnlyTheFirstExceptionIsReported)
{
    ASSERT_TRUE(Crash(L"call-filter"));
    EXPECT_EQ(m_exitCode, 10u) << "the reporter was started once, then nothing";
    EXPECT_EQ(TheReport().exception, L"an Illegal Instruction");
}

TEST_F(CrashTrouble, TheFilterWorksWithoutItsObject)
{
    ASSERT_TRUE(Crash(L"call-filter", L"--bare yes"));
    EXPECT_EQ(m_exitCode, 10u);
    EXPECT_EQ(TheReport().exception, L"an Illegal Instruction");
}

TEST_F(CrashTrouble, WithoutAReporterTheFilterLetsThePlatformGoOn)
{
    DeleteFileW(App(L"XCrashReport.exe").c_str());
    ASSERT_TRUE(Crash(L"call-filter"));
    EXPECT_EQ(m_exitCode, 0u);
}

TEST_F(CrashTrouble, AFaultInsideThePartThatWritesTheSettingsCostsThemAlone)
{
    ASSERT_TRUE(Crash(L"fault-in-filter"));
    EXPECT_EQ(m_exitCode, 1u);
    EXPECT_TRUE(IsReporterStarted());
    EXPECT_EQ(TheReport().exception, L"an Illegal Instruction");
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
    EXPECT_FALSE(FileExists(App(L"crashreport.ini")));
}

TEST_F(CrashTrouble, AnExceptionThatThePlatformHandlesCostsNothing)
{
    ASSERT_TRUE(Crash(L"message-in-filter"));
    EXPECT_TRUE(IsReporterStarted());
    EXPECT_TRUE(FileExists(App(L"crashreport.ini")));
}

TEST_F(CrashTrouble, UnderADebuggerNoReporterIsStarted)
{
    ASSERT_TRUE(CrashDebugged(L"call-filter"));
    EXPECT_EQ(m_exitCode, 0u);
    EXPECT_EQ(TheReport().exception, L"an Illegal Instruction");
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
    EXPECT_FALSE(FileExists(App(L"crashreport.ini")));
    EXPECT_FALSE(IsReporterStarted(500));
}

TEST_F(CrashTrouble, TheReporterInheritsNothing)
{
    const std::wstring name = L"inherited" + std::to_wstring(GetCurrentProcessId());
    const base::Event event(CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
    ASSERT_TRUE(Crash(L"read", L"--inheritable " + name));
    ASSERT_TRUE(IsReporterStarted());
    EXPECT_EQ(WaitForSingleObject(event.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
}

TEST_F(CrashTrouble, EachCallSuppressesThePlatformsDialog)
{
    ASSERT_TRUE(Crash(L"error-modes"));
    EXPECT_EQ(m_exitCode, UINT{SEM_NOGPFAULTERRORBOX << 4 | SEM_NOGPFAULTERRORBOX});
}

TEST_F(CrashTrouble, TheReportIsSharedWithNobodyWhileItIsWritten)
{
    ASSERT_TRUE(Crash(L"creation"));
    EXPECT_EQ(m_exitCode, 1u);
}

// disk-full runs this under a limit on the size of files, which a dump of all memory meets.
TEST_F(CrashTrouble, DiskFullLosesNoMoreThanTheDump)
{
    const std::wstring limit = test_support::EnvironmentVariable(L"CRASH_FILE_LIMIT");
    if (limit.empty()) GTEST_SKIP() << "run by disk-full, under a limit on the size of files";
    const DWORD withFullMemory = 2;
    SetSetting(L"System\\HW Options", L"DumpType", REG_DWORD, &withFullMemory,
               sizeof withFullMemory);
    ASSERT_TRUE(Crash(L"read"));
    for (const std::wstring& dump : FilesOf(Log(L""), L".dmp"))
        EXPECT_EQ(std::to_wstring(test_support::ReadFile(dump).size()), limit);
    EXPECT_TRUE(IsReporterStarted());
    ExpectTrue(TheReport(), TheFacts().exceptions[0]);
    EXPECT_TRUE(FileExists(App(L"crashreport.ini")));
}

} // namespace
} // namespace crash_test
