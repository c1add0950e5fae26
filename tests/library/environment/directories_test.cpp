// utilsExam: creating, deleting and copying directories.
#include <base/Handles.h>
#include <base/InFolder.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/LogCapture.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>
#include <shellapi.h>
#include <shlwapi.h>

#include <cwchar>
#include <string>

using base::InFolder;
using test_support::FileExists;
using test_support::ImportHook;
using test_support::LogCapture;
using test_support::TemporaryFolder;
using test_support::WriteFile;

namespace {

// `folder` with one more component. The whole path has `length` characters.
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
    EXPECT_TRUE(FileExists(folder / L"a\\b\\c"));
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
    EXPECT_FALSE(FileExists(folder / L"a"));
}

TEST(CreateDirectory, CollapsesRunsOfUpToEightBackslashes)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"a\\\\\\\\\\\\\\\\b\\\\\\\\").c_str()), 1);
    EXPECT_TRUE(FileExists(folder / L"a\\b"));
}

TEST(CreateDirectory, FailsWhereAFileIsInTheWay)
{
    const TemporaryFolder folder;
    WriteFile(folder / L"file", "x");
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"file").c_str()), 0);
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"file\\below").c_str()), 0);
}

TEST(CreateDirectory, NeverCreatesTheFirstFolderOfARelativePathByItself)
{
    const TemporaryFolder folder;
    const InFolder inside(folder.Path());
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p\\q"), 0);
    EXPECT_FALSE(FileExists(L"p"));
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p"), 1);
    EXPECT_EQ(utilsExam::CreateDirectoryW(L"p\\q\\r"), 1);
    EXPECT_TRUE(FileExists(folder / L"p\\q\\r"));
}

// Stands for a run-time library that leaves the process in another directory after every attempt.
int __cdecl MakeNothingAndGoElsewhere(const wchar_t*)
{
    SetCurrentDirectoryW(L"C:\\");
    return -1;
}

TEST(CreateDirectory, LeavesTheCurrentDirectoryAsItIsOnEveryWayOut)
{
    const TemporaryFolder folder;
    const InFolder inside(folder.Path());
    const std::wstring before = base::CurrentFolder();
    const ImportHook hook(L"Utils_Statics.dll", "_wmkdir", &MakeNothingAndGoElsewhere);
    for (const wchar_t* const path :
         {L"new", L"none\\below", L"new\\a\\b\\c", L"Q:\\no\\such\\drive", L"", L"?*"}) {
        EXPECT_EQ(utilsExam::CreateDirectoryW(path), 0);
        EXPECT_EQ(base::CurrentFolder(), before);
    }
}

TEST(CreateDirectory, TakesNamesBeyondTheBasicPlane)
{
    const TemporaryFolder folder;
    EXPECT_EQ(utilsExam::CreateDirectoryW((folder / L"\U0001F600\\\u00e4\u4e2d").c_str()), 1);
    EXPECT_TRUE(FileExists(folder / L"\U0001F600\\\u00e4\u4e2d"));
}

TEST(CreateDirectory, AttemptsEveryPrefixWhateverTheLength)
{
    const TemporaryFolder folder;
    for (const std::size_t length : {259u, 260u, 300u, 1000u}) {
        const std::wstring parent = folder / (L"new" + std::to_wstring(length));
        const std::wstring path = PathOfLength(parent, length);
        const int created = utilsExam::CreateDirectoryW(path.c_str());
        EXPECT_TRUE(FileExists(parent)) << length;
        EXPECT_EQ(created != 0, FileExists(path)) << length;
        ::RemoveDirectoryW(path.c_str());
    }
}

TEST(CreateDirectory, CreatesTheMissingParentsOfTheLongestPath)
{
    const TemporaryFolder folder;
    const std::wstring parent = folder / (L"a\\" + std::wstring(100, L'p'));
    const std::wstring path = PathOfLength(parent, 259);
    const int created = utilsExam::CreateDirectoryW(path.c_str());
    EXPECT_EQ(created != 0, FileExists(path));
    EXPECT_TRUE(FileExists(parent));
    if (!FileExists(path)) GTEST_SKIP() << "the platform makes no folder of 259 characters";
    EXPECT_EQ(utilsExam::CreateDirectoryW(path.c_str()), 0);
}

