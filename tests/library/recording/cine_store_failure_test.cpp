// Refused calls, failures in the middle, and the remains of a recorder that is killed.
#include "CineStoreFixture.h"

#include <base/Handles.h>
#include <test_support/ChildTest.h>

#include <climits>
#include <cstdio>

using test_support::ReadFile;
using test_support::WriteFile;

TEST_F(CineStore, MissingFolderGivesFalseAndTheEndIsFalseToo)
{
    store.SetCompleteCallback(&Completed::Notify, &completed);
    EXPECT_FALSE(Start(store, folder / L"missing\\cine.raw"));
    EXPECT_FALSE(store.EndStorage());
    EXPECT_EQ(completed.calls, 0);
}

TEST_F(CineStore, BlocksOutsideARecordingAreRefused)
{
    EXPECT_FALSE(AddFrame(store, Bytes(4, 0)));
    EXPECT_FALSE(AddEcg(store, Bytes(4, 0)));
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_FALSE(AddFrame(store, Bytes(4, 0)));
}

TEST_F(CineStore, EmptyNegativeAndNullBlocksAreRefusedAndNotCounted)
{
    ASSERT_TRUE(Start(store, fileName));
    int value = 0;
    for (const int size : {0, -1, INT_MIN}) {
        EXPECT_FALSE(store.AddFrame(&value, size));
        EXPECT_FALSE(store.AddECGData(&value, size));
    }
    EXPECT_FALSE(store.AddFrame(nullptr, 4));
    EXPECT_FALSE(store.AddECGData(nullptr, INT_MAX));
    EXPECT_TRUE(store.AddFrame(&value, 4));
    EXPECT_TRUE(store.EndStorage());
    const Bytes bytes = ReadFile(fileName);
    EXPECT_EQ(bytes.size(), headerSize + 4);
    EXPECT_EQ(WordAt(bytes, 4), 1u);
}

