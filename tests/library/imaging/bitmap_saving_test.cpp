// Encoders, their parameter blocks, saving device bitmaps, and the grey palette.
#include "GdiPlus.h"

#include <gtest/gtest.h>
#include <test_support/ChildTest.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TemporaryFolder.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

using Gdiplus::EncoderParameter;
using Gdiplus::EncoderParameters;
using test_support::DibSection;

namespace {

struct FreeBlock
{
    void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<EncoderParameters, FreeBlock>;

constexpr GUID colourDepth = {
    0x66087055, 0xad66, 0x4c7c, {0x9a, 0x18, 0x38, 0xa2, 0x31, 0x0b, 0x83, 0x37}};
constexpr GUID quality = {
    0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};

class EncoderTest : public GdiPlusTest
{
protected:
    Block Compression(int format, int extra, CLSID* clsid = nullptr)
    {
        CLSID unused;
        EncoderParameters* params = nullptr;
        GetCompression(format, &params, clsid ? clsid : &unused, extra);
        return Block(params);
    }

    CLSID EncoderOf(const wchar_t* mimeType)
    {
        CLSID clsid = {};
        EXPECT_GE(GetEncoderClsid(mimeType, &clsid), 0);
        return clsid;
    }
};

class SaveBitmapTest : public GdiPlusTest
{
protected:
    test_support::TemporaryFolder m_folder;
};

// A gradient so smooth that JPEG changes it little, with a different value in every pixel and
// channel.
std::vector<std::uint32_t> Gradient(int width, int height)
{
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.push_back(0xFF000000u | static_cast<std::uint32_t>(x * 255 / width) << 16 |
                             static_cast<std::uint32_t>(y * 255 / height) << 8 |
                             static_cast<std::uint32_t>((x + y) * 255 / (width + height)));
    return pixels;
}

int LargestDifference(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b)
{
    int largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        for (int shift = 0; shift < 24; shift += 8)
            largest = std::max(largest, std::abs(static_cast<int>(a[i] >> shift & 0xFF) -
                                                 static_cast<int>(b[i] >> shift & 0xFF)));
    return largest;
}

struct FileFormat
{
    int format;
    const wchar_t* extension;
    std::string start; // the bytes at the start of every file of this format
    int error;         // largest error of a channel
};
const FileFormat fileFormats[] = {
    {0, L"bmp", "BM", 0},        {1, L"gif", "GIF8", 40},
    {2, L"jpg", "\xFF\xD8", 24}, {3, L"png", "\x89PNG\r\n\x1A\n", 0},
    {4, L"tif", "", 0},
};
constexpr int gifFormat = 1;

// The largest difference that 5 bits a channel make when they become 8.
int RoundingOf(int bits)
{
    return bits == 16 ? 7 : 0;
}

constexpr int width = 48;
constexpr int height = 32;

// Six squares of one colour or number each, which are whole blocks of a JPEG file.
std::vector<std::uint32_t> Squares(std::uint32_t step)
{
    std::vector<std::uint32_t> numbers;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            numbers.push_back(static_cast<std::uint32_t>(x / 16 + y / 16 * 3) * step);
    return numbers;
}

// A picture with many colours, from a palette for up to 8 bits a pixel.
DibSection Colourful(int bits)
{
    DibSection section(width, height, bits, DibSection::topDown);
    if (bits <= 8) {
        std::vector<RGBQUAD> palette(std::size_t{1} << bits);
        for (std::size_t i = 0; i < palette.size(); ++i)
            palette[i] = {static_cast<BYTE>(255 - i * 9), static_cast<BYTE>(i * 37),
                          static_cast<BYTE>(100 + i * 60), 0};
        section.SetColours(palette);
        section.SetNumbers(Squares(11));
    } else {
        section.SetPixels(bits == 16 ? Squares(0x2B13) : Gradient(width, height));
    }
    return section;
}

// The pixels as GDI itself reads them.
std::vector<std::uint32_t> PixelsByGdi(const DibSection& section)
{
    const base::MemoryContext context(CreateCompatibleDC(nullptr));
    const base::Selection selected(context.get(), section.get());
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const COLORREF colour = GetPixel(context.get(), x, y);
            pixels.push_back(static_cast<std::uint32_t>(
                RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour))));
        }
    return pixels;
}

