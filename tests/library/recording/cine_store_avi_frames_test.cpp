// The content of frames: the background, the composed planes and masks, whole bitmaps and their
// turns.
#include "CineStoreAviFixture.h"

#include <test_support/DeviceContextComposition.h>

#include <algorithm>

TEST_F(CineStoreAvi, BackgroundIsTheFirstContentWithTheBottomRowFirst)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Frame(0), BytesOf(UpsideDown(backgroundPixels, frameWidth)));
}

TEST_F(CineStoreAvi, LargerBackgroundGivesItsFirstPixelsRowAfterRow)
{
    Pixels pixels = Noise(67, 50, 3);
    background = BitmapOf(pixels, 67, 50);
    ASSERT_TRUE(Start(store, 67, 50));
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(store.EndStorage());
    pixels.resize(64 * 48);
    EXPECT_EQ(AviMovie(fileName).Frame(0), BytesOf(UpsideDown(pixels, 64)));
}

TEST_F(CineStoreAvi, ComposedFramesAreThoseOfTheDeviceContextForm)
{
    ASSERT_TRUE(Start());
    Pixels expected = UpsideDown(backgroundPixels, frameWidth);
    std::vector<Bytes> frames;
    for (unsigned i = 0; i < 64; ++i) {
        const Turns turns{(i & 1) != 0, (i & 2) != 0, (i & 4) != 0, (i & 8) != 0};
        GivenPlanes planes(i, turns);
        const auto mask0 = MaskOf(30, 30, i);
        const auto mask1 = MaskOf(28, 30, i + 1000);
        unsigned int* image[5];
        device_context_form::Form form{frameWidth, frameHeight, {}, {}, {*mask0, *mask1}};
        for (unsigned plane = 0; plane < 5; ++plane) {
            const bool given = plane == 2 || (i * 7 + plane) % 5 != 0;
            image[plane] = given ? planes.given[plane].data() : nullptr;
            form.image[plane] = given ? planes.turned[plane].data() : nullptr;
        }
        std::copy(layout.begin(), layout.end(), form.rects);
        form.Compose(expected.data()); // composes onto the frame before, which nothing clears
        frames.push_back(BytesOf(expected));
        EXPECT_TRUE(store.AddFrame(image[0], image[1], image[2], image[3], image[4], *mask0, *mask1,
                                   turns.mirror0, turns.bottomUp0, turns.mirror1, turns.bottomUp1));
        for (unsigned plane = 0; plane < 5; ++plane)
            EXPECT_TRUE(!image[plane] || planes.given[plane] == planes.turned[plane])
                << "plane " << plane;
    }
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.Length(), 64);
    for (unsigned i = 0; i < 64; ++i)
        EXPECT_EQ(movie.Frame(static_cast<LONG>(i)), frames[i]) << i;
}

TEST_F(CineStoreAvi, WithoutPlane1TheStripLandsAtTheFrameOrigin)
{
    ASSERT_TRUE(Start());
    CBitmap none;
    Pixels strip(28 * 5, 0xFFFFFF);
    EXPECT_TRUE(store.AddFrame(nullptr, nullptr, nullptr, strip.data(), nullptr, none, none, false,
                               false, false, false));
    EXPECT_TRUE(store.EndStorage());
    Pixels expected = UpsideDown(backgroundPixels, frameWidth);
    for (std::size_t y = 0; y < 5; ++y)
        std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(y * frameWidth), 28, 0xFFFFFFu);
    EXPECT_EQ(AviMovie(fileName).Frame(0), BytesOf(expected));
}

TEST_F(CineStoreAvi, RectsAreTakenOnlyTogetherWithABackground)
{
    CCineStoreAVI fresh;
    CBitmap none;
    const auto add = [&] {
        return fresh.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false,
                              false, false);
    };
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), nullptr, 64, 48, layout, 32));
    EXPECT_FALSE(add()); // there are no rects yet
    fresh.EndStorage();
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), background.get(), 64, 48, layout, 32));
    EXPECT_TRUE(add());
    fresh.EndStorage();
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), nullptr, 64, 48, std::vector<CRect>(), 32));
    EXPECT_TRUE(add()); // uses the rects from before
    fresh.EndStorage();
}

TEST_F(CineStoreAvi, OneRectIsEnoughForWholeBitmapsOnly)
{
    ASSERT_TRUE(
        store.InitStorage(fileName.c_str(), background.get(), 64, 48, CRect(0, 0, 64, 48), 32));
    EXPECT_FALSE(AddNothing());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 1);
}

TEST_F(CineStoreAvi, WholeBitmapIsTurnedAndMirroredAsAsked)
{
    ASSERT_TRUE(Start());
    const Pixels pixels = Noise(frameWidth, frameHeight, 7);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(AddBitmap(pixels, (i & 1) != 0, (i & 2) != 0));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    const Pixels turned = UpsideDown(pixels, frameWidth);
    EXPECT_EQ(movie.Frame(0), BytesOf(turned));
    EXPECT_EQ(movie.Frame(1), BytesOf(Mirrored(turned, frameWidth)));
    EXPECT_EQ(movie.Frame(2), BytesOf(pixels));
    EXPECT_EQ(movie.Frame(3), BytesOf(Mirrored(pixels, frameWidth)));
}

TEST_F(CineStoreAvi, BitmapWithoutPixelsIsRefused)
{
    ASSERT_TRUE(Start());
    const CBitmap none;
    EXPECT_FALSE(store.AddFrame(none, false, false));
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 1);
}

TEST_F(CineStoreAvi, SmallerAndLargerBitmapsStayWithinTheFrame)
{
    ASSERT_TRUE(Start());
    const auto small = BitmapOf(Pixels(16, 1), 4, 4);
    const auto large = BitmapOf(Pixels(200 * 200, 2), 200, 200);
    EXPECT_TRUE(store.AddFrame(*small, true, false));
    EXPECT_TRUE(store.AddFrame(*large, true, false));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Frame(1), BytesOf(Pixels(frameWidth * frameHeight, 2)));
}
