// The calls of a movie recorder to Video for Windows, and its reaction to a refusal.
#include "CineStoreAviFixture.h"
#include "testcodec/TestCodec.h"

#include <base/Handles.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/InstalledCodec.h>
#include <test_support/VirtualPlace.h>

#include <cstring>
#include <cwchar>
#include <functional>

using test_support::ImportHook;

namespace {

constexpr wchar_t library[] = L"Utils_Statics.dll";

// The stream header that the platform gets.
struct StreamHeader
{
    static HRESULT WINAPI Record(PAVIFILE, PAVISTREAM*, AVISTREAMINFOW* info)
    {
        s_info = *info;
        return E_FAIL;
    }
    static inline AVISTREAMINFOW s_info;
};

TEST_F(CineStoreAvi, StreamHeaderIsZeroButForWhatItHasToSay)
{
    std::memset(&StreamHeader::s_info, 0xCC, sizeof StreamHeader::s_info);
    const ImportHook hook(library, "AVIFileCreateStreamW", &StreamHeader::Record);
    store.SetRate(25.0);
    EXPECT_FALSE(Start());
    AVISTREAMINFOW expected;
    std::memset(&expected, 0, sizeof expected);
    expected.fccType = streamtypeVIDEO;
    expected.dwScale = 1000;
    expected.dwRate = 25000;
    expected.dwSuggestedBufferSize = frameWidth * frameHeight * 4;
    expected.rcFrame = {0, 0, frameWidth, frameHeight};
    EXPECT_EQ(std::memcmp(&StreamHeader::s_info, &expected, sizeof expected), 0);
}

// The codec's state that the options name, read when the format of the stream is set.
struct CodecState
{
    static HRESULT WINAPI Compress(PAVISTREAM* compressed, PAVISTREAM source,
                                   AVICOMPRESSOPTIONS* options, CLSID* handler)
    {
        s_block = static_cast<const unsigned char*>(options->lpParms);
        s_size = options->cbParms;
        return s_compress->Original<decltype(Compress)>()(compressed, source, options, handler);
    }
    static HRESULT WINAPI SetFormat(PAVISTREAM stream, LONG position, void* format, LONG size)
    {
        s_seen.assign(s_block, s_block + s_size);
        return s_setFormat->Original<decltype(SetFormat)>()(stream, position, format, size);
    }

    static inline const unsigned char* s_block = nullptr;
    static inline DWORD s_size = 0;
    static inline Bytes s_seen;
    static inline const ImportHook* s_compress = nullptr;
    static inline const ImportHook* s_setFormat = nullptr;
};

TEST_F(CineStoreAvi, StateOfTheCodecLivesUntilTheFormatIsSet)
{
    const test_support::InstalledCodec installed(L"TST1", L"testcodec.dll");
    const base::Module dll(LoadLibraryW(installed.Path().c_str()));
    TestCodecOrders* const codec = reinterpret_cast<TestCodecOrdersFunction>(
        reinterpret_cast<void*>(GetProcAddress(dll.get(), "TestCodecOrdersOfThisProcess")))();
    *codec = {};
    std::wcscpy(codec->shortName, L"test codec");
    codec->failFrom = -1;
    codec->stateSize = 20;
    capture_settings::Set(L"RecordCodec", L"test codec");
    const ImportHook compress(library, "AVIMakeCompressedStream", &CodecState::Compress);
    const ImportHook setFormat(library, "AVIStreamSetFormat", &CodecState::SetFormat);
    CodecState::s_compress = &compress;
    CodecState::s_setFormat = &setFormat;
    ASSERT_TRUE(Start());
    ASSERT_EQ(CodecState::s_seen.size(), 20u);
    for (unsigned i = 0; i < 20; ++i)
        EXPECT_EQ(CodecState::s_seen[i], testCodecStateStart + i) << i;
    EXPECT_TRUE(store.EndStorage());
}

// Whatever refuses a start, the movie before it is released unfinished, and nothing is recorded.
TEST_F(CineStoreAvi, RefusedStartReleasesTheMovieBefore)
{
    const std::wstring held = folder / L"held.avi";
    const base::File lock(
        CreateFileW(held.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const auto refusals = std::vector<std::function<bool()>>{
        [&] { return store.InitStorage(nullptr, background.get(), 64, 48, layout, 32); },
        [&] { return store.InitStorage(held.c_str(), background.get(), 64, 48, layout, 32); },
        [&] { return store.InitStorage(fileName.c_str(), background.get(), 0, 48, layout, 32); },
        [&] { return store.InitStorage(fileName.c_str(), background.get(), 64, 48, layout, 0); },
        [&] {
            store.SetRate(0);
            const bool started =
                store.InitStorage((folder / L"next.avi").c_str(), nullptr, 64, 48, layout, 32);
            store.SetRate(30);
            return started;
        },
    };
    for (const auto& refused : refusals) {
        ASSERT_TRUE(Start());
        ASSERT_TRUE(AddBlank());
        EXPECT_FALSE(refused());
        EXPECT_FALSE(AddBlank());
        EXPECT_FALSE(AddNothing());
        EXPECT_TRUE(DeleteFileW(fileName.c_str())) << "the movie before is still open";
        completed.calls = 0;
        EXPECT_TRUE(store.EndStorage());
        EXPECT_EQ(completed.calls, 1);
    }
}

// A volume that has room, on which the file's size does not yet show the written bytes.
BOOL WINAPI SizeThatLagsBehind(LPCWSTR, GET_FILEEX_INFO_LEVELS, void* data)
{
    *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data) = {};
    return TRUE;
}

TEST_F(CineStoreAvi, SizeThatLagsBehindIsNoFailureWhereTheVolumeHasRoom)
{
    ASSERT_TRUE(Start(store, 1024, 768));
    {
        const ImportHook hook(library, "GetFileAttributesExW", &SizeThatLagsBehind);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(AddNothing());
    }
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).Length(), 3);
}

