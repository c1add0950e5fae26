#include <Utils_Statics/utilsExam.h>
#include <test_support/Files.h>
#include <test_support/InDirectory.h>
#include <test_support/LogCapture.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <vector>

using test_support::fileExists;
using test_support::InDirectory;
using test_support::LogCapture;
using test_support::TemporaryFolder;
using test_support::writeFile;

namespace {

// `folder` with one more component, so that the whole has `length` characters.
std::wstring PathOfLength(const std::wstring& folder, std::size_t length)
{
    return folder + L"\\" + std::wstring(length - folder.size() - 1, L'd');
}

TEST(CreateDirectory, CreatesTheMissingParents)
{
    const TemporaryFolder folder;
    std::wstring path = folder / L"a\\\\b\\c";
    for (wchar_t& character : path)
        if (character == L'\\') character = L'/';
    EXPECT_EQ(utilsExam::CreateDirectoryW(path.c_str()), 1);
    EXPECT_TRUE(fileExists(folder / L"a\\b\\c"));
}

TEST(CreateDirectory, FailsForAFolderThatExists)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"a").c_str()), 1);
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"a").c_str()), 0);
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"a\\").c_str()), 0);
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"C:\\"), 0);
}

TEST(CreateDirectory, FailsWithoutAPath)
{
    EXPECT_EQ(utilsExam::CreateDirectoryW(nullptr), 0);
    EXPECT_EQ(utilsExam::CreateDirectoryW(L""), 0);
}

TEST(CreateDirectory, IsReachedByTheNameWithoutSuffixToo)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectory((folder / L"a").c_str()), 1);
    utilsExam::RemoveDirectory((folder / L"a").c_str(), 1);
    EXPECT_FALSE(fileExists(folder / L"a"));
}

TEST(CreateDirectory, CollapsesRunsOfUpToEightBackslashes)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"a\\\\\\\\\\\\\\\\b\\\\\\\\").c_str()), 1);
    EXPECT_TRUE(fileExists(folder / L"a\\b"));
}

TEST(CreateDirectory, FailsWhereAFileIsInTheWay)
{
    const TemporaryFolder folder;
    writeFile(folder / L"file", "x");
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"file").c_str()), 0);
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"file\\below").c_str()), 0);
}

TEST(CreateDirectory, NeverCreatesTheFirstFolderOfARelativePathByItself)
{
    const TemporaryFolder folder;
    const InDirectory inside(folder.path());
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p\\q"), 0);
    EXPECT_FALSE(fileExists(L"p"));
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p"), 1);
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p\\q\\r"), 1);
    EXPECT_TRUE(fileExists(folder / L"p\\q\\r"));
}

TEST(CreateDirectory, LeavesTheCurrentDirectoryAsItIsOnEveryWayOut)
{
    const TemporaryFolder folder;
    const InDirectory inside(folder.path());
    const std::wstring before = test_support::currentDirectory();
    for (const wchar_t* const path :
         {L"new", L"new", L"none\\below", L"new\\a\\b\\c", L"Q:\\no\\such\\drive", L"", L"?*"}) {
        utilsExam::CreateDirectoryW(path);
        EXPECT_EQ(test_support::currentDirectory(), before);
    }
    utilsExam::CreateDirectoryW(std::wstring(400, L'x').c_str());
    EXPECT_EQ(test_support::currentDirectory(), before);
}

TEST(CreateDirectory, TakesNamesBeyondTheBasicPlane)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"\U0001F600\\\u00e4\u4e2d").c_str()), 1);
    EXPECT_TRUE(fileExists(folder / L"\U0001F600\\\u00e4\u4e2d"));
}

TEST(CreateDirectory, RefusesPathsThatDoNotFitABuffer)
{
    const TemporaryFolder folder;
    const std::wstring deep = folder / std::wstring(100, L'p');
    ASSERT_EQ(utilsExam::CreateDirectoryW(deep.c_str()), 1);
    for (const std::size_t length : {259u, 260u, 300u}) {
        const std::wstring path = PathOfLength(deep, length);
        const int created = utilsExam::CreateDirectoryW(path.c_str());
        EXPECT_EQ(created != 0, fileExists(path)) << length;
        EXPECT_TRUE(length < 260 || created == 0) << length;
        ::RemoveDirectoryW(path.c_str());
    }
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / (L"new\\" + std::wstring(300, L'x'))).c_str()), 0);
    EXPECT_FALSE(fileExists(folder / L"new"));
}

