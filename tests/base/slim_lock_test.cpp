#include <base/SlimLock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <shared_mutex>
#include <thread>
#include <type_traits>

namespace {

constinit base::SlimLock s_early; // compiles only if it is constant-initialised

static_assert(std::is_trivially_destructible_v<base::SlimLock>);
static_assert(!std::is_copy_constructible_v<base::SlimLock>);

// True when another thread could take the lock right now.
template <class Guard>
bool IsFree(base::SlimLock& lock)
{
    bool taken = false;
    std::thread([&] { taken = Guard(lock, std::try_to_lock).owns_lock(); }).join();
    return taken;
}

// A shared guard needs try_lock_shared, which the lock does not offer, so the platform's function
// is called.
bool IsFreeForReading(base::SlimLock& lock)
{
    bool taken = false;
    std::thread([&] {
        if (!TryAcquireSRWLockShared(lock.Native())) return;
        taken = true;
        lock.unlock_shared();
    }).join();
    return taken;
}

} // namespace

TEST(SlimLock, OneThreadHoldsItAlone)
{
    {
        const std::scoped_lock guard(s_early);
        EXPECT_FALSE(IsFree<std::unique_lock<base::SlimLock>>(s_early));
        EXPECT_FALSE(IsFreeForReading(s_early));
    }
    EXPECT_TRUE(IsFree<std::unique_lock<base::SlimLock>>(s_early));
}

TEST(SlimLock, ReadersShareItAndKeepWritersOut)
{
    base::SlimLock lock;
    const std::shared_lock guard(lock);
    EXPECT_TRUE(IsFreeForReading(lock));
    EXPECT_FALSE(IsFree<std::unique_lock<base::SlimLock>>(lock));
}

TEST(SlimLock, EveryChangeUnderItCounts)
{
    constexpr int changes = 50000;
    base::SlimLock lock;
    int count = 0;
    const auto change = [&] {
        for (int i = 0; i < changes; ++i) {
            const std::scoped_lock guard(lock);
            ++count;
        }
    };
    std::thread first(change);
    std::thread second(change);
    first.join();
    second.join();
    EXPECT_EQ(count, 2 * changes);
}

TEST(SlimLock, ServesThePlatformsWaits)
{
    base::SlimLock lock;
    CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
    bool done = false;
    std::thread worker([&] {
        const std::scoped_lock guard(lock);
        done = true;
        WakeAllConditionVariable(&changed);
    });
    {
        const std::scoped_lock guard(lock);
        while (!done)
            ASSERT_TRUE(SleepConditionVariableSRW(&changed, lock.Native(), 10000, 0));
    }
    worker.join();
    EXPECT_TRUE(done);
}
