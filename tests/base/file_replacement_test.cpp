#include <base/FileReplacement.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/TemporaryFolder.h>

#include <string>
#include <utility>
#include <vector>

using test_support::FileExists;
using test_support::ReadFile;
using test_support::WriteFile;

namespace {

class FileReplacement : public testing::Test
{
protected:
    test_support::TemporaryFolder m_folder;
    std::wstring m_file = m_folder / L"new.tmp";
    std::wstring m_place = m_folder / L"place.xml";
};

const test_support::ImportHook* s_hook = nullptr;
std::vector<std::pair<std::wstring, std::wstring>> s_replaced;

BOOL WINAPI RecordReplacement(const wchar_t* place, const wchar_t* file, const wchar_t* backup,
                              DWORD flags, void* exclude, void* reserved)
{
    s_replaced.emplace_back(place, file);
    return s_hook->Original<decltype(ReplaceFileW)>()(place, file, backup, flags, exclude,
                                                      reserved);
}

} // namespace

TEST_F(FileReplacement, MovesToAPlaceThatIsFree)
{
    WriteFile(m_file, "new");
    EXPECT_TRUE(base::MoveOver(m_file.c_str(), m_place.c_str()));
    EXPECT_EQ(ReadFile(m_place), "new");
    EXPECT_FALSE(FileExists(m_file));
}

// The platform's own function for replacing keeps the file's rights, attributes and times.
TEST_F(FileReplacement, ReplacesAFileTheWayThatKeepsItsRights)
{
    const test_support::ImportHook hook(L"base_test.exe", "ReplaceFileW", &RecordReplacement);
    s_hook = &hook;
    s_replaced.clear();
    WriteFile(m_file, "new");
    WriteFile(m_place, "old");
    EXPECT_TRUE(base::MoveOver(m_file.c_str(), m_place.c_str()));
    EXPECT_EQ(ReadFile(m_place), "new");
    EXPECT_FALSE(FileExists(m_file));
    ASSERT_EQ(s_replaced.size(), 1u);
    EXPECT_EQ(s_replaced[0], std::pair(m_place, m_file));
}

TEST_F(FileReplacement, ChangesNothingWhenItCannotBe)
{
    EXPECT_FALSE(base::MoveOver(m_file.c_str(), m_place.c_str()));
    WriteFile(m_place, "old");
    EXPECT_FALSE(base::MoveOver(m_file.c_str(), m_place.c_str()));
    EXPECT_EQ(ReadFile(m_place), "old");
    WriteFile(m_file, "new");
    EXPECT_FALSE(base::MoveOver(m_file.c_str(), (m_folder / L"none\\x.xml").c_str()));
    EXPECT_EQ(ReadFile(m_file), "new");
    EXPECT_FALSE(base::MoveOver(m_file.c_str(), m_folder.Path().c_str()));
    EXPECT_EQ(ReadFile(m_file), "new");
}