TEST(RemoveDirectory, DeletesATreeWithReadOnlyAndHiddenFiles)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"tree\\a\\b").c_str());
    writeFile(folder / L"tree\\plain", "x");
    writeFile(folder / L"tree\\a\\readonly", "x");
    writeFile(folder / L"tree\\a\\b\\hidden\U0001F600", "x");
    SetFileAttributesW((folder / L"tree\\a\\readonly").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW((folder / L"tree\\a\\b\\hidden\U0001F600").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW((folder / L"tree\\a").c_str(), FILE_ATTRIBUTE_READONLY);
    LogCapture log;
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_FALSE(fileExists(folder / L"tree"));
    EXPECT_TRUE(log.take().empty());
}

TEST(RemoveDirectory, TakesTheThreeSpellingsOfAPath)
{
    const TemporaryFolder folder;
    for (const wchar_t* const spelling : {L"tree\\", L"/tree//", L"\\\\tree\\\\\\\\"}) {
        utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
        utilsExam::RemoveDirectoryW((folder / spelling).c_str(), 1);
        EXPECT_FALSE(fileExists(folder / L"tree")) << testing::PrintToString(spelling);
    }
}

TEST(RemoveDirectory, TakesARelativePathFromTheCurrentDirectory)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
    const InDirectory inside(folder.path());
    const std::wstring before = test_support::currentDirectory();
    utilsExam::RemoveDirectoryW(L"tree", 0);
    EXPECT_FALSE(fileExists(folder / L"tree"));
    EXPECT_EQ(test_support::currentDirectory(), before);
}

TEST(RemoveDirectory, DoesNothingWhereNothingIs)
{
    const TemporaryFolder folder;
    LogCapture log;
    utilsExam::RemoveDirectoryW((folder / L"none").c_str(), 1);
    utilsExam::RemoveDirectoryW(L"no such folder", 0);
    utilsExam::RemoveDirectoryW(L"", 1);
    utilsExam::RemoveDirectoryW(nullptr, 1);
    utilsExam::RemoveDirectoryW(nullptr, 0);
    EXPECT_TRUE(log.take().empty());
    EXPECT_TRUE(fileExists(folder.path()));
}

void ExpectErrorCode(LogCapture& log, int line)
{
    const auto messages = log.take();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].source, "Utils_Statics/Utils_Statics");
    EXPECT_EQ(messages[0].line, line);
    EXPECT_EQ(messages[0].level, 1);
    EXPECT_FALSE(messages[0].text.empty());
    EXPECT_EQ(messages[0].text.find_first_not_of(L"-0123456789"), std::wstring::npos);
}

TEST(RemoveDirectory, LogsWhenAFileOfTheTreeIsHeldOpen)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
    writeFile(folder / L"tree\\a\\held", "x");
    const HANDLE held =
        CreateFileW((folder / L"tree\\a\\held").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    LogCapture log;
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_TRUE(fileExists(folder / L"tree\\a\\held"));
    ExpectErrorCode(log, 521);
    CloseHandle(held);
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_FALSE(fileExists(folder / L"tree"));
    EXPECT_TRUE(log.take().empty());
}

TEST(RemoveDirectory, DeletesNothingWhenThePathDoesNotFitTheShellsBuffer)
{
    const TemporaryFolder folder;
    const std::wstring deep = folder / std::wstring(150, L'p');
    ASSERT_TRUE(::CreateDirectoryW(deep.c_str(), nullptr));
    for (const std::size_t length : {259u, 260u, 300u}) {
        const std::wstring path = PathOfLength(deep, length);
        const bool made = ::CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr) != FALSE;
        utilsExam::RemoveDirectoryW(path.c_str(), 1);
        if (made) {
            EXPECT_TRUE(fileExists(L"\\\\?\\" + path)) << length;
            ::RemoveDirectoryW((L"\\\\?\\" + path).c_str());
        }
        EXPECT_TRUE(fileExists(deep));
    }
}

