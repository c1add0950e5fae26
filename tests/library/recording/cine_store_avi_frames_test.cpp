// What frames hold: the background, the composed planes and masks, whole bitmaps and their turns.
#include "cine_store_avi_fixture.h"

#include "DeviceContextComposition.h"

#include <algorithm>

TEST_F(CineStoreAvi, BackgroundIsTheFirstContentWithTheBottomRowFirst)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(upsideDown(backgroundPixels, frameWidth)));
}

TEST_F(CineStoreAvi, LargerBackgroundGivesItsFirstPixelsRowAfterRow)
{
    Pixels pixels = noise(67, 50, 3);
    background = bitmapOf(pixels, 67, 50);
    ASSERT_TRUE(start(store, 67, 50));
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    pixels.resize(64 * 48);
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(upsideDown(pixels, 64)));
}

TEST_F(CineStoreAvi, ComposedFramesAreThoseOfTheDeviceContextForm)
{
    ASSERT_TRUE(start());
    Pixels expected = upsideDown(backgroundPixels, frameWidth);
    std::vector<Bytes> frames;
    for (unsigned i = 0; i < 64; ++i) {
        const Turns turns{(i & 1) != 0, (i & 2) != 0, (i & 4) != 0, (i & 8) != 0};
        GivenPlanes planes(i, turns);
        const auto mask0 = maskOf(30, 30, i);
        const auto mask1 = maskOf(28, 30, i + 1000);
        unsigned int* image[5];
        device_context_form::Form form{frameWidth, frameHeight, {}, {}, {*mask0, *mask1}};
        for (unsigned plane = 0; plane < 5; ++plane) {
            const bool given = plane == 2 || (i * 7 + plane) % 5 != 0;
            image[plane] = given ? planes.given[plane].data() : nullptr;
            form.image[plane] = given ? planes.turned[plane].data() : nullptr;
        }
        std::copy(layout.begin(), layout.end(), form.rects);
        form.compose(expected.data()); // onto the frame before: nothing clears it
        frames.push_back(bytesOf(expected));
        EXPECT_TRUE(store.AddFrame(image[0], image[1], image[2], image[3], image[4], *mask0, *mask1,
                                   turns.mirror0, turns.bottomUp0, turns.mirror1, turns.bottomUp1));
        for (unsigned plane = 0; plane < 5; ++plane)
            EXPECT_TRUE(!image[plane] || planes.given[plane] == planes.turned[plane])
                << "plane " << plane;
    }
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.length(), 64);
    for (unsigned i = 0; i < 64; ++i)
        EXPECT_EQ(movie.frame(static_cast<LONG>(i)), frames[i]) << i;
}

TEST_F(CineStoreAvi, WithoutPlane1TheStripLandsAtTheFrameOrigin)
{
    ASSERT_TRUE(start());
    CBitmap none;
    Pixels strip(28 * 5, 0xFFFFFF);
    EXPECT_TRUE(store.AddFrame(nullptr, nullptr, nullptr, strip.data(), nullptr, none, none, false,
                               false, false, false));
    EXPECT_TRUE(store.EndStorage());
    Pixels expected = upsideDown(backgroundPixels, frameWidth);
    for (std::size_t y = 0; y < 5; ++y)
        std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(y * frameWidth), 28, 0xFFFFFFu);
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(expected));
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
    EXPECT_TRUE(add()); // with the rects from before
    fresh.EndStorage();
}

TEST_F(CineStoreAvi, OneRectIsEnoughForWholeBitmapsOnly)
{
    ASSERT_TRUE(
        store.InitStorage(fileName.c_str(), background.get(), 64, 48, CRect(0, 0, 64, 48), 32));
    EXPECT_FALSE(addNothing());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 1);
}

TEST_F(CineStoreAvi, WholeBitmapIsTurnedAndMirroredAsAsked)
{
    ASSERT_TRUE(start());
    const Pixels pixels = noise(frameWidth, frameHeight, 7);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(addBitmap(pixels, (i & 1) != 0, (i & 2) != 0));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    const Pixels turned = upsideDown(pixels, frameWidth);
    EXPECT_EQ(movie.frame(0), bytesOf(turned));
    EXPECT_EQ(movie.frame(1), bytesOf(mirrored(turned, frameWidth)));
    EXPECT_EQ(movie.frame(2), bytesOf(pixels));
    EXPECT_EQ(movie.frame(3), bytesOf(mirrored(pixels, frameWidth)));
}

TEST_F(CineStoreAvi, BitmapWithoutPixelsIsRefused)
{
    ASSERT_TRUE(start());
    const CBitmap none;
    EXPECT_FALSE(store.AddFrame(none, false, false));
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 1);
}

TEST_F(CineStoreAvi, SmallerAndLargerBitmapsStayWithinTheFrame)
{
    ASSERT_TRUE(start());
    const auto small = bitmapOf(Pixels(16, 1), 4, 4);
    const auto large = bitmapOf(Pixels(200 * 200, 2), 200, 200);
    EXPECT_TRUE(store.AddFrame(*small, true, false));
    EXPECT_TRUE(store.AddFrame(*large, true, false));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).frame(1), bytesOf(Pixels(frameWidth * frameHeight, 2)));
}
