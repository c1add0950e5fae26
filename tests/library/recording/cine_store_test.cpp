// The file of a recording, the members that a derived store reuses, and a second use of a store.
#include "CineStoreFixture.h"

#include <base/Handles.h>
#include <test_support/ResourceCounts.h>

#include <array>
#include <memory>
#include <utility>

using test_support::ReadFile;
using test_support::WriteFile;

TEST_F(CineStore, ThreeFramesOfAThousandBytesMakeAFileOf3076BytesThatCountsThree)
{
    ASSERT_TRUE(Start(store, fileName));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(AddFrame(store, Bytes(1000, 0)));
    EXPECT_TRUE(store.EndStorage());

    const Bytes bytes = ReadFile(fileName);
    EXPECT_EQ(bytes.size(), 3076u);
    EXPECT_EQ(WordAt(bytes, 4), 3u);
}

TEST_F(CineStore, HeaderHoldsTypeCountDescriptionAndTheSixIntegersInOrder)
{
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(store.EndStorage());

    const Bytes bytes = ReadFile(fileName);
    ASSERT_EQ(bytes.size(), headerSize);
    const std::array<std::int32_t, 19> expected{
        uDataMMode, 0, 128,   512, 8,   40000000, 1540, 1,  128,      300,
        -60000,     0, 24500, 11,  -12, 13,       -14,  15, INT32_MIN};
    EXPECT_EQ(std::memcmp(bytes.data(), expected.data(), headerSize), 0);
}

TEST_F(CineStore, HeaderIsOnDiskWithCountZeroBeforeTheFirstFrame)
{
    ASSERT_TRUE(Start(store, fileName));
    const Bytes bytes = ReadFile(fileName);
    EXPECT_EQ(bytes.size(), headerSize);
    EXPECT_EQ(WordAt(bytes, 4), 0u);
}

TEST_F(CineStore, CountIsPatchedOnlyAtTheEnd)
{
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddFrame(store, Bytes(10, 0)));
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 0u);
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 1u);
}

TEST_F(CineStore, FirstWordOfTheDescriptionNeverReachesTheFile)
{
    ASSERT_TRUE(Start(store, fileName, 1));
    EXPECT_TRUE(store.EndStorage());
    const Bytes first = ReadFile(fileName);
    ASSERT_TRUE(Start(store, fileName, -77));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(first, ReadFile(fileName));
}

TEST_F(CineStore, EcgDataReplacesTheCountByItsSize)
{
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddFrame(store, Bytes(10, 0)));
    EXPECT_TRUE(AddFrame(store, Bytes(10, 0)));
    EXPECT_TRUE(AddEcg(store, Bytes(256, 0)));
    EXPECT_TRUE(store.EndStorage());

    const Bytes bytes = ReadFile(fileName);
    EXPECT_EQ(WordAt(bytes, 4), 256u);
    EXPECT_EQ(bytes.size(), headerSize + 20 + 256);
}

TEST_F(CineStore, LastEcgBlockDecidesAndFramesCountOnFromIt)
{
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddEcg(store, Bytes(256, 0)));
    EXPECT_TRUE(AddEcg(store, Bytes(7, 0)));
    EXPECT_TRUE(AddFrame(store, Bytes(1, 0)));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 8u);
}

TEST_F(CineStore, PayloadIsEveryBlockVerbatimInCallOrder)
{
    std::mt19937 random(20);
    ASSERT_TRUE(Start(store, fileName));
    Bytes expected;
    for (unsigned i = 0; i < 60; ++i) {
        const Bytes next = Block(1 + random() % 9000, i);
        EXPECT_TRUE(i % 3 == 2 ? AddEcg(store, next) : AddFrame(store, next));
        expected.insert(expected.end(), next.begin(), next.end());
    }
    EXPECT_TRUE(store.EndStorage());

    const Bytes bytes = ReadFile(fileName);
    ASSERT_EQ(bytes.size(), headerSize + expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), bytes.begin() + headerSize));
}