TEST(GetDirectorySize, AddsTheFilesOfTheWholeTree)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"a\\b").c_str());
    writeFile(folder / L"1", std::string(10, 'x'));
    writeFile(folder / L"a\\2", std::string(200, 'x'));
    writeFile(folder / L"a\\b\\\U0001F600", std::string(3000, 'x'));
    writeFile(folder / L"empty", "");
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.path().c_str()), 3210);
}

TEST(GetDirectorySize, IsZeroWhereNothingCanBeEnumerated)
{
    const TemporaryFolder folder;
    writeFile(folder / L"file", "x");
    EXPECT_EQ(utilsExam::GetDirectorySize((folder / L"none").c_str()), 0);
    EXPECT_EQ(utilsExam::GetDirectorySize((folder / L"file").c_str()), 0);
    EXPECT_EQ(utilsExam::GetDirectorySize(PathOfLength(folder.path(), 300).c_str()), 0);
}

TEST(GetDirectorySize, CountsHiddenFilesButNoHiddenFolders)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"hidden").c_str());
    writeFile(folder / L"hidden\\1", std::string(10, 'x'));
    writeFile(folder / L"2", std::string(200, 'x'));
    SetFileAttributesW((folder / L"2").c_str(), FILE_ATTRIBUTE_HIDDEN);
    ASSERT_TRUE(SetFileAttributesW((folder / L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
    if ((GetFileAttributesW((folder / L"hidden").c_str()) & FILE_ATTRIBUTE_HIDDEN) == 0)
        GTEST_SKIP() << "this file system keeps no hidden attribute";
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.path().c_str()), 200);
}

TEST(GetDirectorySize, TakesSizesBeyondFourGigabytes)
{
    const TemporaryFolder folder;
    const HANDLE file = CreateFileW((folder / L"large").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    LARGE_INTEGER size = {};
    size.QuadPart = 5'000'000'000;
    const bool sized = SetFilePointerEx(file, size, nullptr, FILE_BEGIN) && SetEndOfFile(file);
    CloseHandle(file);
    if (!sized) GTEST_SKIP() << "this file system keeps no file of 5 GB";
    EXPECT_EQ(utilsExam::GetDirectorySize(folder.path().c_str()), 5'000'000'000);
}

// Starts one of the host's own tools on a folder, where the platform runs on a host that has them. The tool is no
// process of the platform's, so its end shows in what it did.
bool StartHostTool(const std::string& tool, const std::vector<std::wstring>& paths)
{
    const auto unixName = reinterpret_cast<char*(CDECL*)(const wchar_t*)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
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
    return CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process) != FALSE;
}

bool WaitUntil(bool exists, const std::wstring& path)
{
    for (int tries = 0; tries < 500 && fileExists(path) != exists; ++tries)
        Sleep(10);
    return fileExists(path) == exists;
}

// A link to a folder, made and removed by the platform's functions or, where these do nothing, by the host's tools.
class FolderLink
{
public:
    FolderLink(const std::wstring& link, const std::wstring& target) : m_link(link)
    {
        CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
        if (!fileExists(link) && StartHostTool("ln -s", {target, link})) WaitUntil(true, link);
    }
    ~FolderLink()
    {
        ::RemoveDirectoryW(m_link.c_str());
        if (fileExists(m_link) && StartHostTool("rm", {m_link})) WaitUntil(false, m_link);
    }
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

    bool exists() const { return fileExists(m_link); }

private:
    std::wstring m_link;
};

TEST(GetDirectorySize, EndsInALoopOfLinks)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"a\\b").c_str());
    writeFile(folder / L"a\\file", std::string(100, 'x'));
    const FolderLink link(folder / L"a\\b\\loop", folder / L"a");
    if (!link.exists()) GTEST_SKIP() << "folder links cannot be made here";
    const DWORD attributes = GetFileAttributesW((folder / L"a\\b\\loop").c_str());
    const std::int64_t size = utilsExam::GetDirectorySize(folder.path().c_str());
    const bool marked = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    EXPECT_TRUE(marked ? size == 100 : size >= 100) << size; // linked folders are skipped where they are known as such
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
                writeFile(inner + L"\\" + std::to_wstring(file), std::string(10, 'x'));
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
        // A folder that is just being walked can keep its parents from being removed.
        remover.join();
        utilsExam::RemoveDirectoryW(tree.c_str(), 1);
        EXPECT_EQ(utilsExam::GetDirectorySize(tree.c_str()), 0);
        EXPECT_FALSE(fileExists(tree));
    }
}

