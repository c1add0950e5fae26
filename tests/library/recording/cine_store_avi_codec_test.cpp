// Recording through codecs: how one is found, its input and output, its failure, and its release.
#include "CineStoreAviFixture.h"
#include "testcodec/TestCodec.h"

#include <test_support/InstalledCodec.h>
#include <test_support/ResourceCounts.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <thread>
#include <utility>

using test_support::InstalledCodec;

namespace {

// Records through the test codec.
class CineStoreCodec : public CineStoreAvi
{
protected:
    CineStoreCodec()
    {
        const auto function = reinterpret_cast<TestCodecOrdersFunction>(
            reinterpret_cast<void*>(GetProcAddress(dll, "TestCodecOrdersOfThisProcess")));
        codec = function();
        *codec = {};
        std::wcscpy(codec->shortName, L"test codec");
        codec->failFrom = -1;
        std::fill(std::begin(codec->frameBytes), std::end(codec->frameBytes), 16);
        capture_settings::Set(L"RecordCodec", L"test codec");
    }
    ~CineStoreCodec() override { FreeLibrary(dll); }

    // Every codec that was begun has ended, and every open codec is closed as far as the platform
    // closes it: the compressed stream of Wine 8.0 never closes its codec.
    void ExpectReleased()
    {
        EXPECT_GE(codec->ended, codec->begun);
        const LONG open = codec->opened - codec->closed;
        EXPECT_TRUE(open == 0 || !StreamClosesCodec()) << open << " codecs are open";
    }

    InstalledCodec installed{L"TST1", L"testcodec.dll"};
    HMODULE dll = LoadLibraryW(installed.Path().c_str());
    TestCodecOrders* codec;

private:
    // Checks this with a compressed stream that the library does not touch.
    bool StreamClosesCodec()
    {
        const LONG openBefore = codec->opened - codec->closed;
        const std::wstring name = folder / L"probe.avi";
        PAVIFILE file = nullptr;
        PAVISTREAM raw = nullptr;
        PAVISTREAM compressed = nullptr;
        AVISTREAMINFOW info{};
        info.fccType = streamtypeVIDEO;
        info.dwScale = 1;
        info.dwRate = 25;
        AVICOMPRESSOPTIONS options{};
        options.fccType = streamtypeVIDEO;
        options.fccHandler = mmioFOURCC('T', 'S', 'T', '1');
        AVIFileInit();
        EXPECT_EQ(AVIFileOpenW(&file, name.c_str(), OF_WRITE | OF_CREATE, nullptr), AVIERR_OK);
        EXPECT_EQ(AVIFileCreateStreamW(file, &raw, &info), AVIERR_OK);
        EXPECT_EQ(AVIMakeCompressedStream(&compressed, raw, &options, nullptr), AVIERR_OK);
        AVIStreamRelease(compressed);
        AVIStreamRelease(raw);
        AVIFileRelease(file);
        AVIFileExit();
        return codec->opened - codec->closed == openBefore;
    }
};

} // namespace

TEST_F(CineStoreAvi, WithoutASettingTheCodecIsTheDefaultOne)
{
    capture_settings::Clear();
    InstalledCodec installed(L"TST1", L"testcodec.dll");
    HMODULE dll = LoadLibraryW(installed.Path().c_str());
    ASSERT_NE(dll, nullptr);
    const auto function = reinterpret_cast<TestCodecOrdersFunction>(
        reinterpret_cast<void*>(GetProcAddress(dll, "TestCodecOrdersOfThisProcess")));
    std::wcscpy(function()->shortName, L"XVID");
    std::fill(std::begin(function()->frameBytes), std::end(function()->frameBytes), 16);
    function()->failFrom = -1;
    EXPECT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_EQ(function()->quality, 10000); // 100 percent
    EXPECT_TRUE(store.EndStorage());
    FreeLibrary(dll);
}