TEST_F(CineStore, FailedStartStillTakesTheNewValues)
{
    OpenStore open;
    ASSERT_TRUE(open.InitStorage(fileName.c_str(), uDataEcg, {}, 0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(AddFrame(open, Bytes(1, 0)));
    EXPECT_TRUE(open.EndStorage());
    EXPECT_FALSE(Start(open, folder / L"missing\\cine.raw"));
    EXPECT_EQ(open.frameCount, 0);
    EXPECT_EQ(open.type, uDataMMode);
    EXPECT_EQ(open.desc[0], 128u);
    EXPECT_EQ(open.desc[10], 24500u);
    EXPECT_EQ(open.extra[5], INT32_MIN);
    EXPECT_STREQ(static_cast<const wchar_t*>(open.path),
                 fileName.c_str()); // no new path is recorded
}

TEST_F(CineStore, NewStoreIsAllZero)
{
    OpenStore open;
    EXPECT_EQ(open.type, 0);
    EXPECT_EQ(open.frameCount, 0);
    EXPECT_TRUE(std::all_of(std::begin(open.desc), std::end(open.desc),
                            [](auto word) { return word == 0; }));
    EXPECT_TRUE(std::all_of(std::begin(open.extra), std::end(open.extra),
                            [](auto word) { return word == 0; }));
    EXPECT_TRUE(open.path.IsEmpty());
    EXPECT_EQ(open.file, nullptr);
    EXPECT_EQ(open.completeCallback, nullptr);
    EXPECT_EQ(open.userData, nullptr);
}

TEST_F(CineStore, MembersOneToFourLieInTheFormOfTheHeader)
{
    OpenStore open;
    const auto* first = reinterpret_cast<const char*>(&open.type);
    EXPECT_EQ(reinterpret_cast<const char*>(&open.frameCount) - first, 4);
    EXPECT_EQ(reinterpret_cast<const char*>(&open.desc) - first, 8);
    EXPECT_EQ(reinterpret_cast<const char*>(&open.extra) - first, 52);
}

TEST_F(CineStore, CopyHasEveryMember)
{
    OpenStore open;
    open.SetCompleteCallback(&Completed::Notify, &completed);
    ASSERT_TRUE(Start(open, fileName));
    EXPECT_TRUE(AddFrame(open, Bytes(4, 0)));
    EXPECT_TRUE(open.EndStorage());

    const OpenStore constructed(open);
    OpenStore assigned;
    assigned = open;
    for (const OpenStore* copy : {&constructed, const_cast<const OpenStore*>(&assigned)}) {
        EXPECT_EQ(copy->type, open.type);
        EXPECT_EQ(copy->frameCount, 1);
        EXPECT_EQ(std::memcmp(copy->desc, open.desc, sizeof copy->desc), 0);
        EXPECT_EQ(std::memcmp(copy->extra, open.extra, sizeof copy->extra), 0);
        EXPECT_STREQ(static_cast<const wchar_t*>(copy->path), fileName.c_str());
        EXPECT_EQ(copy->completeCallback, open.completeCallback);
        EXPECT_EQ(copy->userData, &completed);
    }
}

TEST_F(CineStore, CopyHasTheOpenFileToo)
{
    OpenStore open;
    ASSERT_TRUE(Start(open, fileName));
    OpenStore copy(open);
    EXPECT_EQ(copy.file, open.file);
    copy.file = nullptr; // one of the two finishes the file
}

TEST_F(CineStore, StoreIsUsedAgainForTheNextFile)
{
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddFrame(store, Bytes(1, 0)));
    EXPECT_TRUE(store.EndStorage());
    ASSERT_TRUE(Start(store, folder / L"second.raw"));
    EXPECT_TRUE(AddFrame(store, Bytes(2, 0)));
    EXPECT_TRUE(AddFrame(store, Bytes(2, 0)));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 1u);
    EXPECT_EQ(WordAt(ReadFile(folder / L"second.raw"), 4), 2u);
}

TEST_F(CineStore, ExistingFileIsTruncated)
{
    WriteFile(fileName, Bytes(5000, 'x'));
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(ReadFile(fileName).size(), headerSize);
}

TEST_F(CineStore, StartWhileRecordingLeavesTheFirstFileUnfinishedAndReleased)
{
    store.SetCompleteCallback(&Completed::Notify, &completed);
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddFrame(store, Bytes(8, 0)));
    ASSERT_TRUE(Start(store, folder / L"second.raw"));
    EXPECT_EQ(completed.calls, 0);
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 0u);
    EXPECT_TRUE(DeleteFileW(fileName.c_str()));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.path, folder / L"second.raw");
}

