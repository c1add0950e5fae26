// Turning images grey: GrayScaleBitmap on GDI+ images, GrayScale on device bitmaps. Blending them
// with a background: PreMultiplyRGBChannels.
#include "GdiPlus.h"

#include <gtest/gtest.h>
#include <test_support/DibSection.h>
#include <test_support/ImportHook.h>
#include <test_support/PerPixelForm.h>
#include <test_support/ResourceCounts.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <cstring>
#include <new>
#include <random>

using test_support::DibSection;

namespace {

class GrayScaleBitmapTest : public GdiPlusTest
{
};
class GrayScaleTest : public GdiPlusTest
{
};

// The compiler's name for the operator new of arrays that does not throw.
#ifdef _WIN64
constexpr const char* newArrayName = "_ZnayRKSt9nothrow_t";
#else
constexpr const char* newArrayName = "_ZnajRKSt9nothrow_t";
#endif

void* NoMemory(std::size_t, const std::nothrow_t&)
{
    return nullptr;
}

struct Size
{
    int width;
    int height;
};
constexpr Size oddSizes[] = {{1, 1}, {1, 7}, {7, 1}, {8, 3}, {9, 5}, {17, 11}, {64, 2}, {33, 16}};

} // namespace

TEST_F(GrayScaleBitmapTest, KeepsEveryPixelsAlphaForMinusOne)
{
    const Image image = ImageOf(3, 1, {0x00102030, 0x80FF0000, 0xFF00FF00});
    EXPECT_TRUE(GrayScaleBitmap(image.get(), -1));
    const std::vector<std::uint32_t> expected{0x001C1C1C, 0x804C4C4C, 0xFF969696};
    EXPECT_EQ(PixelsOf(*image), expected);
}

TEST_F(GrayScaleBitmapTest, MakesEveryPixelHalfTransparent)
{
    const Image image = ImageOf(2, 2, {0x00FFFFFF, 0x40FF0000, 0x80000000, 0xFF0000FF});
    EXPECT_TRUE(GrayScaleBitmap(image.get(), 128));
    for (const std::uint32_t pixel : PixelsOf(*image))
        EXPECT_EQ(pixel >> 24, 128u);
}

TEST_F(GrayScaleBitmapTest, TakesTheLowByteOfAnyOtherAlpha)
{
    for (const int alpha : {0, 255, 256, 300, -2, INT_MAX, INT_MIN}) {
        const Image image = ImageOf(9, 1, std::vector<std::uint32_t>(9, 0x80112233));
        EXPECT_TRUE(GrayScaleBitmap(image.get(), alpha));
        for (const std::uint32_t pixel : PixelsOf(*image))
            EXPECT_EQ(pixel >> 24, static_cast<std::uint32_t>(alpha) & 0xFF) << alpha;
    }
}

// Sums that are whole numbers in theory show the rounding of the real numbers.
TEST_F(GrayScaleBitmapTest, CutsTheSumAsRealNumbersRoundIt)
{
    std::vector<std::uint32_t> greys(256), expected(256);
    for (int i = 0; i < 256; ++i) {
        const auto alpha = static_cast<std::uint32_t>(255 - i) << 24;
        const int grey = per_pixel_form::Grey(i, i, i);
        greys[static_cast<std::size_t>(i)] = alpha | static_cast<unsigned>(i) * 0x010101u;
        expected[static_cast<std::size_t>(i)] = alpha | static_cast<unsigned>(grey) * 0x010101u;
    }
    const Image image = ImageOf(256, 1, greys);
    EXPECT_TRUE(GrayScaleBitmap(image.get(), -1));
    EXPECT_EQ(PixelsOf(*image), expected);
}

TEST_F(GrayScaleBitmapTest, EqualsThePlainFormOnEveryColour)
{
    std::vector<std::uint32_t> row(65536);
    for (std::uint32_t red = 0; red < 256; ++red) {
        for (std::uint32_t i = 0; i < row.size(); ++i)
            row[i] = red << 16 | i;
        Gdiplus::Bitmap image(65536 / 16, 16, 65536 / 16 * 4, PixelFormat32bppARGB,
                              reinterpret_cast<BYTE*>(row.data()));
        ASSERT_TRUE(GrayScaleBitmap(&image, 7));
        for (int i = 0; i < 65536; ++i) {
            const int grey = per_pixel_form::Grey(static_cast<int>(red), i >> 8, i & 0xFF);
            ASSERT_EQ(row[static_cast<std::size_t>(i)],
                      0x07000000u + static_cast<unsigned>(grey) * 0x010101u)
                << red << ' ' << i;
        }
    }
}

