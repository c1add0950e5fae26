// utilsExam: spans of dates.
#include "Utils_Statics/utilsExam.h"

#include <afxdisp.h>

int utilsExam::GetYearSpan(const COleDateTime& from, const COleDateTime& to)
{
    const int years = to.GetYear() - from.GetYear();
    const bool beforeTheDay = to.GetMonth() < from.GetMonth() ||
                              (to.GetMonth() == from.GetMonth() && to.GetDay() < from.GetDay());
    return beforeTheDay ? years - 1 : years;
}

int utilsExam::GetMonthSpan(const COleDateTime& from, const COleDateTime& to)
{
    constexpr int monthsOfAYear = 12;
    int months = to.GetMonth() - from.GetMonth();
    if (months < 0) months += monthsOfAYear;
    const bool beforeTheDay = to.GetDay() < from.GetDay();
    if (months == 0 && to.GetDay() == from.GetDay()) return 0;
    if (months == 0 && beforeTheDay) return monthsOfAYear;
    return beforeTheDay ? months : months + 1; // a started month counts
}
