// The movie as a whole: its form, its rate, starting and ending it, and the announcement when it is
// complete.
#include "CineStoreAviFixture.h"

#include <base/Handles.h>
#include <base/InFolder.h>
#include <test_support/DeviceContextComposition.h>
#include <test_support/Files.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

using test_support::TemporaryFolder;

TEST_F(CineStoreAvi, SizesAreRoundedDownToMultiplesOfFour)
{
    ASSERT_TRUE(Start(store, 1023, 767));
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.format.biSize, 40u);
    EXPECT_EQ(movie.format.biPlanes, 1);
    EXPECT_EQ(movie.format.biWidth, 1020);
    EXPECT_EQ(movie.format.biHeight, 764);
    EXPECT_EQ(movie.info.rcFrame.right, 1020);
    EXPECT_EQ(movie.info.rcFrame.bottom, 764);
    EXPECT_EQ(movie.format.biSizeImage, 1020u * 764 * 4);
    EXPECT_EQ(movie.info.dwSuggestedBufferSize, 1020u * 764 * 4);
    EXPECT_EQ(movie.format.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(movie.format.biBitCount, 32);
}

TEST_F(CineStoreAvi, RateIsFramesInAThousandSecondsTruncated)
{
    for (const auto& [fps, rate] :
         {std::pair{30.0, 30000u}, {25.0, 25000u}, {29.97, 29970u}, {12.3459, 12345u}}) {
        if (fps != 30.0) store.SetRate(fps); // a new store has 30
        ASSERT_TRUE(Start());
        EXPECT_TRUE(AddBlank());
        EXPECT_TRUE(store.EndStorage());
        const AviMovie movie(fileName);
        EXPECT_EQ(movie.info.dwScale, 1000u);
        EXPECT_EQ(movie.info.dwRate, rate);
        EXPECT_EQ(movie.info.fccType, static_cast<DWORD>(streamtypeVIDEO));
    }
}

TEST_F(CineStoreAvi, RateTakesEffectAtTheNextStart)
{
    ASSERT_TRUE(Start());
    store.SetRate(10.0);
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).info.dwRate, 30000u);
}

TEST_F(CineStoreAvi, WhatIsNoRateIsRefused)
{
    for (const double fps :
         {0.0, -25.0, 0.0009, 1e300, std::nan(""), std::numeric_limits<double>::infinity()}) {
        store.SetRate(fps);
        EXPECT_FALSE(Start()) << fps;
    }
}

TEST_F(CineStoreAvi, ImpossibleSizesAreRefused)
{
    const int sizes[][2] = {{0, 48},
                            {64, 0},
                            {3, 48},
                            {64, 3},
                            {-64, 48},
                            {64, -48},
                            {INT_MIN, INT_MIN},
                            {INT_MAX, INT_MAX},
                            {65536, 65536},
                            {32768, 16384}};
    for (const auto& size : sizes)
        EXPECT_FALSE(Start(store, size[0], size[1])) << size[0] << " x " << size[1];
    for (const unsigned short bits : std::initializer_list<unsigned short>{0, 33, 64, 65535})
        EXPECT_FALSE(store.InitStorage(fileName.c_str(), background.get(), 64, 48, layout, bits))
            << bits;
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreAvi, FewerBitsWriteThatMuchOfTheBuffer)
{
    ASSERT_TRUE(
        store.InitStorage(fileName.c_str(), background.get(), frameWidth, frameHeight, layout, 24));
    const Pixels pixels = Noise(frameWidth, frameHeight, 4);
    EXPECT_TRUE(AddBitmap(pixels));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.format.biSizeImage, 64u * 3 * 48);
    Bytes expected = BytesOf(pixels);
    expected.resize(64 * 3 * 48);
    EXPECT_EQ(movie.Frame(0), expected);
}

TEST_F(CineStoreAvi, WordUncompressedIsExact)
{
    for (const wchar_t* name :
         {L"uncompressed", L"UNCOMPRESSED", L"Uncompressed ", L"", L"no such codec"}) {
        capture_settings::Set(L"RecordCodec", name);
        EXPECT_FALSE(Start()) << name;
        EXPECT_FALSE(AddNothing());
        EXPECT_TRUE(store.EndStorage());
    }
}

TEST_F(CineStoreAvi, EveryFrameIsAKeyFrame)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    for (LONG i = 0; i < 3; ++i)
        EXPECT_TRUE(movie.IsKeyFrame(i)) << i;
}