TEST_F(CineStoreCodec, IsFoundByItsExactShortName)
{
    for (const wchar_t* name : {L"Test codec", L"test", L"test codec 2", L"TST1"}) {
        capture_settings::Set(L"RecordCodec", name);
        EXPECT_FALSE(Start()) << name;
        EXPECT_TRUE(store.EndStorage());
    }
    capture_settings::Set(L"RecordCodec", L"test codec");
    EXPECT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).format.biCompression, mmioFOURCC('T', 'S', 'T', '1'));
    ExpectReleased();
}

TEST_F(CineStoreCodec, MayBeCalledUncompressedInAnotherSpelling)
{
    std::wcscpy(codec->shortName, L"uncompressed");
    capture_settings::Set(L"RecordCodec", L"uncompressed");
    EXPECT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_EQ(codec->frames, 1);
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, IsTheSettingsWhateverSetCompressionSaid)
{
    std::wstring name = L"no such codec";
    store.SetCompression(name.data());
    EXPECT_TRUE(Start());
    EXPECT_TRUE(store.EndStorage());
    name = L"test codec";
    store.SetCompression(name.data());
    capture_settings::Set(L"RecordCodec", L"no such codec");
    EXPECT_FALSE(Start());
    EXPECT_TRUE(store.EndStorage());
}

// The flags of a codec's information record and those of the stream's options have other meanings.
// The record's "temporal" means "key frames as often as the options say" in the options, and these
// say never.
TEST_F(CineStoreCodec, GivesTheOptionsTheFlagsOfItsRecord)
{
    static_assert(VIDCF_TEMPORAL == AVICOMPRESSF_KEYFRAMES);
    codec->flags = VIDCF_TEMPORAL | VIDCF_FASTTEMPORALC;
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(AddBlank());
    EXPECT_EQ(codec->asked, 0u);
    EXPECT_TRUE(store.EndStorage());
    codec->flags = 0;
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_TRUE(AddBlank());
    EXPECT_EQ(codec->asked, static_cast<DWORD>(ICCOMPRESS_KEYFRAME));
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, GetsTheQualityInHundredthsOfAPercent)
{
    capture_settings::Set(L"RecordQuality", 73);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_EQ(codec->quality, 7300);
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, GetsItsOwnStateBack)
{
    for (const unsigned size : {1u, 20u}) {
        codec->stateSize = static_cast<LONG>(size);
        ASSERT_TRUE(Start());
        EXPECT_GE(codec->statesWritten, 1);
        for (unsigned i = 0; i < 32; ++i)
            EXPECT_EQ(codec->state[i], i < size ? testCodecStateStart + i : 0u) << i;
        EXPECT_TRUE(store.EndStorage());
    }
}

TEST_F(CineStoreCodec, NeedsNoState)
{
    for (const LONG size : {0L, -1L, -100L}) {
        codec->stateSize = size;
        codec->statesRead = 0;
        codec->statesWritten = 0;
        EXPECT_TRUE(Start()) << size;
        EXPECT_TRUE(AddBlank());
        EXPECT_EQ(codec->statesRead, 1) << "only its size is asked for";
        EXPECT_EQ(codec->statesWritten, 0) << size;
        EXPECT_TRUE(store.EndStorage());
    }
}

TEST_F(CineStoreCodec, RefusedFormatFailsTheStartAndIsReleasedAtTheEnd)
{
    codec->refuseFormat = TRUE;
    EXPECT_FALSE(Start());
    EXPECT_TRUE(store.EndStorage());
    ExpectReleased();
    EXPECT_EQ(completed.calls, 1);
    EXPECT_TRUE(DeleteFileW(fileName.c_str()));
}

