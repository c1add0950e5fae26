// Geometry values, rounding, the map of names and values, the critical section.
#include <gtest/gtest.h>
#include <qor_utils/CriticalSection.h>
#include <qor_utils/Rounding.h>
#include <qor_utils/StringEnumHelper.h>
#include <qor_utils/uData.h>
#include <qor_utils/ULine.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

#include <windows.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(GeometryValues, AreZeroFromTheStart)
{
    EXPECT_EQ(UPoint(), (UPoint{0, 0}));
    EXPECT_EQ(URect(), (URect{0, 0, 0, 0}));
    EXPECT_EQ(ULine(), (ULine{0, 0, 0, 0}));
    EXPECT_EQ(uDataDesc().frameRate, 0);
    EXPECT_EQ(ZelProbe().elements, 0);
}

TEST(GeometryValues, AreEqualOnlyWhenEachMemberIs)
{
    EXPECT_EQ((URect{1, 2, 3, 4}), (URect{1, 2, 3, 4}));
    EXPECT_NE((URect{1, 2, 3, 4}), (URect{1, 2, 3, 5}));
    EXPECT_NE((UPoint{1, 2}), (UPoint{2, 1}));
    EXPECT_NE((ULine{1, 2, 3, 4}), (ULine{3, 4, 1, 2}));
}

TEST(GeometryValues, LieInMemoryAsFilesStoreThem)
{
    EXPECT_EQ(sizeof(UPoint), 8u);
    EXPECT_EQ(sizeof(URect), 16u);
    EXPECT_EQ(sizeof(ULine), 16u);
    EXPECT_EQ(sizeof(uData), 4u);
    EXPECT_EQ(sizeof(uDataDesc), 48u);
    EXPECT_EQ(offsetof(uDataDesc, lines), 4u);
    EXPECT_EQ(offsetof(uDataDesc, frameRate), 44u);
}

// A client gets the rounding of the loaded library, not of the header that it was built with.
TEST(Round, IsAnOperationOfTheLibrary)
{
    const HMODULE library = GetModuleHandleW(L"qor_utils.dll");
    EXPECT_NE(GetProcAddress(library, "_ZN9qor_utils5roundEd"), nullptr);
}

TEST(Round, GoesToTheNearestInteger)
{
    EXPECT_EQ(qor_utils::round(2.4), 2);
    EXPECT_EQ(qor_utils::round(2.6), 3);
    EXPECT_EQ(qor_utils::round(-2.4), -2);
    EXPECT_EQ(qor_utils::round(-2.6), -3);
    EXPECT_EQ(qor_utils::round(-0.0), 0);
}

TEST(Round, TakesHalvesAwayFromZero)
{
    EXPECT_EQ(qor_utils::round(0.5), 1);
    EXPECT_EQ(qor_utils::round(1.5), 2);
    EXPECT_EQ(qor_utils::round(2.5), 3);
    EXPECT_EQ(qor_utils::round(-0.5), -1);
    EXPECT_EQ(qor_utils::round(-2.5), -3);
}

TEST(Round, DoesNotRoundUpWhatIsJustBelowAHalf)
{
    EXPECT_EQ(qor_utils::round(std::nextafter(0.5, 0.0)), 0);
    EXPECT_EQ(qor_utils::round(std::nextafter(-0.5, 0.0)), 0);
}

TEST(Round, SaturatesAtTheLimits)
{
    constexpr int highest = std::numeric_limits<int>::max();
    constexpr int lowest = std::numeric_limits<int>::min();
    EXPECT_EQ(qor_utils::round(2147483646.4), highest - 1);
    EXPECT_EQ(qor_utils::round(2147483646.5), highest);
    EXPECT_EQ(qor_utils::round(2147483647.4), highest);
    EXPECT_EQ(qor_utils::round(-2147483647.4), lowest + 1);
    EXPECT_EQ(qor_utils::round(-2147483647.5), lowest);
    EXPECT_EQ(qor_utils::round(1e300), highest);
    EXPECT_EQ(qor_utils::round(-1e300), lowest);
    EXPECT_EQ(qor_utils::round(std::numeric_limits<double>::infinity()), highest);
    EXPECT_EQ(qor_utils::round(-std::numeric_limits<double>::infinity()), lowest);
}

