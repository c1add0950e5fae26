// Images too large for GDI+, and damaged files.
#include "GdiPlus.h"
#include "imaging/ImageFile.h"
#include "PictureFiles.h"

#include <gtest/gtest.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

#include <random>

using namespace utils_statics;
using test_support::DibSection;

namespace {

class ImageExtentTest : public GdiPlusTest
{
protected:
    bool Accepts(const std::string& bytes)
    {
        const MemoryStream stream = StreamOfBytes(bytes);
        return MayBeDecoded(*stream.get());
    }

    test_support::TemporaryFolder m_folder;
};
class DamagedFileTest : public ImageExtentTest
{
protected:
    // Calls each loading function; it returns, whatever the file holds.
    void LoadEverywhere(const std::wstring& path)
    {
        SIZE size = {20, 10};
        delete BitmapFromFile(path.c_str(), &size, true);
        delete BitmapFromFile(path.c_str());
        const base::Bitmap resized(ResizeImage(path.c_str(), &size));
    }

    // Complete files of every format, with their extensions.
    std::vector<std::pair<std::wstring, std::string>> WholeFiles()
    {
        std::vector<std::pair<std::wstring, std::string>> files;
        const DibSection section(24, 16, 32, DibSection::topDown);
        std::vector<std::uint32_t> pixels = section.Pixels();
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = 0xFF000000 | static_cast<std::uint32_t>(i * 0x21387);
        section.SetPixels(pixels);
        const wchar_t* const extensions[] = {L".bmp", L".gif", L".jpg", L".png", L".tif"};
        for (int format = 0; format < 5; ++format) {
            const std::wstring path = m_folder / L"whole";
            EXPECT_TRUE(SaveBitmap(section.get(), format, path.c_str()));
            files.emplace_back(extensions[format], test_support::ReadFile(path));
        }
        files.emplace_back(L".ico", IconFile(16, 0xFF102030, 0xFF405060));
        return files;
    }
};

} // namespace

static_assert(IsBitmapSize(1, 1) && IsBitmapSize(16383, 16383) && IsBitmapSize(INT32_MAX / 8, 1));
static_assert(!IsBitmapSize(16384, 16384) && !IsBitmapSize(32768, 32768));
static_assert(!IsBitmapSize(0, 1) && !IsBitmapSize(1, 0) && !IsBitmapSize(-1, -1));
static_assert(!IsBitmapSize(INT64_MAX, INT64_MAX));
static_assert(IsTooLarge(16384, 16384) && !IsTooLarge(16383, 16383));
static_assert(!IsTooLarge(0, INT64_MAX) && !IsTooLarge(INT64_MAX, 0) && !IsTooLarge(-1, INT64_MAX));

TEST_F(ImageExtentTest, RefusesWhatIsTooLargeInPixels)
{
    EXPECT_TRUE(Accepts(PngFileThatClaims(1024, 768)));
    EXPECT_TRUE(Accepts(PngFileThatClaims(16383, 16383)));
    EXPECT_FALSE(Accepts(PngFileThatClaims(60000, 60000)));
    // The size is 2^32 bytes: an implementation that counts in 32 bits allocates nothing.
    EXPECT_FALSE(Accepts(PngFileThatClaims(32768, 32768)));
    EXPECT_FALSE(Accepts(PngFileThatClaims(1000000, 1000)));
    EXPECT_FALSE(Accepts(BmpFileThatClaims(60000, 60000)));
    EXPECT_TRUE(Accepts(BmpFileThatClaims(600, -600)));
}

TEST_F(ImageExtentTest, CountsThePictureOfAGifFileAndNotItsScreen)
{
    EXPECT_TRUE(Accepts(GifFile({640, 480}, {640, 480})));
    for (const std::uint32_t screen : {0, 1, 32768, 65535}) {
        EXPECT_TRUE(Accepts(GifFile({screen, screen}, {1, 1})));
        EXPECT_FALSE(Accepts(GifFile({screen, screen}, {32768, 32768})));
        EXPECT_FALSE(Accepts(GifFile({screen, screen}, {65535, 65535})));
    }
}

TEST_F(ImageExtentTest, FindsTheFrameOfAJpegFileBehindOtherSegments)
{
    EXPECT_TRUE(Accepts(JpegFileThatClaims(16383, 16383)));
    EXPECT_TRUE(Accepts(JpegFileThatClaims(65535, 4000)));
    EXPECT_FALSE(Accepts(JpegFileThatClaims(16384, 16384)));
    EXPECT_FALSE(Accepts(JpegFileThatClaims(65535, 4100)));
}

TEST_F(ImageExtentTest, ReadsTheSizeOfATiffFileInEachOrderAndLengthOfNumbers)
{
    for (const bool isBig : {false, true})
        for (const int bytes : {2, 4}) {
            EXPECT_TRUE(Accepts(TiffFileThatClaims(16383, 16383, isBig, bytes)));
            EXPECT_TRUE(Accepts(TiffFileThatClaims(65535, 4000, isBig, bytes)));
            EXPECT_FALSE(Accepts(TiffFileThatClaims(16384, 16384, isBig, bytes)));
            EXPECT_FALSE(Accepts(TiffFileThatClaims(65535, 4100, isBig, bytes)));
        }
}