TEST_F(GrayScaleBitmapTest, EqualsThePlainFormOnRandomImagesOfAllFormats)
{
    unsigned seed = 1;
    for (const Gdiplus::PixelFormat format : allFormats)
        for (const Size size : oddSizes)
            for (const bool bottomUp : {false, true})
                for (const int alpha : {-1, 0, 128, 255}) {
                    const RandomImage plain(format, size.width, size.height, bottomUp, ++seed);
                    const RandomImage fast(format, size.width, size.height, bottomUp, seed);
                    per_pixel_form::GrayScaleBitmap(*plain, alpha);
                    ASSERT_TRUE(GrayScaleBitmap(fast.get(), alpha));
                    ASSERT_EQ(PixelsOf(*fast), PixelsOf(*plain))
                        << std::hex << format << std::dec << ' ' << size.width << 'x' << size.height
                        << (bottomUp ? " bottom-up" : " top-down");
                }
}

TEST_F(GrayScaleBitmapTest, SucceedsOnAnEmptyImageAndFailsOnNone)
{
    Gdiplus::Bitmap empty(0, 0, PixelFormat32bppARGB);
    EXPECT_TRUE(GrayScaleBitmap(&empty, 255));
    EXPECT_FALSE(GrayScaleBitmap(nullptr, 255));
}

TEST_F(GrayScaleBitmapTest, ReturnsWhilePixelsAreLentOut)
{
    const Image image = ImageOf(2, 1, {0xFF112233, 0xFF445566});
    const Gdiplus::Rect all(0, 0, 2, 1);
    Gdiplus::BitmapData lent = {};
    ASSERT_EQ(image->LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB, &lent),
              Gdiplus::Ok);
    EXPECT_TRUE(GrayScaleBitmap(image.get(), 255)); // true, whatever pixels it can reach
    image->UnlockBits(&lent);
    EXPECT_TRUE(GrayScaleBitmap(image.get(), 255));
    const Gdiplus::Color after(PixelsOf(*image)[0]);
    EXPECT_EQ(after.GetR(), after.GetG());
    EXPECT_EQ(after.GetR(), after.GetB());
}

TEST_F(GrayScaleTest, MakesTheColourOfTheTopRightCornerTheKey)
{
    const DibSection section(3, 2, 32, DibSection::topDown);
    section.SetPixels({0xFF102030, 0x55FF00FF, 0x00AABBCC, 0x77AABBCC, 0xFFFFFFFF, 0x01000000});
    ASSERT_TRUE(GrayScale(section.get(), 200));
    const std::vector<std::uint32_t> expected{0xC8161616, 0xC8525252, 0xC8C8C8C8,
                                              0xC8C8C8C8, 0xC8C8C8C8, 0xC8000000};
    EXPECT_EQ(section.Pixels(), expected);
}

TEST_F(GrayScaleTest, EqualsThePlainFormOnRandomSections)
{
    std::mt19937 random(3);
    for (const Size size : oddSizes)
        for (const auto order : {DibSection::topDown, DibSection::bottomUp})
            for (const int alpha : {0, 1, 77, 128, 254, 255}) {
                const DibSection section(size.width, size.height, 32, order);
                std::vector<std::uint32_t> pixels = section.Pixels();
                for (std::uint32_t& pixel : pixels)
                    pixel = static_cast<std::uint32_t>(random()) & 0x80C080FF; // the key repeats
                section.SetPixels(pixels);
                ASSERT_TRUE(GrayScale(section.get(), static_cast<unsigned char>(alpha)));
                per_pixel_form::GrayScale(pixels, size.width, alpha);
                ASSERT_EQ(section.Pixels(), pixels) << size.width << 'x' << size.height;
            }
}

