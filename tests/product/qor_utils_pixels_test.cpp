// Row reversal and mirroring of pixel arrays.
#include <gtest/gtest.h>
#include <qor_utils/PixelArrays.h>

#include <climits>
#include <random>
#include <vector>

namespace {

using Pixels = std::vector<unsigned int>;

std::size_t At(int x, int y, int width)
{
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

Pixels PlainInvert(const Pixels& in, int width, int height)
{
    Pixels out = in;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            out[At(x, y, width)] = in[At(x, height - 1 - y, width)];
    return out;
}

Pixels PlainMirror(const Pixels& in, int width, int height)
{
    Pixels out = in;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            out[At(x, y, width)] = in[At(width - 1 - x, y, width)];
    return out;
}

Pixels RandomPixels(std::mt19937& random, std::size_t count)
{
    Pixels pixels(count);
    for (auto& pixel : pixels)
        pixel = static_cast<unsigned int>(random());
    return pixels;
}

TEST(InvertImage, ReversesTheOrderOfTheRows)
{
    Pixels pixels = {1, 2, 3, 4, 5, 6};
    qor_utils::InvertImage(pixels.data(), 2, 3);
    EXPECT_EQ(pixels, (Pixels{5, 6, 3, 4, 1, 2}));
}

TEST(MirrorImage, ReversesEachRow)
{
    Pixels pixels = {1, 2, 3, 4, 5, 6};
    qor_utils::MirrorImage(pixels.data(), 3, 2);
    EXPECT_EQ(pixels, (Pixels{3, 2, 1, 6, 5, 4}));
}

// The test covers every width up to well past the fast form's step, and heights of either parity.
TEST(PixelArrays, AgreeWithThePlainFormForEverySmallSize)
{
    std::mt19937 random(2);
    for (int width = 1; width <= 40; ++width) {
        for (int height = 1; height <= 9; ++height) {
            const Pixels in = RandomPixels(random, At(0, height, width));
            Pixels inverted = in;
            qor_utils::InvertImage(inverted.data(), width, height);
            ASSERT_EQ(inverted, PlainInvert(in, width, height)) << width << " x " << height;
            Pixels mirrored = in;
            qor_utils::MirrorImage(mirrored.data(), width, height);
            ASSERT_EQ(mirrored, PlainMirror(in, width, height)) << width << " x " << height;
        }
    }
}

TEST(PixelArrays, AgreeWithThePlainFormForRandomSizes)
{
    std::mt19937 random(3);
    std::uniform_int_distribution<int> size(1, 700);
    for (int i = 0; i < 50; ++i) {
        const int width = size(random);
        const int height = size(random);
        const Pixels in = RandomPixels(random, At(0, height, width));
        Pixels both = in;
        qor_utils::InvertImage(both.data(), width, height);
        qor_utils::MirrorImage(both.data(), width, height);
        ASSERT_EQ(both, PlainMirror(PlainInvert(in, width, height), width, height))
            << width << " x " << height;
    }
}

TEST(PixelArrays, TouchNothingOutsideTheImage)
{
    std::mt19937 random(4);
    const Pixels in = RandomPixels(random, 7 * 5 + 16);
    Pixels out = in;
    qor_utils::InvertImage(out.data() + 8, 7, 5);
    qor_utils::MirrorImage(out.data() + 8, 7, 5);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(out[i], in[i]);
        EXPECT_EQ(out[out.size() - 1 - i], in[in.size() - 1 - i]);
    }
}

TEST(PixelArrays, DoNothingWithoutPixels)
{
    qor_utils::InvertImage(nullptr, 4, 4);
    qor_utils::MirrorImage(nullptr, 4, 4);
    const Pixels in = {1, 2, 3, 4};
    Pixels pixels = in;
    for (const auto& [width, height] :
         {std::pair{0, 4}, {4, 0}, {-1, 4}, {4, -1}, {-2, -2}, {INT_MIN, INT_MIN}}) {
        qor_utils::InvertImage(pixels.data(), width, height);
        qor_utils::MirrorImage(pixels.data(), width, height);
    }
    EXPECT_EQ(pixels, in);
}

// 65536 x 65536 is 0 in 32 bits, and no memory holds that many pixels.
TEST(PixelArrays, DoNothingForSizesThatNoMemoryHolds)
{
    if (sizeof(void*) > 4) GTEST_SKIP() << "the sizes below fit a 64-bit address space";
    const Pixels in = {1, 2, 3, 4};
    Pixels pixels = in;
    for (const auto& [width, height] :
         {std::pair{65536, 65536}, {32768, 32768}, {INT_MAX, INT_MAX}, {2, INT_MAX}}) {
        qor_utils::InvertImage(pixels.data(), width, height);
        qor_utils::MirrorImage(pixels.data(), width, height);
    }
    EXPECT_EQ(pixels, in);
}

} // namespace