// GDI+ decodes no other.
TEST_F(ImageExtentTest, CountsTheFirstPictureOfAnIconFile)
{
    const std::string good = IconPicture(16, 0xFF204060, 0xFF204060);
    for (const std::string& large :
         {IconPictureThatClaims(32768, 32768), PngFileThatClaims(60000, 60000)}) {
        EXPECT_TRUE(Accepts(IconFileOf(16, {good, large})));
        EXPECT_FALSE(Accepts(IconFileOf(16, {large, good})));
    }
    EXPECT_TRUE(Accepts(IconFileOf(16, {"junk"})));
    EXPECT_TRUE(Accepts(IconFileOf(16, {IconPictureThatClaims(0, 0), good})));
}

TEST_F(ImageExtentTest, LeavesSizesWithoutPixelsToGdiPlus)
{
    EXPECT_TRUE(Accepts(PngFileThatClaims(0, 0)));
    EXPECT_TRUE(Accepts(PngFileThatClaims(0, 0xFFFFFFFF)));
    EXPECT_TRUE(Accepts(GifFile({0, 0}, {0, 65535})));
    EXPECT_TRUE(Accepts(BmpFileThatClaims(-60000, 60000)));
    EXPECT_TRUE(Accepts(BmpFileThatClaims(60000, 0)));
}

TEST_F(ImageExtentTest, LeavesWhatIsNoImageToGdiPlus)
{
    for (const char* const start : {"x", "this is no picture", "BM", "GIF8", "II*", "\xFF\xD8\xFF"})
        EXPECT_TRUE(Accepts(start)) << start;
    EXPECT_FALSE(StreamOfBytes(""));
    EXPECT_FALSE(StreamOfFile((m_folder / L"missing").c_str()));
    EXPECT_FALSE(StreamOfFile(m_folder.Path().c_str()));
}

TEST_F(ImageExtentTest, KeepsEnormousImagesFromEveryLoader)
{
    for (const std::string& bytes :
         {PngFileThatClaims(60000, 60000), PngFileThatClaims(32768, 32768),
          GifFile({1, 1}, {32768, 32768}), BmpFileThatClaims(60000, 60000),
          IconFileOf(16, {IconPictureThatClaims(65536, 65536)})}) {
        const std::wstring path = m_folder / L"enormous.png";
        test_support::WriteFile(path, bytes);
        SIZE size = {10, 10};
        EXPECT_EQ(BitmapFromFile(path.c_str()), nullptr);
        EXPECT_EQ(BitmapFromFile(path.c_str(), &size), nullptr);
        EXPECT_EQ(ResizeImage(path.c_str(), &size), nullptr);
    }
}

// Some decoders take colours for granted.
TEST_F(DamagedFileTest, AGifFileWithoutColoursIsRefused)
{
    const std::string start("GIF89a\2\0\2\0\0\0\0", 13);
    const std::string extension("!\xF9\4\1\0\0\0\0", 8);
    const std::string picture(",\0\0\0\0\2\0\2\0\0\2\3\x44\2\5\0;", 17);
    const std::string palette("\0\0\0\xFF\xFF\xFF", 6);
    for (const std::string& bytes : {start + picture, start + extension + picture}) {
        EXPECT_FALSE(Accepts(bytes));
        const std::wstring path = m_folder / L"colourless.gif";
        test_support::WriteFile(path, bytes);
        LoadEverywhere(path);
    }
    std::string withColours = start + palette + picture;
    withColours[10] = '\x80';
    EXPECT_TRUE(Accepts(withColours));
    std::string withOwnColours = start + picture;
    withOwnColours[22] = '\x80';
    withOwnColours.insert(23, palette);
    EXPECT_TRUE(Accepts(withOwnColours));
}

TEST_F(DamagedFileTest, NoTruncatedFileDoesHarm)
{
    for (const auto& [extension, bytes] : WholeFiles()) {
        const std::wstring path = m_folder / (L"truncated" + extension);
        const std::size_t step = std::max<std::size_t>(1, bytes.size() / 30);
        for (std::size_t length = 0; length < bytes.size(); length += length < 40 ? 2 : step) {
            test_support::WriteFile(path, bytes.substr(0, length));
            LoadEverywhere(path);
        }
        test_support::WriteFile(path, bytes);
        EXPECT_TRUE(std::unique_ptr<CBitmap>(BitmapFromFile(path.c_str())));
    }
}

TEST_F(DamagedFileTest, NoCorruptFileDoesHarm)
{
    std::mt19937 random(11);
    for (const auto& [extension, bytes] : WholeFiles()) {
        const std::wstring path = m_folder / (L"corrupt" + extension);
        for (int round = 0; round < 40; ++round) {
            std::string corrupt = bytes;
            // Headers hold the sizes, so they are damaged more often than the rest.
            const std::size_t reach =
                round % 2 ? corrupt.size() : std::min<std::size_t>(64, corrupt.size());
            for (unsigned hits = 1 + random() % 4; hits > 0; --hits)
                corrupt[random() % reach] = static_cast<char>(random());
            test_support::WriteFile(path, corrupt);
            LoadEverywhere(path);
        }
    }
}
