// Loading images from files, from resources and from the icon store.
#include "GdiPlus.h"
#include "PictureFiles.h"

#include <base/GdiHandles.h>
#include <gtest/gtest.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/ResourceCounts.h>
#include <test_support/StoreFolder.h>
#include <test_support/TemporaryFolder.h>

#include <cmath>
#include <new>

namespace {

constexpr SIZE noSize = {-1, -1};

// The pixels of a device bitmap, top row first, with their fourth bytes.
std::vector<std::uint32_t> DevicePixels(HBITMAP bitmap)
{
    BITMAP description = {};
    GetObjectW(bitmap, sizeof description, &description);
    BITMAPINFOHEADER header = {
        sizeof header, description.bmWidth, -description.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<std::uint32_t> pixels(
        static_cast<std::size_t>(description.bmWidth * description.bmHeight));
    const base::WindowContext screen(nullptr);
    GetDIBits(screen.get(), bitmap, 0, static_cast<UINT>(description.bmHeight), pixels.data(),
              reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS);
    return pixels;
}

SIZE SizeOf(HBITMAP bitmap)
{
    BITMAP description = {};
    GetObjectW(bitmap, sizeof description, &description);
    return {description.bmWidth, description.bmHeight};
}

bool operator==(SIZE a, SIZE b)
{
    return a.cx == b.cx && a.cy == b.cy;
}

bool IsNear(std::uint32_t pixel, std::uint32_t expected, int tolerance)
{
    for (int shift = 0; shift < 24; shift += 8)
        if (std::abs(static_cast<int>(pixel >> shift & 0xFF) -
                     static_cast<int>(expected >> shift & 0xFF)) > tolerance)
            return false;
    return true;
}

// The compiler's name for the operator new of one object.
#ifdef _WIN64
constexpr const char* newName = "_Znwy";
#else
constexpr const char* newName = "_Znwj";
#endif

void* NoMemory(std::size_t)
{
    throw std::bad_alloc();
}

class LoadingTest : public GdiPlusTest
{
protected:
    std::wstring WritePng(const wchar_t* name, int width, int height,
                          const std::vector<std::uint32_t>& pixels)
    {
        const std::wstring path = m_folder / name;
        test_support::WriteFile(path, PngFile(width, height, pixels));
        return path;
    }

    test_support::TemporaryFolder m_folder;
};
class BitmapFromFileTest : public LoadingTest
{
};
class ResizeImageTest : public LoadingTest
{
};
class LoadImageFromResourceTest : public LoadingTest
{
};

class IconStoreTest : public LoadingTest
{
protected:
    void SetUp() override
    {
        CreateDirectoryW((m_folder / L"store").c_str(), nullptr);
        CreateDirectoryW((m_folder / L"store\\status").c_str(), nullptr);
        CreateDirectoryW((m_folder / L"store2").c_str(), nullptr);
    }

    static bool IsApplicationIcon(const Image& image)
    {
        const Image icon(Gdiplus::Bitmap::FromHICON(LoadIconW(nullptr, IDI_APPLICATION)));
        return image && image->GetLastStatus() == Gdiplus::Ok &&
               PixelsOf(*image) == PixelsOf(*icon);
    }

private:
    test_support::StoreFolder m_store{qor_utils::imagesStore, m_folder / L"store"};
};

using Pixels = std::vector<std::uint32_t>;
const Pixels four = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF102030};
const Pixels transparent = {0x00FF0000, 0x8000FF00};

} // namespace

TEST_F(BitmapFromFileTest, TurnsAPictureIntoADeviceBitmapOfItsOwnSize)
{
    const std::wstring path = WritePng(L"four.png", 2, 2, four);
    const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str()));
    ASSERT_TRUE(bitmap);
    ASSERT_TRUE(SizeOf(*bitmap) == SIZE({2, 2}));
    const Pixels pixels = DevicePixels(*bitmap);
    for (std::size_t i = 0; i < four.size(); ++i)
        EXPECT_TRUE(IsNear(pixels[i], four[i], 0)) << std::hex << pixels[i];
}

TEST_F(BitmapFromFileTest, PutsWhatIsTransparentOnTheBackground)
{
    const std::wstring path = WritePng(L"through.png", 2, 1, transparent);
    for (const bool sized : {false, true}) {
        const SIZE size = {2, 1};
        const std::unique_ptr<CBitmap> bitmap(
            BitmapFromFile(path.c_str(), sized ? &size : nullptr, false, 0xFFC06020));
        ASSERT_TRUE(bitmap);
        EXPECT_TRUE(IsNear(DevicePixels(*bitmap)[0], 0xC06020, 1))
            << std::hex << DevicePixels(*bitmap)[0] << sized;
    }
}

