#include "test_support/Program.h"
#include "test_support/TemporaryFolder.h"

#include <base/FilePath.h>
#include <base/Handles.h>
#include <base/InFolder.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

// Six nested folders. The path of the innermost has some 400 characters.
class DeepFolder
{
public:
    explicit DeepFolder(const std::wstring& outer)
    {
        std::wstring path = L"\\\\?\\" + outer;
        for (int i = 0; i < 6; ++i) {
            path += L"\\" + std::wstring(60, L'd');
            CreateDirectoryW(path.c_str(), nullptr);
            m_paths.push_back(path);
        }
    }
    ~DeepFolder()
    {
        for (auto path = m_paths.rbegin(); path != m_paths.rend(); ++path)
            RemoveDirectoryW(path->c_str());
    }
    DeepFolder(const DeepFolder&) = delete;
    DeepFolder& operator=(const DeepFolder&) = delete;

    std::wstring operator/(const std::wstring& name) const { return m_paths.back() + L"\\" + name; }

private:
    std::vector<std::wstring> m_paths; // with the prefix for long paths
};

} // namespace

TEST(FullPath, NothingHasNone)
{
    EXPECT_EQ(base::FullPath(nullptr), L"");
    EXPECT_EQ(base::FullPath(L""), L"");
}

TEST(FullPath, RelativePathsLieInTheCurrentDirectory)
{
    const test_support::TemporaryFolder folder;
    const base::InFolder inside(folder.Path());
    EXPECT_EQ(base::FullPath(L"name"), folder / L"name");
    EXPECT_EQ(base::FullPath(L"a/../b\\.\\c"), folder / L"b\\c");
}

TEST(FullPath, AbsolutePathsStayWhatTheyAre)
{
    EXPECT_EQ(base::FullPath(L"C:\\folder\\name"), L"C:\\folder\\name");
    EXPECT_EQ(base::FullPath(L"C:\\folder\\"), L"C:\\folder\\");
    EXPECT_EQ(base::FullPath(L"\\\\?\\C:\\folder\\name"), L"\\\\?\\C:\\folder\\name");
}

TEST(FullPath, LongPathsAreWhole)
{
    std::wstring path = L"C:";
    for (int i = 0; i < 500; ++i)
        path += L"\\twenty characters !!";
    EXPECT_GT(path.size(), 10000u);
    EXPECT_EQ(base::FullPath(path.c_str()), path);
}

TEST(ModuleFile, IsTheRunningProgramForNoModule)
{
    const std::wstring file = base::ModuleFile(nullptr);
    EXPECT_TRUE(file.ends_with(L"\\base_test.exe"));
    EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(base::ModuleFile(GetModuleHandleW(nullptr)), file);
}

TEST(ModuleFile, IsEmptyForWhatIsNoModule)
{
    EXPECT_EQ(base::ModuleFile(reinterpret_cast<HMODULE>(16)), L"");
}

TEST(ModuleFile, IsWholeForALongPath)
{
    const test_support::TemporaryFolder folder;
    const DeepFolder deep(folder.Path());
    const std::wstring copy = deep / L"base_module.dll";
    const std::wstring original = test_support::BesideProgram(L"base_module.dll");
    ASSERT_TRUE(CopyFileW(original.c_str(), copy.c_str(), TRUE));
    base::Module module(LoadLibraryW(copy.c_str()));
    const bool loaded = static_cast<bool>(module);
    const std::wstring file = base::ModuleFile(module.get());
    module.reset();
    DeleteFileW(copy.c_str());
    if (!loaded) GTEST_SKIP() << "the platform loads no module from a path of 400 characters";
    EXPECT_GT(file.size(), static_cast<std::size_t>(MAX_PATH));
    EXPECT_TRUE(file.ends_with(copy.substr(4))) << "with or without the prefix for long paths";
}
