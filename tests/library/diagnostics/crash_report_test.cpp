// The crash report, the dump, the settings and the reporter, from children that really crash.
#include "CrashFixture.h"
#include "VersionResource.h"

#include <test_support/Files.h>
#include <test_support/Program.h>
#include <Utils_Statics/CMiniVersion.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace crash_test {
namespace {

using CrashReport = CrashTest;

// A moment of UTC, in the form of the report.
std::wstring Local(const SYSTEMTIME& utc, const wchar_t* format = L"%d/%d/%d %02d:%02d:%02d")
{
    FILETIME moment = {}, local = {};
    SYSTEMTIME time = {};
    SystemTimeToFileTime(&utc, &moment);
    FileTimeToLocalFileTime(&moment, &local);
    FileTimeToSystemTime(&local, &time);
    wchar_t text[64];
    wsprintfW(text, format, time.wMonth, time.wDay, time.wYear, time.wHour, time.wMinute,
              time.wSecond);
    return text;
}

TEST_F(CrashReport, NamesTheFaultingModule)
{
    ASSERT_TRUE(Crash(L"divide"));
    EXPECT_EQ(TheReport().faultModule, L"crash_child.exe");
}

TEST_F(CrashReport, DoesNotKnowTheModuleOfAnAddressWithoutOne)
{
    ASSERT_TRUE(Crash(L"execute"));
    const Report report = TheReport();
    EXPECT_EQ(report.faultModule, L"Unknown");
    EXPECT_EQ(report.bytes, std::vector<int>(16, -1));
}

TEST_F(CrashReport, NamesItsFilesAfterProcessAndTime)
{
    ASSERT_TRUE(Crash(L"read"));
    const Report report = TheReport();
    SYSTEMTIME time = {};
    ASSERT_EQ(std::swscanf(report.baseName.c_str(), L"crash_child_%2hu%2hu%4hu_%2hu%2hu%2hu",
                           &time.wMonth, &time.wDay, &time.wYear, &time.wHour, &time.wMinute,
                           &time.wSecond),
              6);
    EXPECT_EQ(report.baseName.size(), std::wcslen(L"crash_child_MMDDYYYY_HHMMSS"));
    EXPECT_EQ(time.wSecond % 2, 0) << "in steps of two seconds";
    EXPECT_TRUE(test_support::FileExists(Log(report.baseName + L".dmp")));
    EXPECT_FALSE(test_support::FileExists(Log(report.baseName + L".zip"))) << "the reporter's task";
}

TEST_F(CrashReport, ShowsTheStackOfTheCrash)
{
    ASSERT_TRUE(Crash(L"read"));
    std::wstring characters;
    for (const StackLine& line : TheReport().stack)
        characters += line.characters;
    EXPECT_NE(characters.find(L"the marker that every crash leaves on its own stack"),
              std::wstring::npos);
}

TEST_F(CrashReport, ListsModulesWithTheirFilesAndVersions)
{
    ASSERT_TRUE(Crash(L"read"));
    int named = 0;
    for (const Module& module : TheReport().modules) {
        if (module.path == L"Unknown") continue; // a file that is mapped, not loaded
        CMiniVersion version(module.path.c_str());
        unsigned short company[520] = {};
        unsigned short file[4] = {};
        version.GetCompanyName(company, 520);
        version.GetFileVersion(file);
        version.Release();
        wchar_t numbers[64];
        wsprintfW(numbers, L"%d.%d.%d.%d", file[0], file[1], file[2], file[3]);
        EXPECT_EQ(module.company, reinterpret_cast<wchar_t*>(company));
        EXPECT_EQ(module.fileVersion, numbers);
        named += !module.company.empty();
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        if (GetFileAttributesExW(module.path.c_str(), GetFileExInfoStandard, &data)) {
            EXPECT_EQ(module.fileSize, static_cast<long long>(data.nFileSizeLow));
        }
    }
    EXPECT_GT(named, 3);
}

// A library of known content, with numbers in its headers that no linker writes.
class KnownLibrary
{
public:
    explicit KnownLibrary(const std::wstring& path) : m_path(path)
    {
        using namespace version_resource;
        WriteFile(path, Bytes(InEnglish(
                            StringTable(L"040904B0", L"A company", L"A text", L"A product"))));
        std::string bytes = test_support::ReadFile(path);
        std::uint32_t headers = 0;
        std::memcpy(&headers, bytes.data() + offsetof(IMAGE_DOS_HEADER, e_lfanew), 4);
        Put(bytes, headers + offsetof(IMAGE_NT_HEADERS, FileHeader.TimeDateStamp), 0x1234ABCD);
        Put(bytes, headers + offsetof(IMAGE_NT_HEADERS, OptionalHeader.CheckSum), 0x5678CDEF);
        test_support::WriteFile(path, bytes);
        SetWritten({2021, 3, 0, 4, 5, 6, 7, 0});
    }

