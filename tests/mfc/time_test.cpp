#include <gtest/gtest.h>

#include <afxdisp.h>
#include <atltime.h>

#include <oleauto.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constinit CTime s_constantInitialised;

int DaysInMonth(int year, int month)
{
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1] + (leap && month == 2 ? 1 : 0);
}

} // namespace

TEST(CTime, IsZeroByDefault)
{
    EXPECT_EQ(s_constantInitialised.GetTime(), 0);
    EXPECT_EQ(CTime(), CTime(0));
}

TEST(CTime, KeepsItsPartsOfLocalTime)
{
    const CTime time(2011, 3, 9, 14, 5, 59);
    EXPECT_EQ(time.GetYear(), 2011);
    EXPECT_EQ(time.GetMonth(), 3);
    EXPECT_EQ(time.GetDay(), 9);
    EXPECT_EQ(time.GetHour(), 14);
    EXPECT_EQ(time.GetMinute(), 5);
    EXPECT_EQ(time.GetSecond(), 59);
    EXPECT_EQ(time.GetDayOfWeek(), 4); // a Wednesday
    EXPECT_EQ(time.Format(L"%Y-%m-%d %H:%M:%S"), L"2011-03-09 14:05:59");
}

TEST(CTime, OrdersByMoment)
{
    EXPECT_LT(CTime(2011, 1, 1, 0, 0, 0), CTime(2011, 1, 1, 0, 0, 1));
    EXPECT_EQ(CTime(2012, 3, 1, 0, 0, 0).GetTime() - CTime(2012, 2, 28, 0, 0, 0).GetTime(),
              2 * 86400);
}

TEST(CTime, IsTheSystemsTimeNow)
{
    const __time64_t before = _time64(nullptr);
    const CTime now = CTime::GetCurrentTime();
    EXPECT_GE(now.GetTime(), before);
    EXPECT_LE(now.GetTime(), _time64(nullptr));
}

TEST(CTime, HasNoPartsOutsideOfTheCalendar)
{
    for (const CTime& time : {CTime(-1), CTime(std::numeric_limits<__time64_t>::max())}) {
        EXPECT_EQ(time.GetYear(), 0);
        EXPECT_EQ(time.GetMonth(), 0);
        EXPECT_EQ(time.GetDay(), 0);
        EXPECT_EQ(time.GetDayOfWeek(), 0);
        EXPECT_EQ(time.Format(L"%Y"), L"");
    }
    EXPECT_EQ(CTime(INT_MIN, INT_MIN, 1, 0, 0, 0).GetTime(), -1);
}