TEST_F(CineStoreCodec, RefusedOpeningIsAnUnknownCodec)
{
    codec->refuseOpen = TRUE;
    EXPECT_FALSE(Start());
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, FramesWithoutBytesAreRepeatedAtTheEnd)
{
    codec->frameBytes[1] = 0;
    codec->frameBytes[2] = 1;
    codec->frameBytes[3] = 2;
    ASSERT_TRUE(Start());
    for (int i = 0; i < 5; ++i)
        AddNothing();
    EXPECT_EQ(codec->frames, 5);
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 7); // two more frames, copies of the last composed one
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.Length(), 7);
    Bytes last = BytesOf(UpsideDown(backgroundPixels, frameWidth));
    last.resize(16);
    EXPECT_EQ(movie.Frame(5), last);
    EXPECT_EQ(movie.Frame(6), last);
}

TEST_F(CineStoreCodec, TheFrameThatIsRepeatedIsTheLastOneNotTheDroppedOne)
{
    codec->frameBytes[0] = 0;
    ASSERT_TRUE(Start());
    AddNothing(); // is dropped
    const Pixels last = Noise(frameWidth, frameHeight, 9);
    EXPECT_TRUE(AddBitmap(last));
    EXPECT_TRUE(store.EndStorage());
    Bytes expected = BytesOf(last);
    expected.resize(16);
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.Length(), 3);
    EXPECT_EQ(movie.Frame(2), expected);
}

TEST_F(CineStoreCodec, DroppedFramesOfOneRecordingAreCarriedToTheNext)
{
    codec->frameBytes[0] = 0;
    ASSERT_TRUE(Start());
    AddNothing();
    EXPECT_TRUE(store.EndStorage());
    codec->frameBytes[0] = 16;
    ASSERT_TRUE(Start());
    AddNothing();
    AddNothing();
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 3);
}

TEST_F(CineStoreCodec, RepeatedFramesFollowTheLastOneInAnUncompressedMovieToo)
{
    codec->frameBytes[0] = codec->frameBytes[1] = 0;
    ASSERT_TRUE(Start());
    AddNothing();
    AddNothing();
    EXPECT_TRUE(store.EndStorage());
    capture_settings::Set(L"RecordCodec", L"Uncompressed");
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.Length(), 3);
    for (LONG i = 0; i < 3; ++i)
        EXPECT_EQ(movie.Frame(i), BytesOf(UpsideDown(backgroundPixels, frameWidth))) << i;
}

TEST_F(CineStoreCodec, WholeBitmapsAreNotCountedAsDropped)
{
    codec->frameBytes[0] = 0;
    ASSERT_TRUE(Start());
    AddBlank();
    AddBlank();
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 2);
}

TEST_F(CineStoreCodec, DestroyingRepeatsNothing)
{
    codec->frameBytes[1] = 0;
    {
        CCineStoreAVI local;
        CBitmap none;
        ASSERT_TRUE(Start(local));
        for (int i = 0; i < 3; ++i)
            local.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false,
                           false, false);
    }
    EXPECT_EQ(codec->frames, 3);
    ExpectReleased();
}

TEST_F(CineStoreCodec, FailureInTheMiddleIsFalseAndTheRecordingGoesOn)
{
    codec->failFrom = 2;
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddNothing());
    EXPECT_TRUE(AddNothing());
    EXPECT_FALSE(AddNothing());
    codec->failFrom = -1;
    EXPECT_TRUE(AddNothing()); // at index 3
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 5); // the failed frame produced no bytes, so the last one is repeated
    EXPECT_EQ(AviMovie(fileName).Length(), 5);
    ExpectReleased();
}

TEST_F(CineStoreCodec, AWholeBitmapThatFailsTakesItsPlaceInTheMovie)
{
    codec->failFrom = 1;
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    EXPECT_FALSE(AddBlank());
    codec->failFrom = -1;
    EXPECT_TRUE(AddBlank()); // at index 2
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 3);
    ExpectReleased();
}