TEST_F(BitmapFromFileTest, ScalesAPictureToTheWholeOfASize)
{
    const std::wstring path = WritePng(L"plain.png", 4, 4, Pixels(16, 0xFF336699));
    const SIZE sizes[] = {{1, 1}, {37, 3}, {8, 120}};
    for (const SIZE size : sizes) {
        const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str(), &size));
        ASSERT_TRUE(bitmap);
        EXPECT_TRUE(SizeOf(*bitmap) == size);
        const Pixels pixels = DevicePixels(*bitmap);
        EXPECT_TRUE(IsNear(pixels[pixels.size() / 2], 0x336699, 1)) << std::hex << pixels[0];
    }
}

TEST_F(BitmapFromFileTest, RefusesSizesThatNoBitmapHas)
{
    const std::wstring path = WritePng(L"plain.png", 4, 4, Pixels(16, 0xFF336699));
    const SIZE sizes[] = {{0, 0},       {0, 5},        {5, 0},
                          {-1, 5},      {-5, -5},      {60000, 60000},
                          {INT_MAX, 1}, {1, INT_MAX},  {INT_MAX, INT_MAX},
                          {INT_MIN, 1}, {32768, 32768}};
    for (const SIZE size : sizes)
        EXPECT_EQ(BitmapFromFile(path.c_str(), &size), nullptr) << size.cx << 'x' << size.cy;
}

TEST_F(BitmapFromFileTest, TurnsThePictureGreyAfterItWasPutOnItsBackground)
{
    const std::wstring path =
        WritePng(L"grey.png", 2, 2, {0xFFFF0000, 0x00000000, 0xFF0000FF, 0xFFFFFFFF});
    const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str(), nullptr, true, 0xFF00FF00));
    ASSERT_TRUE(bitmap);
    // The second pixel is the grey of the background; rows are in order.
    EXPECT_EQ(DevicePixels(*bitmap), (Pixels{0xFF4C4C4C, 0xFF969696, 0xFF1C1C1C, 0xFFFFFFFF}));
}

TEST_F(BitmapFromFileTest, TakesAFileForAnIconByItsExtensionAlone)
{
    for (const wchar_t* const name : {L"icon.ico", L"ICON.ICO", L"Icon.Ico", L"a.png.iCO"}) {
        const std::wstring path = m_folder / name;
        test_support::WriteFile(path, IconFile(16, 0xFF204060, 0xFFE0A080));
        const SIZE ignored = {99, 99};
        const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str(), &ignored));
        ASSERT_TRUE(bitmap);
        ASSERT_TRUE(SizeOf(*bitmap) == SIZE({16, 16}));
        const Pixels pixels = DevicePixels(*bitmap);
        EXPECT_TRUE(IsNear(pixels.front(), 0x204060, 0)) << std::hex << pixels.front();
        EXPECT_TRUE(IsNear(pixels.back(), 0xE0A080, 0)) << std::hex << pixels.back();
    }
    const std::wstring picture = WritePng(L"picture.ico", 2, 2, four);
    test_support::WriteFile(picture, "BM, says the file, but its name says icon");
    EXPECT_EQ(BitmapFromFile(picture.c_str()), nullptr);
}

TEST_F(BitmapFromFileTest, TurnsAnIconGrey)
{
    const std::wstring path = m_folder / L"icon.ico";
    test_support::WriteFile(path, IconFile(16, 0xFFFF0000, 0xFF00FF00));
    const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str(), nullptr, true));
    ASSERT_TRUE(bitmap);
    const Pixels pixels = DevicePixels(*bitmap);
    EXPECT_EQ(pixels.front(), 0xFF4C4C4C);
    EXPECT_EQ(pixels.back(), 0xFF969696);
}

TEST_F(BitmapFromFileTest, GivesAnIconItsBackground)
{
    const std::wstring path = m_folder / L"icon.ico";
    test_support::WriteFile(path, IconFile(16, 0x00000000, 0xFF00FF00));
    const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str(), nullptr, false, 0xFF8040C0));
    ASSERT_TRUE(bitmap);
    EXPECT_TRUE(IsNear(DevicePixels(*bitmap).front(), 0x8040C0, 1))
        << std::hex << DevicePixels(*bitmap).front();
}