TEST_F(GrayScaleTest, EqualsThePlainFormOnEverySumAndAlpha)
{
    // These colours reach every whole-number sum of the weighted colours.
    std::vector<std::uint32_t> colours{0x00FFFFFF};
    for (std::uint32_t green = 0; green < 256; green += 3)
        for (std::uint32_t red = 0; red < 256; red += 5)
            for (std::uint32_t blue = 0; blue < 256; blue += 7)
                colours.push_back(red << 16 | green << 8 | blue);
    const int count = static_cast<int>(colours.size());
    const DibSection section(count, 1, 32, DibSection::topDown);
    for (int alpha = 0; alpha < 256; ++alpha) {
        std::vector<std::uint32_t> plain = colours;
        std::memcpy(section.bits(), colours.data(), colours.size() * 4);
        ASSERT_TRUE(GrayScale(section.get(), static_cast<unsigned char>(alpha)));
        per_pixel_form::GrayScale(plain, count, alpha);
        ASSERT_EQ(std::memcmp(section.bits(), plain.data(), plain.size() * 4), 0) << alpha;
    }
}

TEST_F(GrayScaleTest, GivesTheSameColoursWith24Bits)
{
    std::mt19937 random(5);
    for (const Size size : oddSizes)
        for (const auto order : {DibSection::topDown, DibSection::bottomUp})
            for (const int alpha : {0, 90, 255}) {
                const DibSection section(size.width, size.height, 24, order);
                std::vector<std::uint32_t> pixels = section.Pixels();
                for (std::uint32_t& pixel : pixels)
                    pixel = static_cast<std::uint32_t>(random()) & 0xFFC0FF;
                section.SetPixels(pixels);
                ASSERT_TRUE(GrayScale(section.get(), static_cast<unsigned char>(alpha)));
                per_pixel_form::GrayScale(pixels, size.width, alpha);
                for (std::uint32_t& pixel : pixels)
                    pixel &= 0xFFFFFF;
                ASSERT_EQ(section.Pixels(), pixels) << size.width << 'x' << size.height;
            }
}

TEST_F(GrayScaleTest, ChangesABitmapOfTheScreensKind)
{
    const base::WindowContext screen(nullptr);
    const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), 5, 3));
    std::vector<std::uint32_t> pixels(15);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<std::uint32_t>(i * 0x0B1725);
    SetBitmapBits(bitmap.get(), 60, pixels.data());
    ASSERT_TRUE(GrayScale(bitmap.get(), 222));
    std::vector<std::uint32_t> after(15);
    ASSERT_EQ(GetBitmapBits(bitmap.get(), 60, after.data()), 60);
    per_pixel_form::GrayScale(pixels, 5, 222);
    EXPECT_EQ(after, pixels);
}

TEST_F(GrayScaleTest, RefusesOtherDepthsAndNoBitmap)
{
    for (const int bits : {1, 4, 8, 16}) {
        const DibSection section(4, 4, bits, DibSection::topDown);
        EXPECT_FALSE(GrayScale(section.get(), 255)) << bits;
    }
    const base::Bitmap monochrome(CreateBitmap(4, 4, 1, 1, nullptr));
    EXPECT_FALSE(GrayScale(monochrome.get(), 255));
    EXPECT_FALSE(GrayScale(nullptr, 255));
    EXPECT_FALSE(GrayScale(reinterpret_cast<HBITMAP>(GetStockObject(BLACK_BRUSH)), 255));
}

TEST_F(GrayScaleTest, FailsWhenMemoryIsShort)
{
    const DibSection section(4, 4, 32, DibSection::topDown);
    const std::vector<std::uint32_t> before = section.Pixels();
    const test_support::ImportHook hook(L"Utils_Statics.dll", newArrayName, &NoMemory);
    EXPECT_NO_THROW(EXPECT_FALSE(GrayScale(section.get(), 255)));
    EXPECT_EQ(section.Pixels(), before);
}

TEST_F(GrayScaleTest, LeavesNoDrawingObject)
{
    const DibSection section(16, 16, 32, DibSection::bottomUp);
    GrayScale(section.get(), 255);
    const DWORD before = test_support::DrawingObjectCount();
    for (int i = 0; i < 100; ++i)
        GrayScale(section.get(), 255);
    EXPECT_EQ(test_support::DrawingObjectCount(), before);
}

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes RandomBytes(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (std::uint8_t& value : bytes)
        value = static_cast<std::uint8_t>(random());
    return bytes;
}

} // namespace

TEST(PreMultiplyRGBChannels, BlendsWithTheFixedColour)
{
    const DibSection section(2, 1, 32, DibSection::topDown);
    Bytes bits{255, 0, 100, 9, 0, 255, 200, 0};
    ASSERT_TRUE(PreMultiplyRGBChannels(section.get(), bits.data(), 100, RGB(10, 20, 250), nullptr));
    // blue: (255 * 100 + 250 * 155) / 255, and so on
    EXPECT_EQ(bits, (Bytes{251, 12, 45, 100, 151, 112, 84, 100}));
}