void ExpectPicture(const std::wstring& path, const DibSection& section, int error)
{
    Gdiplus::Bitmap read(path.c_str());
    const std::string name(path.begin(), path.end());
    ASSERT_EQ(read.GetWidth(), UINT{width}) << name;
    ASSERT_EQ(read.GetHeight(), UINT{height}) << name;
    EXPECT_LE(LargestDifference(PixelsOf(read), PixelsByGdi(section)), error) << name;
}

// True when GDI+ itself writes the bitmap as a GIF file.
bool GdiPlusSavesGif(const DibSection& section)
{
    const test_support::TemporaryFolder folder;
    CLSID clsid = {};
    GetEncoderClsid(L"image/gif", &clsid);
    Gdiplus::Bitmap image(section.get(), nullptr);
    return image.Save((folder / L"itself.gif").c_str(), &clsid, nullptr) == Gdiplus::Ok;
}

std::wstring s_savedPath;
CLSID s_savedClsid;
const EncoderParameters* s_savedParameters;

Gdiplus::GpStatus WINAPI WatchedSave(Gdiplus::GpImage* image, const WCHAR* path, const CLSID* clsid,
                                     const EncoderParameters* parameters)
{
    s_savedPath = path;
    s_savedClsid = *clsid;
    s_savedParameters = parameters;
    return Gdiplus::DllExports::GdipSaveImageToFile(image, path, clsid, parameters);
}

} // namespace

TEST_F(EncoderTest, FindsTheInstalledEncodersByTheirMimeTypes)
{
    for (const wchar_t* const mimeType :
         {L"image/bmp", L"image/gif", L"image/jpeg", L"image/png", L"image/tiff"}) {
        CLSID clsid = {};
        const int index = GetEncoderClsid(mimeType, &clsid);
        UINT count = 0;
        UINT bytes = 0;
        ASSERT_EQ(Gdiplus::GetImageEncodersSize(&count, &bytes), Gdiplus::Ok);
        std::vector<std::byte> memory(bytes);
        auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(memory.data());
        ASSERT_EQ(Gdiplus::GetImageEncoders(count, bytes, encoders), Gdiplus::Ok);
        ASSERT_GE(index, 0);
        ASSERT_LT(index, static_cast<int>(count));
        EXPECT_STREQ(encoders[index].MimeType, mimeType);
        EXPECT_EQ(std::memcmp(&encoders[index].Clsid, &clsid, sizeof clsid), 0);
    }
}

TEST_F(EncoderTest, ComparesMimeTypesExactly)
{
    for (const wchar_t* const mimeType : {L"image/PNG", L"image/png ", L"png", L""}) {
        CLSID clsid;
        std::memset(&clsid, 0x5A, sizeof clsid);
        const CLSID before = clsid;
        EXPECT_EQ(GetEncoderClsid(mimeType, &clsid), -1);
        EXPECT_EQ(std::memcmp(&clsid, &before, sizeof clsid), 0);
    }
    CLSID clsid;
    EXPECT_EQ(GetEncoderClsid(nullptr, &clsid), -1);
    EXPECT_EQ(GetEncoderClsid(L"image/png", nullptr), -1);
}

void ExpectLong(const Gdiplus::EncoderParameter& parameter, const GUID& guid, ULONG value)
{
    EXPECT_EQ(std::memcmp(&parameter.Guid, &guid, sizeof guid), 0);
    EXPECT_EQ(parameter.NumberOfValues, 1u);
    EXPECT_EQ(parameter.Type, static_cast<ULONG>(Gdiplus::EncoderParameterValueTypeLong));
    EXPECT_EQ(*static_cast<ULONG*>(parameter.Value), value);
}

TEST_F(EncoderTest, ChoosesJpegWithFullQualityForUnknownFormats)
{
    for (const int format : {2, 7, -1, 5, INT_MAX, INT_MIN}) {
        CLSID clsid = {};
        const Block block = Compression(format, 0, &clsid);
        ASSERT_TRUE(block);
        const CLSID jpeg = EncoderOf(L"image/jpeg");
        EXPECT_EQ(std::memcmp(&clsid, &jpeg, sizeof clsid), 0);
        ASSERT_EQ(block->Count, 1u);
        ExpectLong(block->Parameter[0], quality, 100u);
    }
}