std::wstring s_askedFolder;

BOOL WINAPI RecordFolder(LPCWSTR folder, PULARGE_INTEGER available, PULARGE_INTEGER,
                         PULARGE_INTEGER)
{
    s_askedFolder = folder;
    available->QuadPart = INT64_MAX;
    return TRUE;
}

TEST_F(CineStoreAvi, RoomIsThatOfTheVolumeThatHoldsTheMovie)
{
    ASSERT_TRUE(Start());
    const ImportHook hook(library, "GetDiskFreeSpaceExW", &RecordFolder);
    EXPECT_TRUE(AddNothing());
    EXPECT_EQ(s_askedFolder, fileName.substr(0, fileName.rfind(L'\\') + 1));
}

// The table places of the overridden operations; the base's come first.
struct CineSlots : CCineStore
{
    static std::size_t End() { return test_support::VirtualPlace(&CineSlots::EndStorage); }
};

struct MovieSlots : CCineStoreAVI
{
    static std::size_t End() { return test_support::VirtualPlace(&MovieSlots::EndStorage); }
    virtual void Next() {}
};

TEST(CineStoreSlots, AreTheDestructorAndTheEnd)
{
    constexpr std::size_t destructors = 2; // this compiler's destructor has two entries
    EXPECT_EQ(CineSlots::End(), destructors);
    EXPECT_EQ(MovieSlots::End(), destructors);
    EXPECT_EQ(test_support::VirtualPlace(&MovieSlots::Next), destructors + 1);
}

} // namespace

// Movies that need more than this program: other readers, gibibytes of disk, a full disk. Scripts
// run these tests.

// cine-movie-readers runs this. It leaves movies and the frames that went into them, for readers by
// other authors.
TEST_F(CineStoreAvi, WritesMoviesForOtherReaders)
{
    const std::wstring target = test_support::EnvironmentVariable(L"MOVIE_FOLDER");
    if (target.empty())
        GTEST_SKIP() << "needs a folder for its movies; cine-movie-readers names one";
    const test_support::InstalledCodec installed(L"MJPG", L"mjpgcodec.dll");
    capture_settings::Set(L"RecordQuality", 100);
    std::vector<Pixels> frames;
    for (const wchar_t* codec : {L"Uncompressed", L"MJPG"}) {
        capture_settings::Set(L"RecordCodec", codec);
        fileName = target + L"\\" + codec + L".avi";
        frames.clear();
        ASSERT_TRUE(Start());
        for (unsigned i = 0; i < 25; ++i) {
            Pixels frame(frameWidth * frameHeight);
            for (unsigned at = 0; at < frame.size(); ++at)
                frame[at] = 0x010101u * (at / frameWidth * 3 + i * 2) + at % frameWidth * 0x000001u;
            EXPECT_TRUE(AddBitmap(frame, false, false));
            frames.push_back(frame);
        }
        EXPECT_TRUE(store.EndStorage());
    }
    std::string bytes;
    for (const Pixels& frame : frames)
        bytes.append(reinterpret_cast<const char*>(frame.data()), frame.size() * 4);
    test_support::WriteFile(target + L"\\frames.bgr0", bytes);
}

// The test cine_two_gib runs this, because it writes 2 GiB.
TEST_F(CineStoreAvi, MovieEndsBeforeTwoGibibytesAndPlaysUpToThere)
{
    if (test_support::EnvironmentVariable(L"CINE_TWO_GIB").empty())
        GTEST_SKIP() << "writes 2 GiB; run the test cine_two_gib";
    constexpr int side = 4096;
    CBitmap frame;
    frame.CreateBitmap(side, side, 1, 32, Pixels(side * side, 0x336699).data());
    ASSERT_TRUE(store.InitStorage(fileName.c_str(), nullptr, side, side, CRect(), 32));
    int written = 0;
    while (written < 40 && store.AddFrame(frame, false, true))
        ++written;
    EXPECT_EQ(written, 31); // frames of 64 MiB each
    EXPECT_FALSE(store.AddFrame(frame, false, true));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.Length(), 31);
    EXPECT_EQ(movie.Frame(30).size(), 4u * side * side);
    EXPECT_EQ(movie.Frame(0)[1], 0x66);
}

BOOL WINAPI NoSpaceLeft(LPCWSTR, PULARGE_INTEGER available, PULARGE_INTEGER, PULARGE_INTEGER)
{
    available->QuadPart = 0;
    return TRUE;
}

// disk-full runs this and lets the process write CINE_FILE_LIMIT bytes to any one file. The limit
// makes writes fail as on a full volume. The full volume's answer about its space is simulated.
TEST_F(CineStoreAvi, DiskFullFailsTheFrameAndTheEndReturns)
{
    if (test_support::EnvironmentVariable(L"CINE_FILE_LIMIT").empty())
        GTEST_SKIP() << "needs a limit on the size of files; disk-full sets one";
    const test_support::ImportHook hook(L"Utils_Statics.dll", "GetDiskFreeSpaceExW", &NoSpaceLeft);
    ASSERT_TRUE(Start(store, 1024, 768));
    EXPECT_FALSE(AddNothing()); // 3 MiB
    EXPECT_FALSE(AddNothing());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 1);
}