TEST_F(CineStoreCodec, CodecThatIsSlowToCloseIsWaitedForAndTheMovieIsWhole)
{
    codec->closing = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE mayClose = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(AddBlank());
    ResetEvent(codec->closing);
    codec->mayClose = mayClose;
    int callsWhileClosing = -1;
    std::thread other([&] {
        EXPECT_EQ(WaitForSingleObject(codec->closing, 30000), WAIT_OBJECT_0);
        callsWhileClosing = completed.calls;
        SetEvent(mayClose);
    });
    EXPECT_TRUE(store.EndStorage());
    other.join();
    EXPECT_EQ(callsWhileClosing, 0); // nothing is announced before the movie is closed
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(AviMovie(fileName).Length(), 1);
    codec->mayClose = nullptr;
    CloseHandle(std::exchange(codec->closing, nullptr));
    CloseHandle(mayClose);
}

// Hundreds of recordings, of which each third is not ended.
class RepeatedRecordings : public CineStoreCodec
{
protected:
    void Record(int count)
    {
        for (int i = 0; i < count; ++i) {
            capture_settings::Set(L"RecordQuality", i % 100);
            CCineStoreAVI local;
            GivenPlanes planes(1, {});
            ASSERT_TRUE(Start(local));
            for (int frame = 0; frame < 2; ++frame)
                ASSERT_TRUE(local.AddFrame(planes.given[0].data(), planes.given[1].data(),
                                           planes.given[2].data(), planes.given[3].data(),
                                           planes.given[4].data(), *m_mask, *m_mask, true, false,
                                           true, false));
            if (i % 3) local.EndStorage();
        }
    }

private:
    std::unique_ptr<CBitmap> m_mask = MaskOf(30, 30, 1);
};

TEST_F(RepeatedRecordings, LoseNeitherHandlesNorDrawingObjects)
{
    capture_settings::Set(L"RecordCodec", L"Uncompressed");
    Record(3);
    const DWORD handles = test_support::HandleCount();
    const DWORD objects = test_support::DrawingObjectCount();
    Record(500);
    EXPECT_EQ(test_support::HandleCount(), handles);
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
}

TEST_F(RepeatedRecordings, LoseNoCodecAndNoDrawingObject)
{
    codec->stateSize = 8;
    Record(3);
    const DWORD objects = test_support::DrawingObjectCount();
    Record(500);
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
    ExpectReleased();
}

TEST_F(RepeatedRecordings, LoseNoHandleToACodec)
{
    DWORD handles = test_support::HandleCount();
    ICINFO info = {};
    for (DWORD i = 0; ICInfo(ICTYPE_VIDEO, i, &info); ++i) {
    }
    if (test_support::HandleCount() != handles)
        GTEST_SKIP() << "this platform loses handles while it lists its codecs";
    Record(3);
    handles = test_support::HandleCount();
    Record(100);
    EXPECT_EQ(test_support::HandleCount(), handles);
}

TEST_F(CineStoreAvi, RecordsMotionJpegAtTheConfiguredQuality)
{
    InstalledCodec installed(L"MJPG", L"mjpgcodec.dll");
    capture_settings::Set(L"RecordCodec", L"MJPG");
    std::size_t sizes[2] = {};
    for (const int i : {0, 1}) {
        capture_settings::Set(L"RecordQuality", i ? 95 : 20);
        ASSERT_TRUE(Start());
        EXPECT_TRUE(AddNothing());
        EXPECT_TRUE(AddBitmap(Noise(frameWidth, frameHeight, 3)));
        EXPECT_TRUE(store.EndStorage());
        const AviMovie movie(fileName);
        EXPECT_EQ(movie.Length(), 2);
        EXPECT_EQ(movie.format.biCompression, mmioFOURCC('M', 'J', 'P', 'G'));
        const Bytes frame = movie.Frame(1);
        ASSERT_GT(frame.size(), 4u);
        EXPECT_EQ(frame[0], 0xFF);
        EXPECT_EQ(frame[1], 0xD8);
        sizes[i] = frame.size();
    }
    EXPECT_LT(sizes[0], sizes[1]);
}
