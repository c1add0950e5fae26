// PreMultiplyRGBChannels.
#include <gtest/gtest.h>
#include <test_support/DibSection.h>
#include <test_support/PerPixelForm.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <random>

using test_support::DibSection;

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