TEST(GetDirectorySize, AgreesWithRandomTrees)
{
    std::mt19937 random(8);
    for (int round = 0; round < 10; ++round) {
        const TemporaryFolder folder;
        std::vector<std::wstring> folders{folder.path()};
        std::int64_t expected = 0;
        for (int entry = 0; entry < 30; ++entry) {
            const std::wstring path = folders[random() % folders.size()] + L"\\" + std::to_wstring(entry);
            if (path.size() > 200) continue;
            if (random() % 3 == 0) {
                utilsExam::CreateDirectoryW(path.c_str());
                folders.push_back(path);
                continue;
            }
            const std::size_t size = random() % 5000;
            writeFile(path, std::string(size, 'x'));
            expected += static_cast<std::int64_t>(size);
        }
        EXPECT_EQ(utilsExam::GetDirectorySize(folder.path().c_str()), expected);
    }
}

class ShellOperationTest : public testing::Test
{
protected:
    int run(unsigned int operation, const std::wstring& from, const wchar_t* to, int silent = 1,
            unsigned short flags = 0)
    {
        return utilsExam::SHFileOperationW(operation, from.c_str(), to, silent, flags, nullptr, nullptr, nullptr);
    }

    TemporaryFolder folder;
    LogCapture log;
};

TEST_F(ShellOperationTest, CopiesAFolder)
{
    utilsExam::CreateDirectoryW((folder / L"from\\a").c_str());
    writeFile(folder / L"from\\a\\file", "content");
    EXPECT_EQ(run(FO_COPY, folder / L"from\\", (folder / L"//to").c_str()), 1);
    EXPECT_EQ(test_support::readFile(folder / L"to\\a\\file"), "content");
    EXPECT_TRUE(fileExists(folder / L"from\\a\\file"));
    EXPECT_TRUE(log.take().empty());
}

TEST_F(ShellOperationTest, MovesAndRenamesFiles)
{
    writeFile(folder / L"one", "1");
    utilsExam::CreateDirectoryW((folder / L"sub").c_str());
    EXPECT_EQ(run(FO_MOVE, folder / L"one", (folder / L"sub\\two").c_str()), 1);
    EXPECT_EQ(test_support::readFile(folder / L"sub\\two"), "1");
    EXPECT_EQ(run(FO_RENAME, folder / L"sub\\two", (folder / L"sub\\three").c_str()), 1);
    EXPECT_TRUE(fileExists(folder / L"sub\\three"));
    EXPECT_FALSE(fileExists(folder / L"sub\\two"));
}

TEST_F(ShellOperationTest, DeletesWithoutADestination)
{
    utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
    EXPECT_EQ(run(FO_DELETE, folder / L"tree", nullptr), 1);
    EXPECT_FALSE(fileExists(folder / L"tree"));
}

TEST_F(ShellOperationTest, ShowsProgressWhenNotSilent)
{
    writeFile(folder / L"one", "1");
    const unsigned short noQuestions = FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_NOCONFIRMMKDIR;
    EXPECT_EQ(run(FO_COPY, folder / L"one", (folder / L"two").c_str(), 0, noQuestions), 1);
    EXPECT_TRUE(fileExists(folder / L"two"));
}

TEST_F(ShellOperationTest, LogsAFailure)
{
    EXPECT_EQ(run(FO_COPY, folder / L"none\\none", (folder / L"two").c_str()), 0);
    ExpectErrorCode(log, 581);
    EXPECT_EQ(run(99, folder.path(), nullptr), 0);
    ExpectErrorCode(log, 581);
}

TEST_F(ShellOperationTest, RefusesPathsThatDoNotFitTheBufferWithTwoZeros)
{
    writeFile(folder / L"one", "1");
    for (const std::size_t length : {259u, 260u, 300u}) {
        const std::wstring path = PathOfLength(folder.path(), length);
        EXPECT_EQ(run(FO_COPY, folder / L"one", path.c_str()), 0);
        ExpectErrorCode(log, 581);
        EXPECT_EQ(run(FO_DELETE, path, nullptr), 0);
        ExpectErrorCode(log, 581);
    }
    EXPECT_TRUE(fileExists(folder / L"one"));
}

