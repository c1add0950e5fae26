#include <base/WrapArithmetic.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace {

constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

// The low 32 bits of a number.
int Wrapped(std::int64_t value)
{
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

} // namespace

TEST(WrapArithmetic, SumsAndProductsWrapAround)
{
    static_assert(base::wrap::Add(most, 1) == least);
    static_assert(base::wrap::Subtract(least, 1) == most);
    static_assert(base::wrap::Multiply(least, -1) == least);
    static_assert(base::wrap::Multiply(1 << 16, 1 << 16) == 0);
    EXPECT_EQ(base::wrap::Subtract(0, least), least);
}

TEST(WrapArithmetic, AnyTwoNumbersGiveTheLowerBitsOfTheWideResult)
{
    std::mt19937 random(20);
    std::uniform_int_distribution<int> number(least, most);
    for (int i = 0; i < 100000; ++i) {
        const int a = number(random);
        const int b = number(random);
        ASSERT_EQ(base::wrap::Add(a, b), Wrapped(std::int64_t{a} + b));
        ASSERT_EQ(base::wrap::Subtract(a, b), Wrapped(std::int64_t{a} - b));
        ASSERT_EQ(base::wrap::Multiply(a, b), Wrapped(std::int64_t{a} * b));
    }
}

TEST(WrapArithmetic, QuotientsGoTowardsZero)
{
    EXPECT_EQ(base::wrap::Divide(7, 2), 3);
    EXPECT_EQ(base::wrap::Divide(-7, 2), -3);
    EXPECT_EQ(base::wrap::Divide(7, -1), -7);
    EXPECT_EQ(base::wrap::Divide(least, -1), least) << "the one that does not fit";
    EXPECT_EQ(base::wrap::Divide(7, 0), 0);
    EXPECT_EQ(base::wrap::Divide(0, 0), 0);
}

TEST(WrapArithmetic, WiderNumbersStopAtTheLimits)
{
    EXPECT_EQ(base::wrap::Saturate(std::int64_t{most} + 1), most);
    EXPECT_EQ(base::wrap::Saturate(std::int64_t{least} - 1), least);
    EXPECT_EQ(base::wrap::Saturate(-7), -7);
}

TEST(WrapArithmetic, RealNumbersAreCutTowardsZeroAndStopAtTheLimits)
{
    EXPECT_EQ(base::wrap::Truncate(2.9), 2);
    EXPECT_EQ(base::wrap::Truncate(-2.9), -2);
    EXPECT_EQ(base::wrap::Truncate(2147483646.9), most - 1);
    EXPECT_EQ(base::wrap::Truncate(2147483647.0), most);
    EXPECT_EQ(base::wrap::Truncate(1e300), most);
    EXPECT_EQ(base::wrap::Truncate(-2147483648.0), least);
    EXPECT_EQ(base::wrap::Truncate(-1e300), least);
    EXPECT_EQ(base::wrap::Truncate(std::numeric_limits<double>::infinity()), most);
    EXPECT_EQ(base::wrap::Truncate(std::numeric_limits<double>::quiet_NaN()), 0);
}