// A picture is readable whatever the size of its screen.
TEST_F(BitmapFromFileTest, LoadsAGifFileWhateverItsScreen)
{
    const std::wstring path = m_folder / L"screen.gif";
    for (const SizeOfGif screen : {SizeOfGif{0, 0}, SizeOfGif{1, 1}, SizeOfGif{65535, 65535}}) {
        test_support::WriteFile(path, GifFile(screen, {1, 1}));
        const Image itself(Gdiplus::Bitmap::FromFile(path.c_str()));
        const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str()));
        ASSERT_EQ(bitmap != nullptr, itself->GetLastStatus() == Gdiplus::Ok) << screen.width;
        if (!bitmap) continue;
        EXPECT_TRUE(SizeOf(*bitmap) == SIZE({1, 1}));
        EXPECT_TRUE(IsNear(DevicePixels(*bitmap)[0], 0xFF0000, 0));
    }
    test_support::WriteFile(path, GifFile({0, 0}, {1, 1}));
    EXPECT_TRUE(std::unique_ptr<CBitmap>(BitmapFromFile(path.c_str())));
}

TEST_F(BitmapFromFileTest, LoadsAnIconBesideABadEntry)
{
    const std::wstring path = m_folder / L"mixed.ico";
    const std::string bad[] = {"junk, and no picture", "", PngFileThatClaims(60000, 60000),
                               IconPictureThatClaims(60000, 60000)};
    const std::string good = IconPicture(16, 0xFF204060, 0xFF204060);
    for (const std::string& entry : bad) {
        test_support::WriteFile(path, IconFileOf(16, {good, entry}));
        const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str()));
        ASSERT_TRUE(bitmap) << entry.size();
        EXPECT_TRUE(SizeOf(*bitmap) == SIZE({16, 16}));
        EXPECT_TRUE(IsNear(DevicePixels(*bitmap)[0], 0x204060, 0));
    }
}

TEST_F(BitmapFromFileTest, FailsWhenMemoryIsShort)
{
    const std::wstring path = WritePng(L"four.png", 2, 2, four);
    const test_support::ImportHook hook(L"Utils_Statics.dll", newName, &NoMemory);
    EXPECT_NO_THROW(EXPECT_EQ(BitmapFromFile(path.c_str()), nullptr));
}

TEST_F(BitmapFromFileTest, FailsForWhatIsNoPicture)
{
    EXPECT_EQ(BitmapFromFile(nullptr), nullptr);
    EXPECT_EQ(BitmapFromFile(L""), nullptr);
    EXPECT_EQ(BitmapFromFile((m_folder / L"missing.png").c_str()), nullptr);
    EXPECT_EQ(BitmapFromFile((m_folder / L"missing.ico").c_str()), nullptr);
    EXPECT_EQ(BitmapFromFile(m_folder.Path().c_str()), nullptr);
    CreateDirectoryW((m_folder / L"folder.ico").c_str(), nullptr);
    EXPECT_EQ(BitmapFromFile((m_folder / L"folder.ico").c_str()), nullptr);
    test_support::WriteFile(m_folder / L"empty.png", "");
    EXPECT_EQ(BitmapFromFile((m_folder / L"empty.png").c_str()), nullptr);
    test_support::WriteFile(m_folder / L"empty.ico", "");
    EXPECT_EQ(BitmapFromFile((m_folder / L"empty.ico").c_str()), nullptr);
    test_support::WriteFile(m_folder / L"text.png", "this is no picture");
    EXPECT_EQ(BitmapFromFile((m_folder / L"text.png").c_str()), nullptr);
}

TEST_F(ResizeImageTest, KeepsWhatIsMinusOne)
{
    const std::wstring path = WritePng(L"plain.png", 40, 30, Pixels(1200, 0xFF336699));
    const struct
    {
        SIZE asked;
        SIZE expected;
    } cases[] = {
        {{-1, 120}, {40, 120}}, {{7, -1}, {7, 30}}, {{-1, -1}, {40, 30}}, {{3, 5}, {3, 5}}};
    for (const auto& [asked, expected] : cases) {
        SIZE size = asked;
        const base::Bitmap bitmap(ResizeImage(path.c_str(), &size));
        ASSERT_TRUE(bitmap);
        EXPECT_TRUE(SizeOf(bitmap.get()) == expected) << asked.cx << 'x' << asked.cy;
        EXPECT_TRUE(size == asked);
        const Pixels pixels = DevicePixels(bitmap.get());
        EXPECT_TRUE(IsNear(pixels[pixels.size() / 2], 0x336699, 1));
    }
    const base::Bitmap bitmap(ResizeImage(path.c_str(), nullptr));
    EXPECT_TRUE(SizeOf(bitmap.get()) == SIZE({40, 30}));
}

