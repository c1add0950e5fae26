#include <base/Owner.h>
#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

// A resource that records each release. 0 is a valid resource, as with handles for which the
// platform uses -1 as "none".
struct CountedTraits
{
    using Handle = int;
    static int Empty() noexcept { return -1; }
    static void Release(int handle) noexcept { s_released.push_back(handle); }
    static std::vector<int> s_released;
};
std::vector<int> CountedTraits::s_released;

using Counted = base::Owner<CountedTraits>;

static_assert(!std::is_copy_constructible_v<Counted> && !std::is_copy_assignable_v<Counted>);
static_assert(std::is_nothrow_move_constructible_v<Counted> &&
              std::is_nothrow_move_assignable_v<Counted>);
static_assert(!std::is_convertible_v<int, Counted> && !std::is_convertible_v<Counted, int>);
static_assert(sizeof(Counted) == sizeof(int));

class OwnerTest : public testing::Test
{
protected:
    OwnerTest() { CountedTraits::s_released.clear(); }

    static const std::vector<int>& Released() { return CountedTraits::s_released; }
};

} // namespace

TEST_F(OwnerTest, ReleasesOnceAtItsEnd)
{
    {
        const Counted owner(1);
        EXPECT_TRUE(owner);
        EXPECT_EQ(owner.get(), 1);
        EXPECT_TRUE(Released().empty());
    }
    EXPECT_EQ(Released(), std::vector<int>{1});
}

TEST_F(OwnerTest, ReleasesAHandleThatIsZeroWhereZeroIsOne)
{
    {
        const Counted owner(0);
        EXPECT_TRUE(owner);
    }
    EXPECT_EQ(Released(), std::vector<int>{0});
}

TEST_F(OwnerTest, ReleasesNothingWhenItIsEmpty)
{
    {
        Counted owner;
        EXPECT_FALSE(owner);
        EXPECT_EQ(owner.get(), -1);
        owner.reset();
        const Counted given(-1);
        EXPECT_FALSE(given);
    }
    EXPECT_TRUE(Released().empty());
}

TEST_F(OwnerTest, MovesOverALiveHandle)
{
    {
        Counted owner(1);
        Counted other(2);
        owner = std::move(other);
        EXPECT_EQ(Released(), std::vector<int>{1});
        EXPECT_EQ(owner.get(), 2);
        EXPECT_FALSE(other);
        const Counted third(std::move(owner));
        EXPECT_EQ(third.get(), 2);
        EXPECT_FALSE(owner);
    }
    EXPECT_EQ(Released(), (std::vector<int>{1, 2}));
}

TEST_F(OwnerTest, SurvivesAMoveToItself)
{
    Counted owner(1);
    Counted& same = owner;
    owner = std::move(same);
    EXPECT_EQ(owner.get(), 1);
    EXPECT_TRUE(Released().empty());
}

TEST_F(OwnerTest, ReleasesWhatAFunctionReplaces)
{
    Counted owner(1);
    *owner.put() = 2;
    EXPECT_EQ(Released(), std::vector<int>{1});
    EXPECT_EQ(owner.get(), 2);
    owner.reset(1);
    EXPECT_EQ(Released(), (std::vector<int>{1, 2}));
}

TEST_F(OwnerTest, IsEmptyForAFunctionThatStoresNothing)
{
    Counted owner(1);
    EXPECT_EQ(*owner.put(), -1);
    EXPECT_FALSE(owner);
}

TEST_F(OwnerTest, HandsItsHandleOver)
{
    {
        Counted owner(1);
        EXPECT_EQ(owner.release(), 1);
        EXPECT_FALSE(owner);
    }
    EXPECT_TRUE(Released().empty());
}
