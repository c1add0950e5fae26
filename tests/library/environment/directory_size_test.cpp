// utilsExam::GetDirectorySize.
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <vector>

using test_support::FileExists;
using test_support::TemporaryFolder;
using test_support::WriteFile;

namespace {

TEST(GetDirectorySize, AddsTheFilesOfTheWholeTree)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"a\\b").c_str());
    WriteFile(folder / L"1", std::string(10, 'x'));
    WriteFile(folder / L"a\\2", std::string(200, 'x'));
    WriteFile(folder / L"a\\b\\\U0001F600", std::string(3000, 'x'));
    WriteFile(folder / L"empty", "");
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.Path().c_str()), 3210);
}

TEST(GetDirectorySize, IsZeroWhereNothingCanBeEnumerated)
{
    const TemporaryFolder folder;
    WriteFile(folder / L"file", "x");
    EXPECT_EQ(utilsExam::GetDirectorySize((folder / L"none").c_str()), 0);
    EXPECT_EQ(utilsExam::GetDirectorySize((folder / L"file").c_str()), 0);
    EXPECT_EQ(utilsExam::GetDirectorySize((folder / std::wstring(300, L'd')).c_str()), 0);
}

TEST(GetDirectorySize, CountsHiddenFilesButNoHiddenFolders)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"hidden").c_str());
    WriteFile(folder / L"hidden\\1", std::string(10, 'x'));
    WriteFile(folder / L"2", std::string(200, 'x'));
    SetFileAttributesW((folder / L"2").c_str(), FILE_ATTRIBUTE_HIDDEN);
    ASSERT_TRUE(SetFileAttributesW((folder / L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
    if ((GetFileAttributesW((folder / L"hidden").c_str()) & FILE_ATTRIBUTE_HIDDEN) == 0)
        GTEST_SKIP() << "this file system keeps no hidden attribute";
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.Path().c_str()), 200);
}

TEST(GetDirectorySize, TakesSizesBeyondFourGigabytes)
{
    const TemporaryFolder folder;
    base::File file(CreateFileW((folder / L"large").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                0, nullptr));
    ASSERT_TRUE(file);
    LARGE_INTEGER size = {};
    size.QuadPart = 5'000'000'000;
    const bool sized =
        SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(file.get());
    file.reset();
    if (!sized) GTEST_SKIP() << "this file system keeps no file of 5 GB";
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.Path().c_str()), 5'000'000'000);
}

// The sum by definition, folder by folder.
std::int64_t PlainSize(const std::wstring& folder)
{
    WIN32_FIND_DATAW entry;
    const HANDLE find = FindFirstFileW((folder + L"\\*.*").c_str(), &entry);
    if (find == INVALID_HANDLE_VALUE) return 0;
    std::int64_t total = 0;
    do {
        const std::wstring name = entry.cFileName;
        const DWORD attributes = entry.dwFileAttributes;
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
            total +=
                static_cast<std::int64_t>(entry.nFileSizeHigh) * 0x100000000 + entry.nFileSizeLow;
        else if (!(attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_REPARSE_POINT)) &&
                 name != L"." && name != L"..")
            total += PlainSize(folder + L"\\" + name);
    } while (FindNextFileW(find, &entry));
    FindClose(find);
    return total;
}

// Nested folders beyond the limit of the usual path functions, with a file of one byte in each.
class DeepTree
{
public:
    DeepTree(const std::wstring& top, int depth)
    {
        std::wstring path = L"\\\\?\\" + top;
        while (depth-- > 0) {
            path += L"\\folder";
            if (!::CreateDirectoryW(path.c_str(), nullptr)) return;
            m_folders.push_back(path);
            WriteFile(path + L"\\f", "x");
        }
    }
    ~DeepTree()
    {
        for (; !m_folders.empty(); m_folders.pop_back()) {
            DeleteFileW((m_folders.back() + L"\\f").c_str());
            ::RemoveDirectoryW(m_folders.back().c_str());
        }
    }
    DeepTree(const DeepTree&) = delete;
    DeepTree& operator=(const DeepTree&) = delete;

    std::int64_t Depth() const { return static_cast<std::int64_t>(m_folders.size()); }

private:
    std::vector<std::wstring> m_folders;
};

TEST(GetDirectorySize, CountsLongPathsWhereThePlatformEnumeratesThem)
{
    const TemporaryFolder folder;
    const DeepTree tree(folder.Path(), 60); // over 400 characters
    if (tree.Depth() < 60) GTEST_SKIP() << "this file system holds no such depth";
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.Path().c_str()), PlainSize(folder.Path()));
    EXPECT_EQ(utilsExam::GetDirectorySize((L"\\\\?\\" + folder.Path()).c_str()), tree.Depth());
}

