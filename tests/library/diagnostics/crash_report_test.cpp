// The crash report, the dump, the settings and the reporter, from children that really crash.
#include "crash_fixture.h"

#include <Utils_Statics/CMiniVersion.h>
#include <test_support/Files.h>
#include <test_support/Program.h>

namespace crash_test {
namespace {

using CrashReport = CrashTest;

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
    const auto value = [&](const wchar_t* section, const wchar_t* name) {
        wchar_t text[1024] = {};
        GetPrivateProfileStringW(section, name, L"(none)", text, 1024,
                                 App(L"crashreport.ini").c_str());
        return std::wstring(text);
    };
    EXPECT_EQ(value(L"RegistryToAdd", L"Registry001"), L"HKCU\\Software\\Kestrow,Registry Tree");
    EXPECT_EQ(value(L"RegistryToAdd", L"Registry002"),
              L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Exam,Version Tree");
    EXPECT_EQ(value(L"FilesToAdd", L"File001"), base + L".dmp,Crash Dump,DMP File");
    EXPECT_EQ(value(L"FilesToAdd", L"File002"), base + L".txt,Crash Log,Text Document");
    EXPECT_EQ(value(L"FilesToAdd", L"File004"), L"(none)") << "there is no action log";
    EXPECT_EQ(value(L"ZipFileName", L"Zip"), base + L".zip");
    EXPECT_EQ(ReporterCommand(), L"  \"crash_child.exe\"");
}

} // namespace
} // namespace crash_test