TEST(RemoveDirectory, DeletesATreeWithReadOnlyAndHiddenFiles)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"tree\\a\\b").c_str());
    WriteFile(folder / L"tree\\plain", "x");
    WriteFile(folder / L"tree\\a\\readonly", "x");
    WriteFile(folder / L"tree\\a\\b\\hidden\U0001F600", "x");
    SetFileAttributesW((folder / L"tree\\a\\readonly").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW((folder / L"tree\\a\\b\\hidden\U0001F600").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW((folder / L"tree\\a").c_str(), FILE_ATTRIBUTE_READONLY);
    LogCapture log;
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_FALSE(FileExists(folder / L"tree"));
    EXPECT_TRUE(log.Take().empty());
}

TEST(RemoveDirectory, TakesTheThreeSpellingsOfAPath)
{
    const TemporaryFolder folder;
    for (const wchar_t* const spelling : {L"tree\\", L"/tree//", L"\\\\tree\\\\\\\\"}) {
        utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
        utilsExam::RemoveDirectoryW((folder / spelling).c_str(), 1);
        EXPECT_FALSE(FileExists(folder / L"tree")) << testing::PrintToString(spelling);
    }
}

TEST(RemoveDirectory, TakesARelativePathFromTheCurrentDirectory)
{
    const TemporaryFolder folder;
    utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
    const InFolder inside(folder.Path());
    const std::wstring before = base::CurrentFolder();
    utilsExam::RemoveDirectoryW(L"tree", 0);
    EXPECT_FALSE(FileExists(folder / L"tree"));
    EXPECT_EQ(base::CurrentFolder(), before);
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
    EXPECT_TRUE(log.Take().empty());
    EXPECT_TRUE(FileExists(folder.Path()));
}

void ExpectErrorCode(LogCapture& log, int line)
{
    const auto messages = log.Take();
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
    WriteFile(folder / L"tree\\a\\held", "x");
    base::File held(CreateFileW((folder / L"tree\\a\\held").c_str(), GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    LogCapture log;
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_TRUE(FileExists(folder / L"tree\\a\\held"));
    ExpectErrorCode(log, 521);
    held.reset();
    utilsExam::RemoveDirectoryW((folder / L"tree").c_str(), 1);
    EXPECT_FALSE(FileExists(folder / L"tree"));
    EXPECT_TRUE(log.Take().empty());
}

TEST(RemoveDirectory, DeletesAPathOf259Characters)
{
    const TemporaryFolder folder;
    const std::wstring deep = folder / std::wstring(100, L'p');
    ASSERT_TRUE(::CreateDirectoryW(deep.c_str(), nullptr));
    const std::wstring path = PathOfLength(deep, 259);
    WriteFile(path, "x");
    LogCapture log;
    utilsExam::RemoveDirectoryW(path.c_str(), 1);
    EXPECT_FALSE(FileExists(path));
    EXPECT_TRUE(FileExists(deep));
    EXPECT_TRUE(log.Take().empty());
}

// The request that the library passes to the shell.
struct ShellRequest
{
    static int WINAPI Record(SHFILEOPSTRUCTW* request)
    {
        ++s_calls;
        s_request = *request;
        const auto list = [](const wchar_t* text) {
            return text ? std::wstring(text, std::wcslen(text) + 2) : L"none";
        };
        s_from = list(request->pFrom);
        s_to = list(request->pTo);
        return s_result;
    }
    static ImportHook Hook()
    {
        s_calls = s_result = 0;
        return ImportHook(L"Utils_Statics.dll", "SHFileOperationW", &Record);
    }

    static inline SHFILEOPSTRUCTW s_request;
    static inline std::wstring s_from, s_to;
    static inline int s_calls = 0;
    static inline int s_result = 0;
};

// A list of one path in the shell's format.
std::wstring ListOf(const std::wstring& path)
{
    return path + std::wstring(2, L'\0');
}

TEST(RemoveDirectory, HandsTheShellAListOfOnePathOfAnyLength)
{
    const TemporaryFolder folder;
    const std::wstring deep = folder / std::wstring(100, L'p');
    ASSERT_TRUE(::CreateDirectoryW(deep.c_str(), nullptr));
    const ImportHook hook = ShellRequest::Hook();
    int made = 0;
    for (const std::size_t length : {200u, 258u, 259u, 300u}) {
        const std::wstring path = PathOfLength(deep, length);
        ::CreateDirectoryW(path.c_str(), nullptr);
        if (!PathFileExistsW(path.c_str())) continue; // too long for this platform
        utilsExam::RemoveDirectoryW((path + L"\\").c_str(), 1);
        EXPECT_EQ(ShellRequest::s_calls, ++made);
        EXPECT_EQ(ShellRequest::s_request.wFunc, UINT{FO_DELETE});
        EXPECT_EQ(ShellRequest::s_from, ListOf(path));
        EXPECT_EQ(ShellRequest::s_to, L"none");
        EXPECT_EQ(ShellRequest::s_request.fFlags, 0x0414);
        ::RemoveDirectoryW(path.c_str());
    }
    EXPECT_GE(made, 2);
}

// `path` with the backslash before its last component repeated.
std::wstring WithRun(std::wstring path, std::size_t count)
{
    return path.insert(path.rfind(L'\\'), count - 1, L'\\');
}

TEST(RemoveDirectory, CollapsesBackslashesTwice)
{
    const TemporaryFolder folder;
    const std::wstring path = folder / L"file";
    WriteFile(path, "x");
    const ImportHook hook = ShellRequest::Hook();
    utilsExam::RemoveDirectoryW(WithRun(path, 4).c_str(), 1);
    EXPECT_EQ(ShellRequest::s_from, ListOf(path));
    utilsExam::RemoveDirectoryW(WithRun(path, 8).c_str(), 1);
    EXPECT_EQ(ShellRequest::s_from, ListOf(WithRun(path, 2)));
}

class ShellOperationTest : public testing::Test
{
protected:
    int Run(unsigned int operation, const std::wstring& from, const wchar_t* to, int silent = 1,
            unsigned short flags = 0)
    {
        return utilsExam::SHFileOperationW(operation, from.c_str(), to, silent, flags, nullptr,
                                           nullptr, nullptr);
    }

    TemporaryFolder folder;
    LogCapture log;
};

TEST_F(ShellOperationTest, CopiesAFolder)
{
    utilsExam::CreateDirectoryW((folder / L"from\\a").c_str());
    WriteFile(folder / L"from\\a\\file", "content");
    EXPECT_EQ(Run(FO_COPY, folder / L"from\\", (folder / L"//to").c_str()), 1);
    EXPECT_EQ(test_support::ReadFile(folder / L"to\\a\\file"), "content");
    EXPECT_TRUE(FileExists(folder / L"from\\a\\file"));
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(ShellOperationTest, MakesMissingFoldersWithoutAskingWhenSilent)
{
    WriteFile(folder / L"one", "1");
    EXPECT_EQ(Run(FO_COPY, folder / L"one", (folder / L"new\\deeper\\one").c_str()), 1);
    EXPECT_EQ(test_support::ReadFile(folder / L"new\\deeper\\one"), "1");
    WriteFile(folder / L"two", "2");
    EXPECT_EQ(Run(FO_COPY, folder / L"two", (folder / L"new\\deeper\\one").c_str()),
              1); // replaced without asking
    EXPECT_EQ(test_support::ReadFile(folder / L"new\\deeper\\one"), "2");
}

TEST_F(ShellOperationTest, MovesAndRenamesFiles)
{
    WriteFile(folder / L"one", "1");
    utilsExam::CreateDirectoryW((folder / L"sub").c_str());
    EXPECT_EQ(Run(FO_MOVE, folder / L"one", (folder / L"sub\\two").c_str()), 1);
    EXPECT_EQ(test_support::ReadFile(folder / L"sub\\two"), "1");
    EXPECT_EQ(Run(FO_RENAME, folder / L"sub\\two", (folder / L"sub\\three").c_str()), 1);
    EXPECT_TRUE(FileExists(folder / L"sub\\three"));
    EXPECT_FALSE(FileExists(folder / L"sub\\two"));
}

TEST_F(ShellOperationTest, DeletesWithoutADestination)
{
    utilsExam::CreateDirectoryW((folder / L"tree\\a").c_str());
    EXPECT_EQ(Run(FO_DELETE, folder / L"tree", nullptr), 1);
    EXPECT_FALSE(FileExists(folder / L"tree"));
}

TEST_F(ShellOperationTest, HandsTheShellWhatTheCallerGaveAndTheFlagsOfItsMode)
{
    const ImportHook hook = ShellRequest::Hook();
    int mappings = 0;
    const HWND owner = GetDesktopWindow();
    const wchar_t* const title = L"copying";
    EXPECT_EQ(utilsExam::SHFileOperationW(FO_COPY, L"C:/a//b\\", L"C:/c/", 0, FOF_FILESONLY, owner,
                                          title, &mappings),
              1);
    EXPECT_EQ(ShellRequest::s_request.hwnd, owner);
    EXPECT_EQ(ShellRequest::s_request.wFunc, UINT{FO_COPY});
    EXPECT_EQ(ShellRequest::s_from, ListOf(L"C:\\a\\b"));
    EXPECT_EQ(ShellRequest::s_to, ListOf(L"C:\\c"));
    EXPECT_EQ(ShellRequest::s_request.fFlags, FOF_FILESONLY | FOF_SIMPLEPROGRESS);
    // These are copies, because the platform packs the record and its fields are unaligned.
    void* const mappingsSeen = ShellRequest::s_request.hNameMappings;
    const wchar_t* const titleSeen = ShellRequest::s_request.lpszProgressTitle;
    EXPECT_EQ(mappingsSeen, &mappings);
    EXPECT_EQ(titleSeen, title);

    EXPECT_EQ(Run(FO_DELETE, L"C:\\a", nullptr, 1, FOF_ALLOWUNDO), 1);
    EXPECT_EQ(ShellRequest::s_to, L"none");
    EXPECT_EQ(ShellRequest::s_request.fFlags, FOF_ALLOWUNDO | 0x614);

    ShellRequest::s_result = 5;
    EXPECT_EQ(Run(FO_DELETE, L"C:\\a", nullptr), 0);
    ExpectErrorCode(log, 581);
}

TEST_F(ShellOperationTest, LogsAFailure)
{
    EXPECT_EQ(Run(FO_COPY, folder / L"none\\none", (folder / L"two").c_str()), 0);
    ExpectErrorCode(log, 581);
    EXPECT_EQ(Run(99, folder.Path(), nullptr), 0);
    ExpectErrorCode(log, 581);
}

TEST_F(ShellOperationTest, RefusesPathsThatDoNotFitTheBufferWithTwoZeros)
{
    WriteFile(folder / L"one", "1");
    for (const std::size_t length : {259u, 260u, 300u}) {
        const std::wstring path = PathOfLength(folder.Path(), length);
        EXPECT_EQ(Run(FO_COPY, folder / L"one", path.c_str()), 0);
        ExpectErrorCode(log, 581);
        EXPECT_EQ(Run(FO_DELETE, path, nullptr), 0);
        ExpectErrorCode(log, 581);
    }
    EXPECT_TRUE(FileExists(folder / L"one"));
}

TEST_F(ShellOperationTest, CollapsesBackslashesOnce)
{
    const std::wstring parent = folder / std::wstring(100, L'p');
    const std::wstring from = PathOfLength(parent, 258);
    const std::wstring to = PathOfLength(parent, 257) + L"e";
    ASSERT_EQ(utilsExam::CreateDirectoryW(parent.c_str()), 1);
    WriteFile(from, "x");
    EXPECT_EQ(Run(FO_MOVE, WithRun(from, 4), to.c_str()), 0);
    EXPECT_EQ(Run(FO_MOVE, from, WithRun(to, 4).c_str()), 0);
    EXPECT_TRUE(FileExists(from));
    log.Take();
    EXPECT_EQ(Run(FO_MOVE, WithRun(from, 2), WithRun(to, 2).c_str()), 1);
    EXPECT_TRUE(FileExists(to));
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(ShellOperationTest, HandsOverTheCallersFlags)
{
    utilsExam::CreateDirectoryW((folder / L"from\\sub").c_str());
    utilsExam::CreateDirectoryW((folder / L"to").c_str());
    WriteFile(folder / L"from\\file", "x");
    EXPECT_EQ(Run(FO_COPY, folder / L"from\\*.*", (folder / L"to").c_str(), 1, FOF_FILESONLY), 1);
    EXPECT_TRUE(FileExists(folder / L"to\\file"));
    EXPECT_FALSE(FileExists(folder / L"to\\sub"));
}

TEST_F(ShellOperationTest, RefusesAnAbsentSource)
{
    const InFolder inside(folder.Path());
    WriteFile(folder / L"one", "1");
    EXPECT_EQ(Run(FO_DELETE, L"", nullptr), 0);
    EXPECT_EQ(
        utilsExam::SHFileOperationW(FO_DELETE, nullptr, nullptr, 1, 0, nullptr, nullptr, nullptr),
        0);
    EXPECT_TRUE(FileExists(folder / L"one"));
}

} // namespace