TEST_F(CineStoreAvi, RelativePathStaysWhereItWasWhenTheCurrentDirectoryChanges)
{
    const TemporaryFolder other;
    test_support::WriteFile(other / L"movie.avi", "another file of this name, and a small one");
    const base::InFolder first(folder.Path());
    background = BitmapOf(Noise(512, 512, 2), 512, 512);
    ASSERT_TRUE(store.InitStorage(L"movie.avi", background.get(), 512, 512, layout, 32));
    {
        const base::InFolder second(other.Path());
        EXPECT_TRUE(AddNothing());
        EXPECT_TRUE(AddNothing());
    }
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.path, L"movie.avi"); // the path as it was given
    EXPECT_EQ(AviMovie(fileName).Length(), 2);
}

TEST_F(CineStoreAvi, FramesOutsideARecordingAreRefused)
{
    EXPECT_FALSE(AddBlank());
    EXPECT_FALSE(AddNothing());
    ASSERT_TRUE(Start());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_FALSE(AddBlank());
    EXPECT_FALSE(AddNothing());
}

TEST_F(CineStoreAvi, EveryEndFiresTheCallbackWithTheRecordedPath)
{
    EXPECT_TRUE(store.EndStorage()); // nothing recorded yet
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(completed.path, L"");
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 3);
    EXPECT_EQ(completed.path, fileName);
}

TEST_F(CineStoreAvi, CallbackMayStartTheNextMovie)
{
    struct Chain
    {
        CCineStoreAVI* store;
        std::wstring next;
        std::wstring announced;

        static void Notify(const wchar_t* path, void* self)
        {
            auto& chain = *static_cast<Chain*>(self);
            chain.store->SetCompleteCallback(nullptr, nullptr);
            EXPECT_TRUE(chain.store->InitStorage(chain.next.c_str(), nullptr, frameWidth,
                                                 frameHeight, CRect(), 32));
            chain.announced = path;
        }
    };
    Chain chain{&store, folder / L"the next movie, whose path is longer.avi", {}};
    store.SetCompleteCallback(&Chain::Notify, &chain);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(chain.announced, fileName);
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(chain.next).Length(), 1);
}

TEST_F(CineStoreAvi, EndThroughTheBaseClassIsTheMoviesEnd)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    CCineStore& base = store;
    EXPECT_TRUE(base.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 1);
}

TEST_F(CineStoreAvi, DestroyingDoesNotFireTheCallback)
{
    {
        CCineStoreAVI local;
        local.SetCompleteCallback(&Completed::Notify, &completed);
        ASSERT_TRUE(Start(local));
    }
    EXPECT_EQ(completed.calls, 0);
    EXPECT_TRUE(DeleteFileW(fileName.c_str())); // the file is released
}

TEST_F(CineStoreAvi, MissingFolderLockedFileAndNullPathAreRefused)
{
    EXPECT_FALSE(store.InitStorage((folder / L"missing\\movie.avi").c_str(), background.get(), 64,
                                   48, layout, 32));
    EXPECT_FALSE(store.InitStorage(nullptr, background.get(), 64, 48, layout, 32));
    EXPECT_FALSE(store.InitStorage(L"", background.get(), 64, 48, layout, 32));
    base::File lock(
        CreateFileW(fileName.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(Start());
    lock.reset();
    EXPECT_FALSE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(completed.path, L""); // a failed start records no path
}

TEST_F(CineStoreAvi, SecondStartReleasesTheFirstMovie)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    ASSERT_TRUE(store.InitStorage((folder / L"second.avi").c_str(), nullptr, 64, 48, layout, 32));
    EXPECT_EQ(completed.calls, 0);
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_TRUE(DeleteFileW(fileName.c_str()));
    EXPECT_EQ(AviMovie(folder / L"second.avi").Length(), 1);
}

TEST_F(CineStoreAvi, LongAndMissingCodecNamesAreHarmless)
{
    std::wstring name(500, L'x');
    store.SetCompression(name.data());
    store.SetCompression(nullptr);
    capture_settings::Set(L"RecordCodec", name.c_str());
    EXPECT_FALSE(Start());
    EXPECT_TRUE(store.EndStorage());
}

// The content of frames: the background, the composed planes and masks, whole bitmaps and their
// turns.

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