TEST_F(CineStore, ThousandRecordingsLeakNoHandle)
{
    const auto record = [&] {
        CCineStore local;
        ASSERT_TRUE(Start(local, fileName));
        ASSERT_TRUE(AddFrame(local, Bytes(16, 0)));
    };
    record();
    const DWORD before = test_support::HandleCount();
    for (int i = 0; i < 1000; ++i)
        record();
    EXPECT_EQ(test_support::HandleCount(), before);
}

// The end of a recording: what it finishes, and whom it tells.

TEST_F(CineStore, EndOfAnIdleStoreIsFalseAndFiresNothing)
{
    store.SetCompleteCallback(&Completed::Notify, &completed);
    EXPECT_FALSE(store.EndStorage());
    EXPECT_EQ(completed.calls, 0);
}

TEST_F(CineStore, CallbackFiresOnceWithThePathOnTheEndingThread)
{
    store.SetCompleteCallback(&Completed::Notify, &completed);
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_FALSE(store.EndStorage());
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(completed.path, fileName);
    EXPECT_EQ(completed.thread, GetCurrentThreadId());
}

TEST_F(CineStore, FileIsClosedAndCompleteWhenTheCallbackRuns)
{
    struct Reader
    {
        static void Notify(const wchar_t* path, void* size)
        {
            base::File exclusive(
                CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
            EXPECT_TRUE(exclusive);
            exclusive.reset();
            const Bytes bytes = ReadFile(path);
            *static_cast<std::size_t*>(size) = bytes.size();
            EXPECT_EQ(WordAt(bytes, 4), 1u);
        }
    };
    std::size_t size = 0;
    store.SetCompleteCallback(&Reader::Notify, &size);
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(AddFrame(store, Bytes(5, 0)));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(size, headerSize + 5);
}

TEST_F(CineStore, CallbackMayStartTheNextFile)
{
    struct Chain
    {
        CCineStore store;
        std::wstring next;
        std::wstring announced;

        static void Notify(const wchar_t* path, void* self)
        {
            auto& chain = *static_cast<Chain*>(self);
            chain.store.SetCompleteCallback(nullptr, nullptr);
            EXPECT_TRUE(Start(chain.store, chain.next));
            chain.announced = path; // still the path of the finished file
        }
    };
    Chain chain;
    chain.next = folder / L"the next file, whose path is longer.raw";
    chain.store.SetCompleteCallback(&Chain::Notify, &chain);
    ASSERT_TRUE(Start(chain.store, fileName));
    EXPECT_TRUE(chain.store.EndStorage());
    EXPECT_EQ(chain.announced, fileName);
    EXPECT_TRUE(AddFrame(chain.store, Bytes(3, 0)));
    EXPECT_TRUE(chain.store.EndStorage());
    EXPECT_EQ(WordAt(ReadFile(chain.next), 4), 1u);
}

TEST_F(CineStore, NullCallbackSwitchesTheNotificationOff)
{
    store.SetCompleteCallback(&Completed::Notify, &completed);
    store.SetCompleteCallback(nullptr, &completed);
    ASSERT_TRUE(Start(store, fileName));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 0);
}

TEST_F(CineStore, DestroyingARecordingStoreFinishesTheFileAndFiresTheCallback)
{
    {
        CCineStore local;
        local.SetCompleteCallback(&Completed::Notify, &completed);
        ASSERT_TRUE(Start(local, fileName));
        EXPECT_TRUE(AddFrame(local, Bytes(3, 0)));
        EXPECT_TRUE(AddFrame(local, Bytes(3, 0)));
    }
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(WordAt(ReadFile(fileName), 4), 2u);
}

TEST_F(CineStore, DestroyingThroughABasePointerReachesTheOverride)
{
    struct Counting : CCineStore
    {
        int* ends = nullptr;
        ~Counting() override { ++*ends; }
    };
    int ends = 0;
    auto counting = std::make_unique<Counting>();
    counting->ends = &ends;
    std::unique_ptr<CCineStore> base = std::move(counting);
    base.reset();
    EXPECT_EQ(ends, 1);
}