TEST_F(EncoderTest, StatesTheColourDepthOfTiff)
{
    CLSID clsid = {};
    const Block block = Compression(4, 2, &clsid);
    ASSERT_TRUE(block);
    const CLSID tiff = EncoderOf(L"image/tiff");
    EXPECT_EQ(std::memcmp(&clsid, &tiff, sizeof clsid), 0);
    ASSERT_EQ(block->Count, 3u);
    ExpectLong(block->Parameter[0], colourDepth, 32u);
}

TEST_F(EncoderTest, FillsNothingInForTheOtherFormats)
{
    const std::pair<int, const wchar_t*> formats[] = {
        {0, L"image/bmp"}, {1, L"image/gif"}, {3, L"image/png"}};
    for (const auto& [format, mimeType] : formats) {
        CLSID clsid = {};
        const Block block = Compression(format, 3, &clsid);
        ASSERT_TRUE(block);
        const CLSID expected = EncoderOf(mimeType);
        EXPECT_EQ(std::memcmp(&clsid, &expected, sizeof clsid), 0);
        EXPECT_EQ(block->Count, 3u);
        const EncoderParameter none = {};
        for (int record = 0; record < 4; ++record)
            EXPECT_EQ(std::memcmp(&block->Parameter[record], &none, sizeof none), 0);
    }
}

// 28 * extra + 32 and 28 * extra + 60 bytes in 32-bit programs.
TEST_F(EncoderTest, MakesRoomForOneRecordMoreThanAreCounted)
{
    for (const int extra : {0, 1, 9}) {
        constexpr std::size_t record = sizeof(EncoderParameter);
        const auto room = [&](int records) {
            return offsetof(EncoderParameters, Parameter) +
                   static_cast<std::size_t>(records) * record;
        };
        EXPECT_GE(_msize(Compression(3, extra).get()), room(extra + 1));
        EXPECT_GE(_msize(Compression(2, extra).get()), room(extra + 2));
        EXPECT_GE(_msize(Compression(4, extra).get()), room(extra + 2));
    }
#ifndef _WIN64
    EXPECT_EQ(offsetof(EncoderParameters, Parameter) + sizeof(EncoderParameter), 32u);
    EXPECT_EQ(offsetof(EncoderParameters, Parameter) + 2 * sizeof(EncoderParameter), 60u);
#endif
}

TEST_F(EncoderTest, KeepsTheValueOfABlockForLaterOnes)
{
    const Block jpeg = Compression(2, 0);
    const Block tiff = Compression(4, 0);
    const Block again = Compression(2, 0);
    EXPECT_EQ(*static_cast<ULONG*>(jpeg->Parameter[0].Value), 100u);
    EXPECT_EQ(*static_cast<ULONG*>(tiff->Parameter[0].Value), 32u);
    EXPECT_EQ(*static_cast<ULONG*>(again->Parameter[0].Value), 100u);
}

TEST_F(EncoderTest, GivesNoBlockForASizeThatThereCannotBe)
{
    for (const int format : {0, 2, 4})
        for (const int extra : {-1, -100, INT_MIN})
            EXPECT_FALSE(Compression(format, extra)) << format << ' ' << extra;
#ifndef _WIN64
    EXPECT_FALSE(Compression(2, INT_MAX));
#endif
    CLSID clsid;
    GetCompression(2, nullptr, &clsid, 0); // is ignored
    EncoderParameters* params = nullptr;
    GetCompression(2, &params, nullptr, 0);
    EXPECT_TRUE(Block(params));
}

TEST_F(EncoderTest, MakesBlocksThatTheEncoderTakes)
{
    const test_support::TemporaryFolder folder;
    const Image image = ImageOf(8, 8, Gradient(8, 8));
    for (const int format : {2, 4}) {
        CLSID clsid = {};
        const Block block = Compression(format, 0, &clsid);
        const std::wstring path = folder / (L"block" + std::to_wstring(format));
        EXPECT_EQ(image->Save(path.c_str(), &clsid, block.get()), Gdiplus::Ok) << format;
    }
}

