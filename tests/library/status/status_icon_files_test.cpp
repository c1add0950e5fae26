// Image files that are missing, damaged, hostile or replaced.
#include "StatusFixture.h"

#include <base/Handles.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Files.h>
#include <test_support/NoMemory.h>
#include <Utils_Statics/CStatusGps.h>

#include <random>

using test_support::ReadFile;
using test_support::WriteFile;

namespace {

constexpr Gdiplus::ARGB green = 0xFF00C000, orange = 0xFFFFA000;

class IconFiles : public StatusTest
{
protected:
    IconFiles() { CStatusGps::setState(true); }
    ~IconFiles() override { CStatusGps::setState(false); }

    std::wstring File() const { return IconFile(L"pacemaker.png"); }
    void Write(int width, int height, Gdiplus::ARGB colour) const
    {
        WriteIcon(L"pacemaker.png", width, height, colour);
    }
    // Sets the time of the last write, in seconds before now.
    void SetWritten(int secondsAgo) const
    {
        FILETIME time = {};
        GetSystemTimeAsFileTime(&time);
        ULARGE_INTEGER ticks = {{time.dwLowDateTime, time.dwHighDateTime}};
        ticks.QuadPart -= secondsAgo * 10'000'000LL;
        time = {ticks.LowPart, ticks.HighPart};
        const base::File file(CreateFileW(File().c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &time));
    }
    static int Shown(Row& row) { return Draw(CStatusGps::getInstance(), row); }
    // The colour that is shown; 0 for none.
    static Gdiplus::ARGB Colour()
    {
        Row row;
        const int width = Shown(row);
        return width == 0 ? 0 : row.At(200 - width / 2, 30);
    }
};

TEST_F(IconFiles, OfNoImageAtAllAreNotShown)
{
    const std::string contents[] = {"",
                                    "x",
                                    "\x89PNG\r\n\x1a\n",
                                    std::string(100'000, '\xff'),
                                    std::string(1 << 16, '\0'),
                                    "<?xml version=\"1.0\"?><svg/>"};
    for (const std::string& content : contents) {
        WriteFile(File(), content);
        Row row;
        EXPECT_EQ(Shown(row), 0);
        EXPECT_EQ(row.Drawn(), CRect());
    }
}

TEST_F(IconFiles, ThatAreFoldersAreNotShown)
{
    CreateDirectoryW(File().c_str(), nullptr);
    Row row;
    EXPECT_EQ(Shown(row), 0);
}

// A truncated picture may be shown in part; its width is still that of the whole one.
TEST_F(IconFiles, CutAnywhereAreShownInPartOrNotAtAll)
{
    Write(24, 20, green);
    const std::string whole = ReadFile(File());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        WriteFile(File(), whole.substr(0, length));
        Row row;
        const int width = Shown(row);
        ASSERT_TRUE(width == 0 || width == 24) << length;
        const CRect drawn = row.Drawn();
        ASSERT_TRUE(drawn.IsRectEmpty() || drawn.left >= 176) << length;
    }
}

// The damage is random bytes in a file that begins well. Nothing outside of the picture's place
// changes.
TEST_F(IconFiles, DamagedAnywhereDoNoHarm)
{
    Write(24, 20, green);
    const std::string whole = ReadFile(File());
    std::mt19937 random(4711);
    for (int i = 0; i < 300; ++i) {
        std::string damaged = whole;
        for (int n = 0; n < 3; ++n)
            damaged[8 + random() % (damaged.size() - 8)] = static_cast<char>(random());
        WriteFile(File(), damaged);
        Row row;
        const int width = Shown(row);
        ASSERT_TRUE(width >= 0) << i;
        if (width == 0) {
            ASSERT_EQ(row.Drawn(), CRect()) << i;
        }
    }
}

// The head promises a picture of 60000 x 60000 pixels, and nothing follows.
TEST_F(IconFiles, ThatPromiseTooMuchAreNotShown)
{
    Write(24, 20, green);
    std::string file = ReadFile(File());
    file[16] = file[20] = 0;
    file[17] = file[21] = 0;
    file[18] = file[22] = '\xea';
    file[19] = file[23] = '\x60';
    WriteFile(File(), file);
    Row row;
    Shown(row); // its width is the platform's
    EXPECT_EQ(row.Drawn(), CRect());
}

TEST_F(IconFiles, OfOtherFormatsAreShownToo)
{
    constexpr CLSID bmp = {
        0x557CF400, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
    Gdiplus::Bitmap picture(24, 20, PixelFormat24bppRGB);
    Gdiplus::Graphics(&picture).Clear(Gdiplus::Color(orange));
    ASSERT_EQ(picture.Save(File().c_str(), &bmp, nullptr), Gdiplus::Ok);
    EXPECT_EQ(Colour(), orange);
}

TEST_F(IconFiles, WithTransparencyLetTheRowThrough)
{
    Write(24, 20, 0x80FFFFFF);
    Row row;
    EXPECT_EQ(Shown(row), 24);
    const Gdiplus::ARGB pixel = row.At(190, 30);
    EXPECT_NEAR(GetRValue(pixel >> 16), 0x20 + (0xff - 0x20) * 0x80 / 0xff, 2);
    EXPECT_NEAR(GetRValue(pixel), 0x60 + (0xff - 0x60) * 0x80 / 0xff, 2);
    Write(24, 20, 0x00FFFFFF);
    row.Clear();
    EXPECT_EQ(Shown(row), 24);
    EXPECT_EQ(row.Drawn(), CRect());
}

TEST_F(IconFiles, LargerThanTheRowTakeTheirWidth)
{
    Write(3000, 20, green);
    Row row;
    EXPECT_EQ(Shown(row), 3000);
    EXPECT_EQ(row.Drawn(), CRect(0, 20, 200, 40));
}

TEST_F(IconFiles, ThatAreReplacedAreShownAnew)
{
    Write(24, 20, green);
    EXPECT_EQ(Colour(), green);
    Write(24, 20, orange);
    EXPECT_EQ(Colour(), orange);
    Write(30, 10, orange);
    Row row;
    EXPECT_EQ(Shown(row), 30);
    DeleteFileW(File().c_str());
    EXPECT_EQ(Colour(), 0u);
    Write(24, 20, green);
    EXPECT_EQ(Colour(), green);
    WriteFile(File(), "no image any more");
    EXPECT_EQ(Colour(), 0u);
}

TEST_F(IconFiles, ThatAreReplacedByMovingAnotherInTheirPlaceAreShownAnew)
{
    Write(24, 20, green);
    WriteIcon(L"other.png", 24, 20, orange);
    EXPECT_EQ(Colour(), green);
    ASSERT_TRUE(
        MoveFileExW(IconFile(L"other.png").c_str(), File().c_str(), MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(Colour(), orange);
}

TEST_F(IconFiles, AreReadForEachDrawing)
{
    Write(24, 20, green);
    SetWritten(100);
    EXPECT_EQ(Colour(), green);
    const base::File alone(
        CreateFileW(File().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(static_cast<bool>(alone)) << "nobody else can read it now";
    EXPECT_EQ(Colour(), 0u);
}

TEST_F(IconFiles, AreNotKeptOpen)
{
    Write(24, 20, green);
    EXPECT_EQ(Colour(), green);
    EXPECT_TRUE(DeleteFileW(File().c_str()));
}

TEST_F(IconFiles, OfAnotherImageFolderAreAnother)
{
    Write(24, 20, green);
    EXPECT_EQ(Colour(), green);
    const test_support::TemporaryFolder other;
    CreateDirectoryW((other / L"status").c_str(), nullptr);
    const std::wstring before = File();
    qor_utils::SetStoreFolder(qor_utils::imagesStore, other.Path());
    EXPECT_EQ(Colour(), 0u);
    qor_utils::SetStoreFolder(qor_utils::imagesStore, before.substr(0, before.find(L"\\status\\")));
    EXPECT_EQ(Colour(), green);
}

TEST_F(IconFiles, AreShownByASecondDrawingSessionToo)
{
    Write(24, 20, green);
    EXPECT_EQ(Colour(), green);
    {
        const base::GdiPlusSession second;
        EXPECT_EQ(Colour(), green);
    }
    EXPECT_EQ(Colour(), green);
}

TEST_F(IconFiles, WhosePathsFindNoMemoryTakeNoRoom)
{
    Write(24, 20, green);
    Row row;
    int width = -1;
    {
        const test_support::NoMemory memory;
        test_support::NoMemory::From(0);
        EXPECT_NO_THROW(width = Shown(row));
    }
    EXPECT_EQ(width, 0);
    EXPECT_EQ(row.Drawn(), CRect());
    EXPECT_EQ(Colour(), green);
}

} // namespace