TEST(Round, GivesZeroForNotANumber)
{
    EXPECT_EQ(qor_utils::round(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Round, AgreesWithTheStandardLibraryWithinTheRange)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> any(-2147483648.0, 2147483647.0);
    std::uniform_int_distribution<int> quarters(-4000, 4000);
    for (int i = 0; i < 100000; ++i) {
        const double wide = any(random);
        const double narrow = quarters(random) / 4.0;
        ASSERT_EQ(qor_utils::round(wide), std::lround(wide)) << wide;
        ASSERT_EQ(qor_utils::round(narrow), std::lround(narrow)) << narrow;
    }
}

TEST(StringEnumHelper, AnswersBothWays)
{
    StringEnumHelper map;
    map.Add(L"Tavren", 4);
    map.Add(L"Unknown", -1);
    EXPECT_EQ(map.GetValue(L"Tavren"), 4);
    EXPECT_STREQ(map.GetName(4), L"Tavren");
    EXPECT_STREQ(map.GetName(-1), L"Unknown");
}

TEST(StringEnumHelper, GivesMinusOneAndUnknownForWhatIsNotThere)
{
    StringEnumHelper map;
    EXPECT_EQ(map.GetValue(L"Tavren"), -1);
    EXPECT_STREQ(map.GetName(4), L"Unknown");
    map.Add(L"Tavren", 4);
    EXPECT_EQ(map.GetValue(L"tavren"), -1);
    EXPECT_EQ(map.GetValue(L"Tavre"), -1);
    EXPECT_EQ(map.GetValue(L""), -1);
    EXPECT_EQ(map.GetValue(nullptr), -1);
}

TEST(StringEnumHelper, KeepsTheRowThatCameFirst)
{
    StringEnumHelper map;
    map.Add(L"one", 1);
    map.Add(L"one", 2);
    map.Add(L"uno", 1);
    EXPECT_EQ(map.GetValue(L"one"), 1);
    EXPECT_EQ(map.GetValue(L"uno"), 1);
    EXPECT_STREQ(map.GetName(1), L"one");
    EXPECT_STREQ(map.GetName(2), L"one");
}

TEST(StringEnumHelper, IgnoresANullName)
{
    StringEnumHelper map;
    map.Add(nullptr, 7);
    EXPECT_STREQ(map.GetName(7), L"Unknown");
}

TEST(StringEnumHelper, LeavesNamesWhereTheyAreWhenRowsAreAdded)
{
    StringEnumHelper map;
    map.Add(L"first", 0);
    const wchar_t* const name = map.GetName(0);
    for (int i = 1; i < 1000; ++i)
        map.Add((L"row" + std::to_wstring(i)).c_str(), i);
    EXPECT_EQ(map.GetName(0), name);
    EXPECT_STREQ(name, L"first");
}

TEST(CriticalSection, KeepsThreadsApart)
{
    CriticalSection section;
    int counter = 0; // not atomic: lost increments would show
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50000; ++i) {
                const CriticalSectionLock guard(section);
                counter = counter + 1;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(counter, 200000);
}

TEST(CriticalSection, MayBeEnteredAgainByItsHolderAndLeavesAsOften)
{
    CriticalSection section;
    std::string order;
    section.Enter();
    section.Enter();
    std::jthread other([&] {
        const CriticalSectionLock guard(section);
        order += "b";
    });
    section.Leave();
    order += "a"; // still held once, so the other thread has not entered
    section.Leave();
    other.join();
    EXPECT_EQ(order, "ab");
}

} // namespace