TEST_F(SaveBitmapTest, WritesEachFormatSoThatItCanBeReadBack)
{
    const std::vector<std::uint32_t> pixels = Gradient(45, 31);
    for (const auto order : {DibSection::topDown, DibSection::bottomUp}) {
        const DibSection section(45, 31, 32, order);
        section.SetPixels(pixels);
        for (const FileFormat& file : fileFormats) {
            const std::wstring path = m_folder / (std::wstring(L"saved.") + file.extension);
            ASSERT_TRUE(SaveBitmap(section.get(), file.format, path.c_str())) << file.format;
            EXPECT_EQ(test_support::ReadFile(path).substr(0, file.start.size()), file.start);
            Gdiplus::Bitmap read(path.c_str());
            ASSERT_EQ(read.GetWidth(), 45u) << file.format;
            ASSERT_EQ(read.GetHeight(), 31u);
            EXPECT_LE(LargestDifference(PixelsOf(read), pixels), file.error) << file.format;
        }
    }
}

// GIF files have tests of their own, because not every implementation of GDI+ writes all of them.
TEST_F(SaveBitmapTest, SavesThePictureOfEveryDepth)
{
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        const DibSection section = Colourful(bits);
        for (const FileFormat& file : fileFormats) {
            if (file.format == gifFormat) continue;
            const std::wstring path = m_folder / (std::to_wstring(bits) + L"." + file.extension);
            ASSERT_TRUE(SaveBitmap(section.get(), file.format, path.c_str())) << bits;
            ExpectPicture(path, section, file.error + RoundingOf(bits));
        }
    }
    const base::WindowContext screen(nullptr);
    const base::Bitmap device(CreateCompatibleBitmap(screen.get(), 3, 2));
    EXPECT_TRUE(SaveBitmap(device.get(), 3, (m_folder / L"device.png").c_str()));
}

TEST_F(SaveBitmapTest, SavesGifFilesOfMoreThan256ColoursWithSimilarOnes)
{
    for (const int bits : {16, 24, 32}) {
        const DibSection section = Colourful(bits);
        const std::wstring path = m_folder / (std::to_wstring(bits) + L".gif");
        ASSERT_TRUE(SaveBitmap(section.get(), gifFormat, path.c_str())) << bits;
        ExpectPicture(path, section, 40);
    }
}

TEST_F(SaveBitmapTest, SavesGifFilesOf256ColoursExactly)
{
    const DibSection section = Colourful(8);
    const std::wstring path = m_folder / L"8.gif";
    ASSERT_TRUE(SaveBitmap(section.get(), gifFormat, path.c_str()));
    ExpectPicture(path, section, 0);
}

// The answer is false where GDI+ itself cannot write the file.
TEST_F(SaveBitmapTest, SavesGifFilesOfFewColoursExactlyWhereGdiPlusCan)
{
    for (const int bits : {1, 4}) {
        const DibSection section = Colourful(bits);
        const std::wstring path = m_folder / (std::to_wstring(bits) + L".gif");
        const bool isSaved = SaveBitmap(section.get(), gifFormat, path.c_str());
        EXPECT_EQ(isSaved, GdiPlusSavesGif(section)) << bits;
        if (isSaved) ExpectPicture(path, section, 0);
    }
}

TEST_F(SaveBitmapTest, PassesTheEncoderAndNoParametersToGdiPlus)
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "GdipSaveImageToFile", &WatchedSave);
    const DibSection section(2, 2, 32, DibSection::topDown);
    const wchar_t* const mimeTypes[] = {L"image/bmp", L"image/gif", L"image/jpeg", L"image/png",
                                        L"image/tiff"};
    for (const FileFormat& file : fileFormats) {
        const std::wstring path = m_folder / L"watched";
        ASSERT_TRUE(SaveBitmap(section.get(), file.format, path.c_str()));
        EXPECT_EQ(s_savedPath, path);
        CLSID expected = {};
        GetEncoderClsid(mimeTypes[file.format], &expected);
        EXPECT_EQ(std::memcmp(&s_savedClsid, &expected, sizeof expected), 0) << file.format;
        EXPECT_EQ(s_savedParameters, nullptr) << file.format;
    }
}