TEST_F(CineStore, ReadOnlyFileIsNotReplaced)
{
    WriteFile(fileName, Bytes(9, 'x'));
    ASSERT_TRUE(SetFileAttributesW(fileName.c_str(), FILE_ATTRIBUTE_READONLY));
    base::File probe(
        CreateFileW(fileName.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (probe) {
        probe.reset();
        GTEST_SKIP() << "this user may write to read-only files";
    }
    EXPECT_FALSE(Start(store, fileName));
    EXPECT_EQ(ReadFile(fileName), Bytes(9, 'x'));
}

TEST_F(CineStore, FileLockedBySomebodyElseIsNotReplaced)
{
    WriteFile(fileName, Bytes(9, 'x'));
    base::File lock(CreateFileW(fileName.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(Start(store, fileName));
    EXPECT_FALSE(store.EndStorage());
    lock.reset();
    EXPECT_EQ(ReadFile(fileName), Bytes(9, 'x'));
}

TEST_F(CineStore, FolderAndUnusableNamesAreRefused)
{
    EXPECT_FALSE(Start(store, folder.Path()));
    EXPECT_FALSE(Start(store, L""));
    EXPECT_FALSE(Start(store, folder / L"a<b>:c|?.raw"));
    EXPECT_FALSE(Start(store, folder / std::wstring(40000, L'x')));
}

TEST_F(CineStore, PipeThatNobodyReadsAnyMoreFailsTheFrameAndTheEndCannotPositionIt)
{
    const std::wstring name = L"\\\\.\\pipe\\cine" + std::to_wstring(GetCurrentProcessId());
    HANDLE reader = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 65536,
                                     65536, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    OpenStore open;
    open.SetCompleteCallback(&Completed::Notify, &completed);
    ASSERT_TRUE(Start(open, name));
    EXPECT_TRUE(AddFrame(open, Bytes(100, 0)));
    CloseHandle(reader);

    EXPECT_FALSE(AddFrame(open, Bytes(100, 0)));
    EXPECT_FALSE(AddEcg(open, Bytes(100, 0)));
    EXPECT_EQ(open.frameCount, 1);
    EXPECT_FALSE(open.EndStorage());
    EXPECT_EQ(open.file, nullptr);
    EXPECT_EQ(completed.calls, 0);
}

// A device on which every write fails for want of space.
TEST_F(CineStore, FullDiskFailsTheHeaderAndThePatchOfTheCount)
{
    const wchar_t* const fullDevice = L"\\\\?\\unix\\dev\\full";
    base::File probe(CreateFileW(fullDevice, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!probe) GTEST_SKIP() << "this platform has no device that is always full";
    probe.reset();
    OpenStore open;
    open.SetCompleteCallback(&Completed::Notify, &completed);
    EXPECT_FALSE(Start(open, fullDevice));
    EXPECT_NE(open.file, nullptr); // the store stays in the recording state
    EXPECT_TRUE(open.path.IsEmpty());
    EXPECT_FALSE(AddFrame(open, Bytes(4, 0)));
    EXPECT_FALSE(open.EndStorage());
    EXPECT_EQ(open.file, nullptr);
    EXPECT_EQ(completed.calls, 0);
}

// disk-full runs this and lets the process write CINE_FILE_LIMIT bytes to any one file.
TEST_F(CineStore, DiskFullInTheMiddleOfAFrameKeepsTheWholeFramesAndTheCount)
{
    const std::wstring limitText = test_support::EnvironmentVariable(L"CINE_FILE_LIMIT");
    if (limitText.empty()) GTEST_SKIP() << "needs a limit on the size of files; disk-full sets one";
    const std::size_t limit = std::stoul(limitText);
    constexpr std::size_t frameSize = 10000;
    const std::size_t fitting = (limit - headerSize) / frameSize;

    store.SetCompleteCallback(&Completed::Notify, &completed);
    ASSERT_TRUE(Start(store, fileName));
    for (unsigned i = 0; i < fitting; ++i)
        ASSERT_TRUE(AddFrame(store, Block(frameSize, i)));
    EXPECT_FALSE(AddFrame(store, Block(frameSize)));
    EXPECT_EQ(ReadFile(fileName).size(), headerSize + fitting * frameSize);
    EXPECT_TRUE(AddFrame(
        store, Block(100, 77))); // a smaller block still fits, and follows the last whole one
    EXPECT_TRUE(store.EndStorage());

    const Bytes bytes = ReadFile(fileName);
    ASSERT_EQ(bytes.size(), headerSize + fitting * frameSize + 100);
    EXPECT_EQ(WordAt(bytes, 4), fitting + 1);
    const Bytes last = Block(100, 77);
    EXPECT_TRUE(std::equal(last.begin(), last.end(), bytes.end() - 100));
    EXPECT_EQ(completed.calls, 1);
}

namespace {

constexpr unsigned framesBeforeTheKill = 40;
constexpr std::size_t killedFrameSize = 5001;

} // namespace

// Records, tells its parent, and waits for its end.
TEST(CineStoreChild, DISABLED_RecordsUntilItIsKilled)
{
    CCineStore store;
    ASSERT_TRUE(Start(store, test_support::EnvironmentVariable(L"CINE_CHILD_FILE")));
    for (unsigned i = 0; i < framesBeforeTheKill; ++i)
        ASSERT_TRUE(AddFrame(store, Block(killedFrameSize, i)));
    HANDLE recorded = OpenEventW(EVENT_MODIFY_STATE, FALSE,
                                 test_support::EnvironmentVariable(L"CINE_CHILD_EVENT").c_str());
    ASSERT_NE(recorded, nullptr);
    SetEvent(recorded);
    WaitForSingleObject(GetCurrentProcess(), INFINITE);
}

TEST_F(CineStore, KilledRecorderLeavesEveryAcceptedFrame)
{
    const std::wstring eventName = L"cine-recorded-" + std::to_wstring(GetCurrentProcessId());
    HANDLE recorded = CreateEventW(nullptr, TRUE, FALSE, eventName.c_str());
    SetEnvironmentVariableW(L"CINE_CHILD_FILE", fileName.c_str());
    SetEnvironmentVariableW(L"CINE_CHILD_EVENT", eventName.c_str());
    test_support::ChildTest child("CineStoreChild.DISABLED_RecordsUntilItIsKilled");
    const HANDLE either[] = {recorded, child.Process()};
    ASSERT_EQ(WaitForMultipleObjects(2, either, FALSE, 60000), WAIT_OBJECT_0);
    child.Kill();
    CloseHandle(recorded);

    const Bytes bytes = ReadFile(fileName);
    ASSERT_EQ(bytes.size(), headerSize + framesBeforeTheKill * killedFrameSize);
    EXPECT_EQ(WordAt(bytes, 4), 0u);
    for (unsigned i = 0; i < framesBeforeTheKill; ++i) {
        const Bytes expected = Block(killedFrameSize, i);
        const auto at =
            bytes.begin() + static_cast<std::ptrdiff_t>(headerSize + i * killedFrameSize);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), at)) << "frame " << i;
    }
}