TEST(COleDateTime, StartsValidAtItsEpoch)
{
    const COleDateTime time;
    EXPECT_EQ(time.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(time.GetYear(), 1899);
    EXPECT_EQ(time.GetMonth(), 12);
    EXPECT_EQ(time.GetDay(), 30);
    EXPECT_EQ(time.GetHour(), 0);
}

TEST(COleDateTime, KeepsItsParts)
{
    const COleDateTime time(2000, 2, 29, 23, 59, 58);
    EXPECT_EQ(time.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(time.GetYear(), 2000);
    EXPECT_EQ(time.GetMonth(), 2);
    EXPECT_EQ(time.GetDay(), 29);
    EXPECT_EQ(time.GetHour(), 23);
    EXPECT_EQ(time.GetMinute(), 59);
    EXPECT_EQ(time.GetSecond(), 58);
    EXPECT_EQ(time.GetDayOfWeek(), 3); // a Tuesday
    EXPECT_EQ(time.GetDayOfYear(), 60);
    EXPECT_EQ(time.Format(L"%d.%m.%Y %H:%M:%S"), L"29.02.2000 23:59:58");
}

TEST(COleDateTime, RefusesMomentsThatDoNotExist)
{
    for (const COleDateTime& time :
         {COleDateTime(2001, 2, 29, 0, 0, 0), COleDateTime(1900, 2, 29, 0, 0, 0),
          COleDateTime(2000, 13, 1, 0, 0, 0), COleDateTime(2000, 0, 1, 0, 0, 0),
          COleDateTime(2000, 1, 0, 0, 0, 0), COleDateTime(2000, 1, 1, 24, 0, 0),
          COleDateTime(2000, 1, 1, 0, 60, 0), COleDateTime(99, 1, 1, 0, 0, 0),
          COleDateTime(10000, 1, 1, 0, 0, 0), COleDateTime(-1, INT_MIN, INT_MAX, 0, 0, 0),
          COleDateTime(std::nan("")), COleDateTime(1e300), COleDateTime(-1e9)}) {
        EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
        EXPECT_EQ(time.GetYear(), AFX_OLE_DATETIME_ERROR);
        EXPECT_EQ(time.GetDay(), AFX_OLE_DATETIME_ERROR);
        EXPECT_EQ(time.Format(L"%Y"), L"");
    }
}

TEST(COleDateTime, ReportsASettingThatFails)
{
    COleDateTime time;
    EXPECT_EQ(time.SetDate(2010, 5, 10), 0);
    EXPECT_EQ(time.GetMonth(), 5);
    EXPECT_EQ(time.SetDate(2010, 5, 32), 1);
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(time.SetTime(7, 8, 9), 0);
    EXPECT_EQ(time.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(time.GetMinute(), 8);
}

TEST(COleDateTime, HasNoPartsWhenItIsNull)
{
    COleDateTime time(2010, 1, 1, 0, 0, 0);
    time.SetStatus(COleDateTime::null);
    EXPECT_EQ(time.GetYear(), AFX_OLE_DATETIME_ERROR);
}

TEST(COleDateTime, OrdersMomentsAlsoBeforeItsEpoch)
{
    EXPECT_LT(COleDateTime(2000, 5, 10, 0, 0, 0), COleDateTime(2000, 5, 10, 0, 0, 1));
    // Before the epoch the fraction counts forward, so 18:00 has the smaller value although it is
    // later.
    EXPECT_LT(COleDateTime(1850, 1, 1, 6, 0, 0), COleDateTime(1850, 1, 1, 18, 0, 0));
    EXPECT_LT(COleDateTime(1850, 1, 1, 18, 0, 0), COleDateTime(1850, 1, 2, 6, 0, 0));
    EXPECT_EQ(COleDateTime(1850, 1, 1, 6, 0, 0), COleDateTime(1850, 1, 1, 6, 0, 0));
    EXPECT_NE(COleDateTime(), COleDateTime(2001, 2, 29, 0, 0, 0));
}

TEST(COleDateTime, ConvertsFromOtherTimes)
{
    SYSTEMTIME system = {};
    system.wYear = 2010;
    system.wMonth = 5;
    system.wDay = 9;
    system.wHour = 1;
    EXPECT_EQ(COleDateTime(system), COleDateTime(2010, 5, 9, 1, 0, 0));
    EXPECT_EQ(COleDateTime(CTime(2011, 3, 9, 14, 5, 59)), COleDateTime(2011, 3, 9, 14, 5, 59));
    EXPECT_EQ(COleDateTime(36526.0), COleDateTime(2000, 1, 1, 0, 0, 0));
}

TEST(COleDateTime, IsTheLocalTimeNow)
{
    SYSTEMTIME before, after;
    GetLocalTime(&before);
    const COleDateTime now = COleDateTime::GetCurrentTime();
    GetLocalTime(&after);
    EXPECT_GE(now, COleDateTime(before));
    EXPECT_LE(now, COleDateTime(after));
}

TEST(COleDateTime, ReadsBackEveryDateAndTime)
{
    std::mt19937 random(5);
    const auto between = [&](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    };
    for (int round = 0; round < 20000; ++round) {
        const int year = between(100, 9999), month = between(1, 12);
        const int day = between(1, DaysInMonth(year, month));
        const int hour = between(0, 23), minute = between(0, 59), second = between(0, 59);
        const COleDateTime time(year, month, day, hour, minute, second);
        ASSERT_EQ(time.GetStatus(), COleDateTime::valid) << year << '-' << month << '-' << day;
        ASSERT_EQ(time.GetYear(), year);
        ASSERT_EQ(time.GetMonth(), month);
        ASSERT_EQ(time.GetDay(), day);
        ASSERT_EQ(time.GetHour(), hour) << time.m_dt;
        ASSERT_EQ(time.GetMinute(), minute) << time.m_dt;
        ASSERT_EQ(time.GetSecond(), second) << time.m_dt;
    }
}
