// The movie as a whole: its form, its rate, starting and ending it, and the announcement when it is
// complete.
#include "CineStoreAviFixture.h"

#include <base/Handles.h>
#include <base/InFolder.h>
#include <test_support/Files.h>

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