TEST_F(ResizeImageTest, ScalesTheHeightAlone)
{
    Pixels halves(40 * 30, 0xFFFF0000);
    std::fill(halves.begin() + 600, halves.end(), 0xFF0000FF);
    const std::wstring path = WritePng(L"halves.png", 40, 30, halves);
    SIZE size = {-1, 120};
    const base::Bitmap bitmap(ResizeImage(path.c_str(), &size));
    const Pixels pixels = DevicePixels(bitmap.get());
    ASSERT_EQ(pixels.size(), 40u * 120u);
    EXPECT_TRUE(IsNear(pixels[40 * 30 + 20], 0xFF0000, 1));
    EXPECT_TRUE(IsNear(pixels[40 * 90 + 20], 0x0000FF, 1));
}

TEST_F(ResizeImageTest, IsBlackWhereTheImageIsTransparent)
{
    const std::wstring path = WritePng(L"through.png", 8, 8, Pixels(64, 0x00FF00FF));
    const base::Bitmap bitmap(ResizeImage(path.c_str(), nullptr));
    for (const std::uint32_t pixel : DevicePixels(bitmap.get()))
        EXPECT_EQ(pixel & 0xFFFFFF, 0u);
}

TEST_F(ResizeImageTest, FailsForSizesThatNoBitmapHasAndForWhatIsNoPicture)
{
    const std::wstring path = WritePng(L"plain.png", 4, 4, Pixels(16, 0xFF336699));
    const SIZE sizes[] = {{0, -1},        {-1, 0},       {-2, 5},
                          {60000, 60000}, {-1, INT_MIN}, {INT_MAX, INT_MAX},
                          {40000, 35791}};
    for (SIZE size : sizes)
        EXPECT_EQ(ResizeImage(path.c_str(), &size), nullptr) << size.cx << 'x' << size.cy;
    SIZE size = noSize;
    EXPECT_EQ(ResizeImage(nullptr, &size), nullptr);
    EXPECT_EQ(ResizeImage(L"", &size), nullptr);
    EXPECT_EQ(ResizeImage((m_folder / L"missing.png").c_str(), &size), nullptr);
    EXPECT_EQ(ResizeImage(m_folder.Path().c_str(), &size), nullptr);
    test_support::WriteFile(path, "this is no picture");
    EXPECT_EQ(ResizeImage(path.c_str(), &size), nullptr);
}

TEST_F(LoadImageFromResourceTest, LoadsAPicture)
{
    Gdiplus::Bitmap* out = nullptr;
    ASSERT_TRUE(LoadImageFromResource(&out, GetModuleHandleW(nullptr), L"good", RT_RCDATA));
    const Image image(out);
    ASSERT_EQ(image->GetWidth(), 2u);
    const Pixels pixels = PixelsOf(*image);
    EXPECT_EQ(pixels[0], 0xFFFF0000);
    EXPECT_EQ(pixels[1], 0x8000FF00);
    EXPECT_EQ(pixels[2], 0xFF0000FF);
}

