// The crash reporter: what it packs of the crash handler's files.
#include "CrashFixture.h"

#include <base/InFolder.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <Utils_Statics/ZipExtract.h>

#include <set>

namespace crash_test {
namespace {

using test_support::ReadFile;
using test_support::WriteFile;

class CrashReporter : public CrashTest
{
protected:
    std::wstring Reporter() const { return App(L"reporter.exe"); }

    // Runs this project's reporter beside the crashed program, without a window.
    bool Report()
    {
        CopyFileW(test_support::BesideProgram(L"XCrashReport.exe").c_str(), Reporter().c_str(),
                  TRUE);
        return Run(L"/quiet \"crash_child.exe\"", Reporter()) && m_exitCode == 0;
    }

    // Extracts an archive and gives the names of its files.
    std::set<std::wstring> Unpack(const std::wstring& archive)
    {
        const std::wstring folder = App(L"unpacked");
        CreateDirectoryW(folder.c_str(), nullptr);
        const base::InFolder inFolder(folder);
        ZipExtract zip;
        EXPECT_TRUE(zip.Open(archive.c_str()));
        while (zip.ExtractNext(nullptr)) {
        }
        std::set<std::wstring> names;
        for (const std::wstring& path : FilesOf(folder, L""))
            if (!path.ends_with(L".")) names.insert(path.substr(folder.size() + 1));
        return names;
    }
};

TEST_F(CrashReporter, PacksReportDumpActionLogAndRegistry)
{
    WriteFile(Log(L"actions.xml"), "<actions/>");
    SetText(L"System\\Path", L"CrashTest", L"a \"text\" with \\");
    ASSERT_TRUE(Crash(L"read"));
    const std::wstring base = TheReport().baseName;
    ASSERT_TRUE(Report());
    EXPECT_EQ(
        Unpack(Log(base + L".zip")),
        (std::set<std::wstring>{base + L".txt", base + L".dmp", L"actions.xml", L"registry1.reg"}));
    EXPECT_EQ(ReadFile(App(L"unpacked\\" + base + L".txt")), ReadFile(Log(base + L".txt")));
    const std::string registry = ReadFile(App(L"unpacked\\registry1.reg"));
    const std::wstring line = L"\"CrashTest\"=\"a \\\"text\\\" with \\\\\"\r\n";
    EXPECT_NE(
        registry.find(std::string(reinterpret_cast<const char*>(line.data()), line.size() * 2)),
        std::string::npos);
    EXPECT_FALSE(test_support::FileExists(Log(L"registry1.reg"))) << "only in the archive";
}

TEST_F(CrashReporter, FailsWithoutSettings)
{
    EXPECT_FALSE(Report());
    EXPECT_EQ(m_exitCode, 1u);
}

TEST_F(CrashReporter, PacksWhatIsThere)
{
    ASSERT_TRUE(Crash(L"read"));
    const std::wstring base = TheReport().baseName;
    DeleteFileW(Log(base + L".dmp").c_str());
    ASSERT_TRUE(Report());
    EXPECT_TRUE(Unpack(Log(base + L".zip")).contains(base + L".txt"));
}

} // namespace
} // namespace crash_test
