// The spare stack for a thread that has none left.
#include <base/SpareStack.h>
#include <gtest/gtest.h>

#include <cstdint>

namespace {

std::uintptr_t s_place = 0;
DWORD s_thread = 0;
int s_runs = 0;

void Note()
{
    const char here = 0;
    s_place = reinterpret_cast<std::uintptr_t>(&here);
    s_thread = GetCurrentThreadId();
    ++s_runs;
}

bool IsOnThisStack(std::uintptr_t place)
{
    const char here = 0;
    MEMORY_BASIC_INFORMATION own = {}, other = {};
    VirtualQuery(&here, &own, sizeof own);
    VirtualQuery(reinterpret_cast<void*>(place), &other, sizeof other);
    return own.AllocationBase == other.AllocationBase;
}

TEST(SpareStack, RunsWorkOfTheSameThreadElsewhere)
{
    base::SpareStack stack(64 * 1024);
    s_runs = 0;
    for (const int runs : {1, 2}) {
        stack.Run(Note);
        EXPECT_EQ(s_runs, runs);
        EXPECT_EQ(s_thread, GetCurrentThreadId());
        EXPECT_FALSE(IsOnThisStack(s_place));
        EXPECT_FALSE(IsThreadAFiber());
    }
}

base::SpareStack* s_inner = nullptr;

void RunInner()
{
    Note();
    const std::uintptr_t outer = s_place;
    s_inner->Run(Note);
    EXPECT_FALSE(IsOnThisStack(s_place));
    EXPECT_TRUE(IsOnThisStack(outer)) << "and back again";
}

TEST(SpareStack, IsUsedFromAnother)
{
    base::SpareStack outer(64 * 1024);
    base::SpareStack inner(64 * 1024);
    s_inner = &inner;
    outer.Run(RunInner);
    EXPECT_FALSE(IsThreadAFiber());
}

TEST(SpareStack, KeepsTheLocksOfTheThread)
{
    base::SpareStack stack(64 * 1024);
    ASSERT_TRUE(HeapLock(GetProcessHeap()));
    stack.Run(
        [] { EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 9))); });
    HeapUnlock(GetProcessHeap());
}

TEST(SpareStack, RunsInPlaceWhereItCannotBeMade)
{
    base::SpareStack stack(static_cast<SIZE_T>(-1) / 2);
    stack.Run(Note);
    EXPECT_TRUE(IsOnThisStack(s_place));
    EXPECT_FALSE(IsThreadAFiber());
}

} // namespace
