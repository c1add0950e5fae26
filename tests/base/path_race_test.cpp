// Checks FullPath when another thread changes the current directory between its two questions. The
// change is made here, right behind the first answer, so that it never comes too late.
#include <windows.h>

#include <string>
#include <utility>

namespace {

std::wstring s_nextDirectory; // directory to change to after the next answer; empty for no change

DWORD AnswerAndChange(const wchar_t* path, DWORD size, wchar_t* buffer, wchar_t** name)
{
    const DWORD answer = GetFullPathNameW(path, size, buffer, name);
    const std::wstring next = std::exchange(s_nextDirectory, L"");
    if (!next.empty()) SetCurrentDirectoryW(next.c_str());
    return answer;
}

} // namespace

#define GetFullPathNameW AnswerAndChange
#include <base/FilePath.h>
#undef GetFullPathNameW

#include "test_support/TemporaryFolder.h"

#include <base/InFolder.h>
#include <gtest/gtest.h>

namespace {

class FullPathRace : public testing::Test
{
protected:
    FullPathRace() { CreateDirectoryW(m_longer.c_str(), nullptr); }

    const test_support::TemporaryFolder m_folder;
    const std::wstring m_longer = m_folder / L"longer";
};

} // namespace

TEST_F(FullPathRace, LongerDirectoryGivesNoPath)
{
    const base::InFolder inside(m_folder.Path());
    s_nextDirectory = m_longer;
    EXPECT_EQ(base::FullPath(L"name"), L"");
    EXPECT_EQ(base::FullPath(L"name"), m_longer + L"\\name") << "the next time it is there";
}

TEST_F(FullPathRace, ShorterDirectoryGivesItsWholePath)
{
    const base::InFolder inside(m_longer);
    s_nextDirectory = m_folder.Path();
    EXPECT_EQ(base::FullPath(L"name"), m_folder / L"name");
}
