// utilsExam: single files, drives and pixel bytes.
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>

#include <algorithm>
#include <climits>
#include <string>
#include <utility>
#include <vector>

using test_support::ImportHook;
using test_support::TemporaryFolder;
using test_support::WriteFile;

namespace {

TEST(GetFileData, DescribesTheFirstMatch)
{
    const TemporaryFolder folder;
    WriteFile(folder / L"file\U0001F600.txt", std::string(77, 'x'));
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
    WriteFile(path, "x");
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST(CheckFileIsWritable, LeavesNoOtherAttributeOfAReadOnlyFile)
{
    const TemporaryFolder folder;
    const std::wstring path = folder / L"file";
    WriteFile(path, "x");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    if (!(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN))
        GTEST_SKIP() << "this file system keeps no hidden attribute";
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(path.c_str()));
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN),
              0u);
}

TEST(CheckFileIsWritable, AcceptsAFileThatDoesNotExist)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(utilsExam::CheckFileIsWritable((folder / L"none").c_str()));
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(std::wstring(300, L'x').c_str()));
    EXPECT_TRUE(utilsExam::CheckFileIsWritable(nullptr));
}

// The simulated drives, and those that come after the first question.
struct PlayedDrive
{
    std::wstring root;
    UINT type;
};
std::vector<PlayedDrive> s_drives;
std::vector<PlayedDrive> s_laterDrives;

DWORD WINAPI PlayDriveStrings(DWORD size, wchar_t* buffer)
{
    std::wstring list;
    for (const PlayedDrive& drive : s_drives)
        list += drive.root + L'\0';
    s_drives.insert(s_drives.end(), s_laterDrives.begin(), s_laterDrives.end());
    s_laterDrives.clear();
    if (size < list.size() + 1) return static_cast<DWORD>(list.size() + 1);
    std::copy_n(list.c_str(), list.size() + 1, buffer);
    return static_cast<DWORD>(list.size());
}

UINT WINAPI PlayDriveType(const wchar_t* root)
{
    for (const PlayedDrive& drive : s_drives)
        if (drive.root == root) return drive.type;
    return DRIVE_NO_ROOT_DIR;
}

class PlayedDrivesTest : public testing::Test
{
protected:
    // The drive that is found; empty when none is.
    static std::wstring Find(std::vector<PlayedDrive> drives, std::vector<PlayedDrive> later = {})
    {
        s_drives = std::move(drives);
        s_laterDrives = std::move(later);
        CString drive(L"before");
        const bool found = utilsExam::FindFirstRemovableDrive(drive);
        EXPECT_TRUE(found || drive == L"before");
        return found ? drive.GetString() : L"";
    }

private:
    const ImportHook m_strings{L"Utils_Statics.dll", "GetLogicalDriveStringsW", &PlayDriveStrings};
    const ImportHook m_types{L"Utils_Statics.dll", "GetDriveTypeW", &PlayDriveType};
};

TEST_F(PlayedDrivesTest, TheFirstRemovableFixedOrRamDriveIsFound)
{
    for (const UINT type : {DRIVE_REMOVABLE, DRIVE_FIXED, DRIVE_RAMDISK})
        EXPECT_EQ(Find({{L"E:\\", DRIVE_CDROM},
                        {L"F:\\", DRIVE_REMOTE},
                        {L"G:\\", DRIVE_UNKNOWN},
                        {L"H:\\", DRIVE_NO_ROOT_DIR},
                        {L"I:\\", type},
                        {L"J:\\", DRIVE_REMOVABLE}}),
                  L"I:\\");
    EXPECT_EQ(Find({}), L"");
    EXPECT_EQ(Find({{L"E:\\", DRIVE_CDROM}}), L"");
}

TEST_F(PlayedDrivesTest, FourRootsAreSkippedByExactComparison)
{
    const auto skipped = [](const wchar_t* root) {
        return Find({{root, DRIVE_FIXED}, {L"Z:\\", DRIVE_FIXED}}) == L"Z:\\";
    };
    for (const wchar_t* const root : {L"A:\\", L"B:\\", L"C:\\", L"D:\\"})
        EXPECT_TRUE(skipped(root)) << root;
    for (const wchar_t* const root : {L"c:\\", L"E:\\", L"d:\\"})
        EXPECT_FALSE(skipped(root)) << root;
}

TEST_F(PlayedDrivesTest, ADriveThatComesBetweenTheQuestionsHidesNone)
{
    EXPECT_EQ(Find({{L"C:\\", DRIVE_FIXED}, {L"E:\\", DRIVE_REMOVABLE}}, {{L"F:\\", DRIVE_FIXED}}),
              L"E:\\");
    EXPECT_EQ(Find({{L"C:\\", DRIVE_FIXED}}, {{L"F:\\", DRIVE_FIXED}, {L"G:\\", DRIVE_FIXED}}),
              L"F:\\");
    EXPECT_EQ(Find({}, {{L"F:\\", DRIVE_FIXED}}), L"F:\\");
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

TEST(BGRtoRGB, CountsThePixelsByTheProductAlone)
{
    unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7};
    utilsExam::BGRtoRGB(pixels, -1, -2);
    const unsigned char expected[] = {3, 2, 1, 6, 5, 4, 7};
    EXPECT_TRUE(std::equal(std::begin(pixels), std::end(pixels), expected));
}

TEST(BGRtoRGB, DoesNothingWithoutPixels)
{
    unsigned char pixels[] = {1, 2, 3};
    utilsExam::BGRtoRGB(pixels, 0, 5);
    utilsExam::BGRtoRGB(pixels, 5, 0);
    utilsExam::BGRtoRGB(pixels, -1, 5);
    utilsExam::BGRtoRGB(pixels, INT_MIN, INT_MAX);
    utilsExam::BGRtoRGB(nullptr, 5, 5);
    if (sizeof(void*) == 4) {
        utilsExam::BGRtoRGB(pixels, 65536, 65536); // no such image fits the address space
        utilsExam::BGRtoRGB(pixels, INT_MAX, INT_MAX);
    }
    EXPECT_EQ(pixels[0], 1);
    EXPECT_EQ(pixels[2], 3);
}

} // namespace