    static Module Find(const Report& report, const std::wstring& name)
    {
        for (const Module& module : report.modules)
            if (module.path.ends_with(name)) return module;
        throw std::runtime_error("the module is not listed");
    }

private:
    static void Put(std::string& bytes, std::size_t offset, std::uint32_t number)
    {
        std::memcpy(bytes.data() + offset, &number, sizeof number);
    }

    // Sets the file's last write, given in local time.
    void SetWritten(const SYSTEMTIME& time)
    {
        FILETIME local = {}, utc = {};
        SystemTimeToFileTime(&time, &local);
        LocalFileTimeToFileTime(&local, &utc);
        const base::File file(CreateFileW(m_path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &utc));
    }

    std::wstring m_path;
};

TEST_F(CrashReport, ListsAModuleWithAllThatIsKnownOfIt)
{
    CreateDirectoryW(App(L"modules").c_str(), nullptr);
    const KnownLibrary library(App(L"modules\\known.dll"));
    ASSERT_TRUE(Crash(L"read", L"--modules \"" + App(L"modules") + L"\""));
    const Module module = KnownLibrary::Find(TheReport(), L"\\known.dll");
    EXPECT_EQ(module.timeStamp, 0x1234ABCDu);
    EXPECT_EQ(module.checksum, 0x5678CDEFu);
    EXPECT_EQ(module.fileTime, L"3/4/2021 05:06:07");
    EXPECT_EQ(module.company, L"A company");
    EXPECT_EQ(module.product, L"A product");
    EXPECT_EQ(module.description, L"A text");
    EXPECT_EQ(module.fileVersion, L"1.2.3.4");
    EXPECT_EQ(module.productVersion, L"5.6.7.8");
}

TEST_F(CrashReport, TellsHowLongTheProcessRan)
{
    ASSERT_TRUE(Crash(L"long-run"));
    const Report report = TheReport();
    EXPECT_EQ(report.runTime, L"3 days, 4 hours, 5 minutes, 6 seconds, 789 milliseconds");
    EXPECT_EQ(report.startTime, Local({2024, 6, 0, 27, 5, 0, 0, 0}));
    EXPECT_EQ(report.endTime, Local({2024, 6, 0, 30, 9, 5, 7, 0}));
    EXPECT_EQ(report.errorTime, report.endTime);
    const std::wstring name = Local({2024, 6, 0, 30, 9, 5, 6, 0}, L"%02d%02d%d_%02d%02d%02d");
    EXPECT_EQ(report.baseName, L"crash_child_" + name) << "in steps of two seconds";
}

TEST_F(CrashReport, TellsAMillisecondInParts)
{
    ASSERT_TRUE(Crash(L"millisecond-run"));
    EXPECT_EQ(TheReport().runTime, L"0 days, 0 hours, 0 minutes, 0 seconds, 1 milliseconds");
}

TEST_F(CrashReport, TellsLessThanAMillisecondInThePlatformsUnits)
{
    ASSERT_TRUE(Crash(L"short-run"));
    EXPECT_EQ(TheReport().runTime, L"9999 10ths of a \u00B5s");
}

TEST_F(CrashReport, TellsNoRunTimeWhenTheClockWasSetBack)
{
    ASSERT_TRUE(Crash(L"clock-set-back"));
    EXPECT_EQ(TheReport().runTime, L"0 10ths of a \u00B5s");
}

TEST_F(CrashReport, TellsTheSystem)
{
    ASSERT_TRUE(Crash(L"old-system", L"--bare yes"));
    EXPECT_EQ(TheReport().system, L"Windows XP");
    EXPECT_EQ(TheReport().systemVersion, L"5.1.2600");
}

TEST_F(CrashReport, SaysThatTheUserIsUnknown)
{
    ASSERT_TRUE(Crash(L"unknown-user"));
    EXPECT_EQ(TheReport().user, L"Unknown");
}

TEST_F(CrashReport, EndsTheStackWhereItCannotBeRead)
{
    ASSERT_TRUE(Crash(L"unreadable-stack"));
    const Report report = TheReport();
    EXPECT_EQ(report.stack.size(), 4u) << "64 bytes can be read";
    EXPECT_TRUE(report.isStackCut);
    EXPECT_FALSE(report.modules.empty()) << "the rest follows";
}

TEST_F(CrashReport, IsWrittenForACrashOfAnotherThread)
{
    ASSERT_TRUE(Crash(L"write", L"--thread 1048576"));
    EXPECT_TRUE(IsReporterStarted());
    ExpectTrue(TheReport(), TheFacts().exceptions[0]);
}

TEST_F(CrashReport, ListsHundredsOfModules)
{
    const std::wstring folder = App(L"modules");
    CreateDirectoryW(folder.c_str(), nullptr);
    for (int i = 0; i < 300; ++i)
        CopyFileW((test_support::BesideProgram(L"blank.dll")).c_str(),
                  (folder + L"\\m" + std::to_wstring(i) + L".dll").c_str(), TRUE);
    ASSERT_TRUE(Crash(L"read", L"--modules \"" + folder + L"\""));
    ExpectTrue(TheReport(), TheFacts().exceptions[0]);
    EXPECT_GT(TheReport().modules.size(), 300u);
}

TEST_F(CrashReport, KeepsItsLinesWholeForLongPaths)
{
    std::wstring folder = L"\\\\?\\" + App(L"");
    folder.pop_back();
    for (int i = 0; i < 5; ++i) {
        folder += L"\\" + std::wstring(200, static_cast<wchar_t>(L'a' + i));
        ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    }
    ASSERT_TRUE(CopyFileW((test_support::BesideProgram(L"blank.dll")).c_str(),
                          (folder + L"\\module.dll").c_str(), TRUE));
    ASSERT_TRUE(Crash(L"read", L"--modules \"" + folder + L"\""));
    bool isListed = false;
    for (const Module& module : TheReport().modules)
        isListed |= module.path.find(std::wstring(200, L'b')) != std::wstring::npos;
    for (DeleteFileW((folder + L"\\module.dll").c_str()); RemoveDirectoryW(folder.c_str());)
        folder.resize(folder.rfind(L'\\'));
    if (!isListed) GTEST_SKIP() << "the platform does not load a library from such a path";
}

TEST_F(CrashReport, TellsTheReporterWhatToCollect)
{
    ASSERT_TRUE(Crash(L"read"));
    ASSERT_TRUE(IsReporterStarted());
    const std::wstring base = Log(TheReport().baseName);
    EXPECT_EQ(ReporterSetting(L"RegistryToAdd", L"Registry001"),
              L"HKCU\\Software\\Kestrow,Registry Tree");
    EXPECT_EQ(ReporterSetting(L"RegistryToAdd", L"Registry002"),
              L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Exam,Version Tree");
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File001"), base + L".dmp,Crash Dump,DMP File");
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File002"), base + L".txt,Crash Log,Text Document");
    EXPECT_EQ(ReporterSetting(L"FilesToAdd", L"File004"), L"(none)") << "there is no action log";
    EXPECT_EQ(ReporterSetting(L"ZipFileName", L"Zip"), base + L".zip");
    EXPECT_EQ(ReporterCommand(), L"  \"crash_child.exe\"");
}

} // namespace
} // namespace crash_test