// Starts one of the host's own tools on a folder, if the platform runs on a host that has them. The
// tool is not a process of the platform, so only its effect shows its end.
bool StartHostTool(const std::string& tool, const std::vector<std::wstring>& paths)
{
    const auto unixName = reinterpret_cast<char*(CDECL*)(const wchar_t*)>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (!unixName) return false;
    std::string arguments = tool;
    for (const std::wstring& path : paths) {
        char* const name = unixName(path.c_str());
        if (!name) return false;
        arguments += " \"" + std::string(name) + "\"";
        HeapFree(GetProcessHeap(), 0, name);
    }
    std::wstring command(arguments.begin(), arguments.end());
    const std::wstring program = L"\\\\?\\unix\\bin\\" + command.substr(0, command.find(L' '));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    return CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          nullptr, &startup, &process) != FALSE;
}

bool WaitUntil(bool exists, const std::wstring& path)
{
    for (int tries = 0; tries < 500 && FileExists(path) != exists; ++tries)
        Sleep(10);
    return FileExists(path) == exists;
}

// A link to a folder. The platform's functions make and remove it or, where these do nothing, the
// host's tools do.
class FolderLink
{
public:
    FolderLink(const std::wstring& link, const std::wstring& target) : m_link(link)
    {
        CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
        if (!FileExists(link) && StartHostTool("ln -s", {target, link})) WaitUntil(true, link);
    }
    ~FolderLink()
    {
        ::RemoveDirectoryW(m_link.c_str());
        if (FileExists(m_link) && StartHostTool("rm", {m_link})) WaitUntil(false, m_link);
    }
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

    bool Exists() const { return FileExists(m_link); }

private:
    std::wstring m_link;
};

TEST(GetDirectorySize, EndsInALoopOfLinks)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"a\\b").c_str());
    WriteFile(folder / L"a\\file", std::string(100, 'x'));
    const FolderLink link(folder / L"a\\b\\loop", folder / L"a");
    if (!link.Exists()) GTEST_SKIP() << "folder links cannot be made here";
    const DWORD attributes = GetFileAttributesW((folder / L"a\\b\\loop").c_str());
    const std::int64_t size = utilsExam::GetDirectorySize(folder.Path().c_str());
    const bool marked = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    EXPECT_TRUE(marked ? size == 100 : size >= 100)
        << size; // linked folders are skipped when they are known as such
}

TEST(GetDirectorySize, SurvivesAFolderThatIsDeletedWhileItIsWalked)
{
    constexpr std::int64_t whole = 6 * 6 * 10;
    for (int round = 0; round < 5; ++round) {
        const TemporaryFolder folder;
        for (int outer = 0; outer < 6; ++outer) {
            const std::wstring inner = folder / (L"tree\\" + std::to_wstring(outer) + L"\\deeper");
            utilsExam::CreateDirectoryW(inner.c_str());
            for (int file = 0; file < 6; ++file)
                WriteFile(inner + L"\\" + std::to_wstring(file), std::string(10, 'x'));
        }
        const std::wstring tree = folder / L"tree";
        ASSERT_EQ(utilsExam::GetDirectorySize(tree.c_str()), whole);
        std::atomic<bool> removed = false;
        std::jthread remover([&] {
            utilsExam::RemoveDirectoryW(tree.c_str(), 1);
            removed = true;
        });
        while (!removed) {
            const std::int64_t size = utilsExam::GetDirectorySize(tree.c_str());
            ASSERT_GE(size, 0);
            ASSERT_LE(size, whole);
        }
        // A folder that is being walked can keep its parents from being removed.
        remover.join();
        utilsExam::RemoveDirectoryW(tree.c_str(), 1);
        EXPECT_EQ(utilsExam::GetDirectorySize(tree.c_str()), 0);
        EXPECT_FALSE(FileExists(tree));
    }
}

TEST(GetDirectorySize, AgreesWithRandomTrees)
{
    std::mt19937 random(8);
    for (int round = 0; round < 10; ++round) {
        const TemporaryFolder folder;
        std::vector<std::wstring> folders{folder.Path()};
        std::int64_t expected = 0;
        for (int entry = 0; entry < 30; ++entry) {
            const std::wstring path =
                folders[random() % folders.size()] + L"\\" + std::to_wstring(entry);
            if (path.size() > 200) continue;
            if (random() % 3 == 0) {
                utilsExam::CreateDirectoryW(path.c_str());
                folders.push_back(path);
                continue;
            }
            const std::size_t size = random() % 5000;
            WriteFile(path, std::string(size, 'x'));
            expected += static_cast<std::int64_t>(size);
        }
        EXPECT_EQ(utilsExam::GetDirectorySize(folder.Path().c_str()), expected);
    }
}

} // namespace