TEST(PreMultiplyRGBChannels, IsTheBackgroundForZeroAlphaAndThePixelForFullAlpha)
{
    const DibSection section(3, 2, 32, DibSection::topDown);
    const Bytes before = RandomBytes(24, 1);
    Bytes bits = before;
    ASSERT_TRUE(PreMultiplyRGBChannels(section.get(), bits.data(), 255, RGB(1, 2, 3), nullptr));
    for (std::size_t i = 0; i < bits.size(); ++i)
        EXPECT_EQ(bits[i], i % 4 == 3 ? 255 : before[i]);
    ASSERT_TRUE(PreMultiplyRGBChannels(section.get(), bits.data(), 0, RGB(1, 2, 3), nullptr));
    for (std::size_t i = 0; i < bits.size(); ++i)
        EXPECT_EQ(bits[i], (Bytes{3, 2, 1, 0})[i % 4]);
}

TEST(PreMultiplyRGBChannels, EqualsThePlainFormForEveryPixelBackgroundAndAlpha)
{
    const DibSection section(256, 256, 32, DibSection::bottomUp);
    for (int alpha = 0; alpha < 256; ++alpha) {
        Bytes bits;
        std::vector<DWORD> background;
        for (int pixel = 0; pixel < 256; ++pixel)
            for (int behind = 0; behind < 256; ++behind) {
                const auto blue = static_cast<std::uint8_t>(pixel);
                bits.insert(bits.end(), {blue, static_cast<std::uint8_t>(255 - pixel),
                                         static_cast<std::uint8_t>(pixel ^ behind), blue});
                background.push_back(static_cast<DWORD>(behind) * 0x01010101);
            }
        Bytes plain = bits;
        ASSERT_TRUE(PreMultiplyRGBChannels(
            section.get(), bits.data(), static_cast<unsigned char>(alpha), 0, background.data()));
        per_pixel_form::PreMultiply(plain, alpha, 0, background.data());
        ASSERT_EQ(bits, plain) << alpha;
    }
}

TEST(PreMultiplyRGBChannels, EqualsThePlainFormOnRandomImages)
{
    unsigned seed = 1;
    std::mt19937 random(7);
    for (int width = 1; width <= 19; width += 3)
        for (int height = 1; height <= 5; height += 2)
            for (const bool withBits : {false, true}) {
                const auto order = height % 4 == 1 ? DibSection::topDown : DibSection::bottomUp;
                const DibSection section(width, height, 24, order); // only its size is used
                const auto count = static_cast<std::size_t>(width * height);
                Bytes bits = RandomBytes(count * 4, ++seed);
                std::vector<DWORD> background(count);
                for (DWORD& colour : background)
                    colour = static_cast<DWORD>(random());
                Bytes plain = bits;
                const auto alpha = static_cast<unsigned char>(random());
                const auto colour = static_cast<COLORREF>(random());
                DWORD* const behind = withBits ? background.data() : nullptr;
                ASSERT_TRUE(
                    PreMultiplyRGBChannels(section.get(), bits.data(), alpha, colour, behind));
                per_pixel_form::PreMultiply(plain, alpha, colour, behind);
                ASSERT_EQ(bits, plain) << width << 'x' << height;
            }
}

TEST(PreMultiplyRGBChannels, MayBlendPixelsWithThemselves)
{
    const DibSection section(5, 3, 32, DibSection::topDown);
    std::vector<DWORD> pixels(15, 0x80402010);
    ASSERT_TRUE(PreMultiplyRGBChannels(
        section.get(), reinterpret_cast<unsigned char*>(pixels.data()), 90, 0, pixels.data()));
    for (const DWORD pixel : pixels)
        EXPECT_EQ(pixel, 0x5A402010u);
}

TEST(PreMultiplyRGBChannels, FailsWithoutBitsOrBitmap)
{
    const DibSection section(1, 1, 32, DibSection::topDown);
    Bytes bits(4, 77);
    EXPECT_FALSE(PreMultiplyRGBChannels(section.get(), nullptr, 255, 0, nullptr));
    EXPECT_FALSE(PreMultiplyRGBChannels(nullptr, bits.data(), 255, 0, nullptr));
    EXPECT_EQ(bits, Bytes(4, 77));
}
