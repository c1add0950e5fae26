// Store paths.
#include "Readers.h"

#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/zelPath.h>
#include <test_support/Program.h>
#include <test_support/StoreFolder.h>

#include <windows.h>

#include <string>

using test_support::BesideProgram;
using test_support::StoreFolder;

namespace {

TEST(zelPath, HasADefaultTreeBelowTheApplication)
{
    const std::wstring application = BesideProgram(L"");
    EXPECT_EQ(zelPath::getPath(0, L"exam.exe"), application + L"exam.exe");
    EXPECT_EQ(zelPath::getPath(1, L"button_states.xml"),
              application + L"protocols\\fallback\\button_states.xml");
    EXPECT_EQ(zelPath::getPath(2, L"a.png"), application + L"images\\a.png");
    EXPECT_EQ(zelPath::getPath(9, L"res/a.png"), application + L"layouts\\res/a.png");
    EXPECT_EQ(zelPath::getPath(21, L"a"), application + L"layouts\\fallback\\a");
    EXPECT_EQ(zelPath::getPath(22, L"a"), application + L"protocols\\saved\\a");
    EXPECT_EQ(zelPath::getPath(34, L"a"), application + L"patients\\a");
    EXPECT_EQ(zelPath::getPath(37, L"a"), application + L"protocols\\factory\\general\\a");
    EXPECT_EQ(zelPath::getPath(38, L"a"), application + L"protocols\\base\\a");
    EXPECT_EQ(zelPath::getPath(39, L"a"), application + L"protocols\\base2\\a");
}

TEST(zelPath, GivesTheFolderWithABackslashForAnEmptyName)
{
    EXPECT_EQ(zelPath::getPath(0, L""), BesideProgram(L""));
    EXPECT_EQ(zelPath::getPath(28, L""), BesideProgram(L"") + L"log\\");
}

TEST(zelPath, GivesNothingForAnUnknownNumber)
{
    EXPECT_EQ(zelPath::getPath(5, L"name"), L"");
    EXPECT_EQ(zelPath::getPath(-1, L"name"), L"");
    EXPECT_EQ(zelPath::getPath(INT_MAX, L""), L"");
}

TEST(zelPath, JoinsByOneBackslash)
{
    for (const wchar_t* folder : {L"D:\\db", L"D:\\db\\", L"D:\\db\\\\", L"D:/db/"}) {
        const StoreFolder store(34, folder);
        EXPECT_EQ(zelPath::getPath(34, L"name"), L"D:\\db\\name") << folder;
        EXPECT_EQ(zelPath::getPath(34, L"\\name"), L"D:\\db\\name") << folder;
        EXPECT_EQ(zelPath::getPath(34, L"//name"), L"D:\\db\\name") << folder;
        EXPECT_EQ(zelPath::getPath(34, L""), L"D:\\db\\") << folder;
        EXPECT_EQ(zelPath::getPath(34, L"\\"), L"D:\\db\\") << folder;
    }
}

TEST(zelPath, TakesTheFolderThatTheHostSets)
{
    {
        const StoreFolder images(2, L"E:\\pictures");
        const StoreFolder own(1000, L"\\\\server\\share");
        EXPECT_EQ(zelPath::getPath(2, L"a"), L"E:\\pictures\\a");
        EXPECT_EQ(zelPath::getPath(1000, L"a"), L"\\\\server\\share\\a");
    }
    EXPECT_EQ(zelPath::getPath(2, L"a"), BesideProgram(L"") + L"images\\a");
    EXPECT_EQ(zelPath::getPath(1000, L"a"), L"");
}

TEST(zelPath, TakesTheRootOfADrive)
{
    const StoreFolder store(2, L"E:\\");
    EXPECT_EQ(zelPath::getPath(2, L"a"), L"E:\\a");
    EXPECT_EQ(zelPath::getPath(2, L""), L"E:\\");
}

TEST(zelPath, PutsRelativeFoldersBelowTheApplication)
{
    const StoreFolder store(2, L"themes/dark");
    EXPECT_EQ(zelPath::getPath(2, L"a"), BesideProgram(L"") + L"themes\\dark\\a");
}

TEST(zelPath, LeavesTheNameAsItIs)
{
    const StoreFolder store(2, L"E:\\p");
    const std::wstring longName(500, L'n');
    EXPECT_EQ(zelPath::getPath(2, L"..\\x/y .z"), L"E:\\p\\..\\x/y .z");
    EXPECT_EQ(zelPath::getPath(2, L"\xD83D\xDE00"), L"E:\\p\\\xD83D\xDE00");
    EXPECT_EQ(zelPath::getPath(2, longName), L"E:\\p\\" + longName);
}

TEST(zelPath, AnswersWholePathsWhileTheHostChangesThem)
{
    const StoreFolder start(34, L"A:\\one");
    Readers readers([] {
        const std::wstring path = zelPath::getPath(34, L"x");
        return path == L"A:\\one\\x" || path == L"B:\\another\\folder\\x";
    });
    for (int i = 0; i < 20000; ++i)
        qor_utils::SetStoreFolder(34, i % 2 ? L"A:\\one" : L"B:\\another\\folder");
    EXPECT_EQ(readers.Finish(), 0);
}

} // namespace