TEST_F(LoadImageFromResourceTest, FailsWithoutAPicture)
{
    const struct
    {
        const wchar_t* name;
        const wchar_t* type;
    } cases[] = {{L"missing", RT_RCDATA},   {L"good", L"OTHER"},  {L"text", RT_RCDATA},
                 {L"truncated", RT_RCDATA}, {nullptr, RT_RCDATA}, {L"good", nullptr},
                 {L"enormous", RT_RCDATA}};
    for (const auto& [name, type] : cases) {
        auto* out = reinterpret_cast<Gdiplus::Bitmap*>(1);
        EXPECT_FALSE(LoadImageFromResource(&out, GetModuleHandleW(nullptr), name, type));
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_FALSE(LoadImageFromResource(nullptr, GetModuleHandleW(nullptr), L"good", RT_RCDATA));
}

TEST_F(IconStoreTest, LoadsAnImageByItsName)
{
    test_support::WriteFile(m_folder / L"store\\status\\four.png", PngFile(2, 2, four));
    for (const wchar_t* const name : {L"status/four.png", L"status\\four.png",
                                      L"\\status\\four.png", L"status\\..\\status\\four.png"}) {
        const Image image(LoadImageFromIconStore(name));
        ASSERT_TRUE(image);
        EXPECT_EQ(PixelsOf(*image), four);
    }
}

TEST_F(IconStoreTest, FallsBackToTheApplicationIcon)
{
    test_support::WriteFile(m_folder / L"store\\text.png", "this is no picture");
    for (const wchar_t* const name :
         {L"missing.png", L"text.png", L"status", L"", L"a:b", L"C:\\x.png", L"<>|",
          L"..\\missing.png", L"status/../../missing.png", L"..", L"..\\store2", L"nul"})
        EXPECT_TRUE(IsApplicationIcon(Image(LoadImageFromIconStore(name))));
    EXPECT_TRUE(IsApplicationIcon(Image(LoadImageFromIconStore(nullptr))));
    EXPECT_TRUE(
        IsApplicationIcon(Image(LoadImageFromIconStore(std::wstring(40000, L'x').c_str()))));
}

TEST_F(IconStoreTest, FollowsANameToWhereverItLeads)
{
    test_support::WriteFile(m_folder / L"outside.png", PngFile(2, 2, four));
    test_support::WriteFile(m_folder / L"store2\\beside.png", PngFile(2, 2, four));
    for (const wchar_t* const name :
         {L"..\\outside.png", L"status/../../outside.png", L"..\\store2\\beside.png"}) {
        const Image image(LoadImageFromIconStore(name));
        ASSERT_TRUE(image);
        EXPECT_EQ(PixelsOf(*image), four);
    }
}

// Calls each function many times, with good and bad files.
TEST_F(LoadingTest, LeavesNothingBehind)
{
    const std::wstring good = WritePng(L"good.png", 2, 2, four);
    const std::wstring icon = m_folder / L"icon.ico";
    test_support::WriteFile(icon, IconFile(16, 0xFF204060, 0xFFE0A080));
    const std::wstring bad = m_folder / L"bad.png";
    test_support::WriteFile(bad, PngFile(2, 2, four).substr(0, 50));
    const auto useAll = [&] {
        SIZE size = {30, 20};
        for (const std::wstring& path : {good, icon, bad, m_folder.Path()}) {
            delete BitmapFromFile(path.c_str(), &size, true);
            delete BitmapFromFile(path.c_str());
            const base::Bitmap resized(ResizeImage(path.c_str(), &size));
        }
        for (const wchar_t* const name : {L"good", L"text", L"enormous"}) {
            Gdiplus::Bitmap* out = nullptr;
            LoadImageFromResource(&out, GetModuleHandleW(nullptr), name, RT_RCDATA);
            delete out;
        }
        delete LoadImageFromIconStore(L"missing.png");
    };
    useAll();
    const DWORD objects = test_support::DrawingObjectCount();
    const DWORD users = test_support::UserObjectCount();
    const DWORD handles = test_support::HandleCount();
    for (int i = 0; i < 20; ++i)
        useAll();
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
    EXPECT_EQ(test_support::UserObjectCount(), users);
    EXPECT_EQ(test_support::HandleCount(), handles);
    EXPECT_TRUE(DeleteFileW(good.c_str())); // no call keeps it open
}

TEST_F(LoadingTest, ReadsPicturesOfOtherWriters)
{
    const std::wstring folder = test_support::EnvironmentVariable(L"PICTURE_FOLDER");
    if (folder.empty()) GTEST_SKIP() << "run by picture-readers, which sets PICTURE_FOLDER";
    for (const wchar_t* const extension : {L"bmp", L"gif", L"jpg", L"png", L"tif"}) {
        const std::wstring path = folder + L"\\made." + extension;
        const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(path.c_str()));
        ASSERT_TRUE(bitmap);
        ASSERT_TRUE(SizeOf(*bitmap) == SIZE({40, 30}));
        const Pixels pixels = DevicePixels(*bitmap);
        EXPECT_TRUE(IsNear(pixels.front(), 0xFA0A28, 8)) << std::hex << pixels.front();
        EXPECT_TRUE(IsNear(pixels.back(), 0x14F050, 8)) << std::hex << pixels.back();
    }
    const std::unique_ptr<CBitmap> icon(BitmapFromFile((folder + L"\\made.ico").c_str()));
    ASSERT_TRUE(icon);
    ASSERT_TRUE(SizeOf(*icon) == SIZE({32, 32}));
    EXPECT_TRUE(IsNear(DevicePixels(*icon).front(), 0xFF0000, 0));
    EXPECT_TRUE(IsNear(DevicePixels(*icon).back(), 0x0000FF, 0));
}