TEST_F(SaveBitmapTest, ReplacesTheFile)
{
    const std::wstring path = m_folder / L"twice.bmp";
    test_support::WriteFile(path, std::string(100000, 'x'));
    const DibSection section(2, 2, 32, DibSection::topDown);
    ASSERT_TRUE(SaveBitmap(section.get(), 0, path.c_str()));
    EXPECT_LT(test_support::ReadFile(path).size(), 1000u);
}

TEST_F(SaveBitmapTest, FailsWithoutABitmapOrAPlaceForTheFile)
{
    const DibSection section(2, 2, 32, DibSection::topDown);
    EXPECT_FALSE(SaveBitmap(nullptr, 3, (m_folder / L"none.png").c_str()));
    EXPECT_FALSE(SaveBitmap(section.get(), 3, nullptr));
    EXPECT_FALSE(SaveBitmap(section.get(), 3, L""));
    EXPECT_FALSE(SaveBitmap(section.get(), 3, m_folder.Path().c_str()));
    EXPECT_FALSE(SaveBitmap(section.get(), 3, (m_folder / L"no\\folder\\a.png").c_str()));
    const auto brush = static_cast<HBITMAP>(GetStockObject(BLACK_BRUSH));
    EXPECT_FALSE(SaveBitmap(brush, 3, (m_folder / L"brush.png").c_str()));
    EXPECT_FALSE(test_support::FileExists(m_folder / L"none.png"));
}

TEST_F(SaveBitmapTest, LeavesNothingBehind)
{
    const DibSection section(20, 20, 32, DibSection::topDown);
    const std::wstring path = m_folder / L"again.png";
    SaveBitmap(section.get(), 3, path.c_str());
    const DWORD objects = test_support::DrawingObjectCount();
    const DWORD handles = test_support::HandleCount();
    for (int i = 0; i < 20; ++i) {
        SaveBitmap(section.get(), 3, path.c_str());
        SaveBitmap(section.get(), 3, m_folder.Path().c_str());
    }
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
    EXPECT_EQ(test_support::HandleCount(), handles);
}

TEST_F(SaveBitmapTest, WritesPicturesForOtherReaders)
{
    const std::wstring folder = test_support::EnvironmentVariable(L"PICTURE_FOLDER");
    if (folder.empty()) GTEST_SKIP() << "run by picture-readers, which sets PICTURE_FOLDER";
    const DibSection section(64, 48, 32, DibSection::bottomUp);
    section.SetPixels(Gradient(64, 48));
    for (const FileFormat& file : fileFormats)
        ASSERT_TRUE(SaveBitmap(section.get(), file.format,
                               (folder + L"\\saved." + file.extension).c_str()));
    std::string bytes;
    for (const std::uint32_t pixel : Gradient(64, 48))
        for (const int shift : {16, 8, 0})
            bytes += static_cast<char>(pixel >> shift);
    test_support::WriteFile(folder + L"\\expected.rgb", bytes);
}

TEST(CreateGrayscalePalette, HasTwoHundredAndFiftySixOpaqueGreys)
{
    const std::unique_ptr<Gdiplus::ColorPalette> palette(CreateGrayscalePalette());
    ASSERT_TRUE(palette);
    EXPECT_EQ(palette->Flags, 2u);
    EXPECT_EQ(palette->Count, 256u);
    EXPECT_EQ(palette->Entries[0], 0xFF000000u);
    const Gdiplus::ARGB* const entries = palette->Entries;
    for (unsigned i = 0; i < 256; ++i)
        EXPECT_EQ(entries[i], 0xFF000000u + i * 0x010101u);
    EXPECT_EQ(entries[255], 0xFFFFFFFFu);
    static_assert(offsetof(Gdiplus::ColorPalette, Entries) + 256 * sizeof(Gdiplus::ARGB) == 1032);
}

TEST(CreateGrayscalePalette, IsAPaletteThatGdiPlusTakes)
{
    const base::GdiPlusSession session;
    const std::unique_ptr<Gdiplus::ColorPalette> palette(CreateGrayscalePalette());
    Gdiplus::Bitmap image(4, 4, PixelFormat8bppIndexed);
    ASSERT_EQ(image.SetPalette(palette.get()), Gdiplus::Ok);
    Gdiplus::Color colour;
    image.GetPixel(0, 0, &colour);
    EXPECT_EQ(colour.GetValue(), 0xFF000000u);
}
