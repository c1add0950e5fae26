// The end of a recording: what it finishes, and whom it tells.
#include "CineStoreFixture.h"

#include <base/Handles.h>

#include <memory>
#include <utility>

using test_support::ReadFile;

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
