// Movies that need more than this program: other readers, gibibytes of disk, a full disk. Scripts
// run these tests.
#include "CineStoreAviFixture.h"

#include <base/Handles.h>
#include <test_support/ChildTest.h>
#include <test_support/ImportHook.h>
#include <test_support/InstalledCodec.h>

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
    base::File file(CreateFileW((target + L"\\frames.bgr0").c_str(), GENERIC_WRITE, 0, nullptr,
                                CREATE_ALWAYS, 0, nullptr));
    for (const Pixels& frame : frames) {
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file.get(), frame.data(), static_cast<DWORD>(frame.size() * 4),
                              &written, nullptr));
    }
    file.reset();
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
