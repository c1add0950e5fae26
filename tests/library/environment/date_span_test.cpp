// Ages in years and spans in months.
#include <gtest/gtest.h>
#include <Utils_Statics/utilsExam.h>

#include <afxdisp.h>

namespace {

COleDateTime Day(int year, int month, int day)
{
    return COleDateTime(year, month, day, 0, 0, 0);
}

TEST(GetYearSpan, CountsWholeYears)
{
    const COleDateTime birth = Day(2000, 5, 10);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, Day(2010, 5, 9)), 9);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, Day(2010, 5, 10)), 10);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, Day(2010, 4, 30)), 9);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, Day(2010, 6, 1)), 10);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, birth), 0);
    EXPECT_EQ(utilsExam::GetYearSpan(birth, Day(2000, 5, 9)), -1);
    EXPECT_EQ(utilsExam::GetYearSpan(Day(2000, 2, 29), Day(2001, 2, 28)), 0);
    EXPECT_EQ(utilsExam::GetYearSpan(Day(100, 1, 1), Day(9999, 12, 31)), 9899);
}

TEST(GetYearSpan, IgnoresTheTimeOfDay)
{
    EXPECT_EQ(utilsExam::GetYearSpan(COleDateTime(2000, 5, 10, 23, 0, 0),
                                     COleDateTime(2010, 5, 10, 1, 0, 0)),
              10);
}

TEST(GetMonthSpan, CountsMonthsBegun)
{
    const COleDateTime from = Day(2001, 1, 15);
    EXPECT_EQ(utilsExam::GetMonthSpan(from, Day(2001, 3, 10)), 2);
    EXPECT_EQ(utilsExam::GetMonthSpan(from, Day(2001, 3, 20)), 3);
    EXPECT_EQ(utilsExam::GetMonthSpan(from, Day(2001, 3, 15)), 3);
    EXPECT_EQ(utilsExam::GetMonthSpan(from, Day(2001, 1, 20)), 1);
    EXPECT_EQ(utilsExam::GetMonthSpan(from, from), 0);
}

TEST(GetMonthSpan, IgnoresTheYears)
{
    for (const int year : {1999, 2001, 2002, 2050}) {
        EXPECT_EQ(utilsExam::GetMonthSpan(Day(2001, 1, 20), Day(year, 1, 15)), 12);
        EXPECT_EQ(utilsExam::GetMonthSpan(Day(2001, 1, 20), Day(year, 1, 20)), 0);
        EXPECT_EQ(utilsExam::GetMonthSpan(Day(2001, 11, 15), Day(year, 2, 10)), 3);
        EXPECT_EQ(utilsExam::GetMonthSpan(Day(2001, 11, 15), Day(year, 2, 20)), 4);
        EXPECT_EQ(utilsExam::GetMonthSpan(Day(2001, 2, 20), Day(year, 1, 25)), 12);
    }
}

// For every pair of days of a year, the test counts the days on which a month begins, from the
// first day to the next coming of the second.
TEST(GetMonthSpan, AgreesWithCountingForwardOverAllPairsOfDays)
{
    for (int m0 = 1; m0 <= 12; ++m0)
        for (int d0 = 1; d0 <= 28; ++d0)
            for (int m1 = 1; m1 <= 12; ++m1)
                for (int d1 = 1; d1 <= 28; ++d1) {
                    int begun = 0;
                    for (int month = m0, day = d0; month != m1 || day != d1;) {
                        if (day == d0) ++begun;
                        if (++day == 29) {
                            day = 1;
                            month = month % 12 + 1;
                        }
                    }
                    // The day on which a month begins counts as begun.
                    if (d1 == d0 && m1 != m0) ++begun;
                    ASSERT_EQ(utilsExam::GetMonthSpan(Day(2001, m0, d0), Day(2001, m1, d1)), begun)
                        << m0 << '/' << d0 << " to " << m1 << '/' << d1;
                }
}

TEST(Spans, OfMomentsWithoutADateAreCalculatedAllTheSame)
{
    COleDateTime none;
    none.SetStatus(COleDateTime::null);
    EXPECT_EQ(utilsExam::GetYearSpan(none, none), 0);
    EXPECT_EQ(utilsExam::GetMonthSpan(none, none), 0);
}

} // namespace
