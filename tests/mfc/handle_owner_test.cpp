#include "HandleOwner.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

// A resource that writes down what is released.
struct CountedTraits
{
    using Handle = const int*;
    static void Release(Handle handle) noexcept { released.push_back(*handle); }
    static std::vector<int> released;
};
std::vector<int> CountedTraits::released;

using Owner = framework::HandleOwner<CountedTraits>;

static_assert(!std::is_copy_constructible_v<Owner> && !std::is_copy_assignable_v<Owner>);
static_assert(std::is_nothrow_move_constructible_v<Owner> &&
              std::is_nothrow_move_assignable_v<Owner>);

constexpr int one = 1;
constexpr int two = 2;

class HandleOwner : public testing::Test
{
protected:
    HandleOwner() { CountedTraits::released.clear(); }

    static const std::vector<int>& Released() { return CountedTraits::released; }
};

} // namespace

TEST_F(HandleOwner, ReleasesOnceAtItsEnd)
{
    {
        const Owner owner(&one);
        EXPECT_TRUE(owner);
        EXPECT_EQ(owner.get(), &one);
        EXPECT_TRUE(Released().empty());
    }
    EXPECT_EQ(Released(), std::vector<int>{1});
}

TEST_F(HandleOwner, ReleasesNothingWhenItIsEmpty)
{
    {
        Owner owner;
        EXPECT_FALSE(owner);
        owner.reset();
    }
    EXPECT_TRUE(Released().empty());
}

TEST_F(HandleOwner, MovesOverALiveHandle)
{
    {
        Owner owner(&one);
        Owner other(&two);
        owner = std::move(other);
        EXPECT_EQ(Released(), std::vector<int>{1});
        EXPECT_EQ(owner.get(), &two);
        EXPECT_FALSE(other);
        const Owner third(std::move(owner));
        EXPECT_EQ(third.get(), &two);
    }
    EXPECT_EQ(Released(), (std::vector<int>{1, 2}));
}

TEST_F(HandleOwner, SurvivesAMoveToItself)
{
    Owner owner(&one);
    Owner& same = owner;
    owner = std::move(same);
    EXPECT_EQ(owner.get(), &one);
    EXPECT_TRUE(Released().empty());
}

TEST_F(HandleOwner, ReleasesWhatAFunctionReplaces)
{
    Owner owner(&one);
    *owner.put() = &two;
    EXPECT_EQ(Released(), std::vector<int>{1});
    EXPECT_EQ(owner.get(), &two);
    owner.reset(&one);
    EXPECT_EQ(Released(), (std::vector<int>{1, 2}));
}