TEST_F(ShellOperationTest, RefusesAnAbsentSource)
{
    const InDirectory inside(folder.path());
    writeFile(folder / L"one", "1");
    EXPECT_EQ(run(FO_DELETE, L"", nullptr), 0);
    EXPECT_EQ(utilsExam::SHFileOperationW(FO_DELETE, nullptr, nullptr, 1, 0, nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(fileExists(folder / L"one"));
}

TEST(GetFileData, DescribesTheFirstMatch)
{
    const TemporaryFolder folder;
    writeFile(folder / L"file\U0001F600.txt", std::string(77, 'x'));
    WIN32_FIND_DATAW data = {};
    EXPECT_EQ(utilsExam::GetFileData((folder / L"*.txt").c_str(), &data), 1);
    EXPECT_STREQ(data.cFileName, L"file\U0001F600.txt");
    EXPECT_EQ(data.nFileSizeLow, 77u);
    EXPECT_EQ(utilsExam::GetFileData((folder / L"none").c_str(), &data), 0);
    EXPECT_EQ(utilsExam::GetFileData(nullptr, &data), 0);
    EXPECT_EQ(utilsExam::GetFileData((folder / L"*.txt").c_str(), nullptr), 0);
}

TEST(CheckFileIsWritable, ClearsTheReadOnlyAttribute)
{
    const TemporaryFolder folder;
    const std::wstring path = folder / L"file";
    writeFile(path, "x");
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST(CheckFileIsWritable, AcceptsAFileThatDoesNotExist)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(utilsExam::CheckFileIsWritable((folder / L"none").c_str()));
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(std::wstring(300, L'x').c_str()));
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(nullptr));
}

bool MayBeExportedTo(const std::wstring& root)
{
    if (root == L"A:\\" || root == L"B:\\" || root == L"C:\\" || root == L"D:\\") return false;
    const UINT type = GetDriveTypeW(root.c_str());
    return type == DRIVE_REMOVABLE || type == DRIVE_FIXED || type == DRIVE_RAMDISK;
}

TEST(FindFirstRemovableDrive, IsTheFirstDriveOfAFittingType)
{
    std::wstring expected;
    const DWORD drives = GetLogicalDrives();
    for (int letter = 25; letter >= 0; --letter) {
        const std::wstring root = std::wstring(1, static_cast<wchar_t>(L'A' + letter)) + L":\\";
        if ((drives >> letter) & 1u && MayBeExportedTo(root)) expected = root;
    }
    CString drive(L"before");
    EXPECT_EQ(utilsExam::FindFirstRemovableDrive(drive), !expected.empty());
    EXPECT_EQ(drive, expected.empty() ? L"before" : expected.c_str());
}

TEST(BGRtoRGB, SwapsTheFirstAndThirdByteOfEachPixel)
{
    unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    utilsExam::BGRtoRGB(pixels, 2, 2);
    const unsigned char expected[] = {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 13};
    EXPECT_TRUE(std::equal(std::begin(pixels), std::end(pixels), expected));
}

TEST(BGRtoRGB, DoesNothingWithoutPixels)
{
    unsigned char pixels[] = {1, 2, 3};
    utilsExam::BGRtoRGB(pixels, 0, 5);
    utilsExam::BGRtoRGB(pixels, 5, 0);
    utilsExam::BGRtoRGB(pixels, -1, 5);
    utilsExam::BGRtoRGB(pixels, INT_MIN, INT_MAX);
    utilsExam::BGRtoRGB(pixels, -1, -1);
    utilsExam::BGRtoRGB(nullptr, 5, 5);
    if (sizeof(void*) == 4) {
        utilsExam::BGRtoRGB(pixels, 65536, 65536); // no such image fits the address space
        utilsExam::BGRtoRGB(pixels, INT_MAX, INT_MAX);
    }
    EXPECT_EQ(pixels[0], 1);
    EXPECT_EQ(pixels[2], 3);
}

} // namespace
