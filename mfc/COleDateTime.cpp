#include <afxdisp.h>

#include <oleauto.h>

#include <cmath>
#include <cwchar>

namespace {

WORD ToWord(int value)
{
    // A value that does not fit becomes one that no moment has.
    return value < 0 || value > 0xFFFF ? WORD(0xFFFF) : static_cast<WORD>(value);
}

bool IsCalendarDate(const SYSTEMTIME& time)
{
    static constexpr WORD days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (time.wYear < 100 || time.wYear > 9999 || time.wMonth < 1 || time.wMonth > 12) return false;
    const bool leap = (time.wYear % 4 == 0 && time.wYear % 100 != 0) || time.wYear % 400 == 0;
    const int last = days[time.wMonth - 1] + (leap && time.wMonth == 2 ? 1 : 0);
    return time.wDay >= 1 && time.wDay <= last;
}

bool IsTimeOfDay(const SYSTEMTIME& time)
{
    return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60;
}

// One part of the moment, or the error value.
template <class Part>
int PartOf(const COleDateTime& time, Part part)
{
    SYSTEMTIME parts = {};
    return time.GetAsSystemTime(parts) ? part(parts) : AFX_OLE_DATETIME_ERROR;
}

} // namespace

COleDateTime::COleDateTime(DATE date) : m_dt(date)
{
    SYSTEMTIME parts = {};
    if (!GetAsSystemTime(parts)) m_status = invalid;
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second)
{
    SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime::COleDateTime(const SYSTEMTIME& time)
    : COleDateTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond)
{
}

COleDateTime::COleDateTime(const CTime& time)
    : COleDateTime(time.GetYear(), time.GetMonth(), time.GetDay(), time.GetHour(), time.GetMinute(),
                   time.GetSecond())
{
}

COleDateTime WINAPI COleDateTime::GetCurrentTime()
{
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    return COleDateTime(now);
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const
{
    return m_status == valid && std::isfinite(m_dt) && VariantTimeToSystemTime(m_dt, &time);
}

int COleDateTime::GetYear() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wYear); });
}

int COleDateTime::GetMonth() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wMonth); });
}

int COleDateTime::GetDay() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wDay); });
}

int COleDateTime::GetHour() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wHour); });
}

int COleDateTime::GetMinute() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wMinute); });
}

int COleDateTime::GetSecond() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return int(time.wSecond); });
}

int COleDateTime::GetDayOfWeek() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) { return time.wDayOfWeek + 1; });
}

int COleDateTime::GetDayOfYear() const
{
    return PartOf(*this, [](const SYSTEMTIME& time) {
        const COleDateTime date(time.wYear, time.wMonth, time.wDay, 0, 0, 0);
        const COleDateTime newYear(time.wYear, 1, 1, 0, 0, 0);
        return static_cast<int>(date.m_dt - newYear.m_dt) + 1;
    });
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second)
{
    SYSTEMTIME time = {ToWord(year),   ToWord(month),  0, ToWord(day), ToWord(hour),
                       ToWord(minute), ToWord(second), 0};
    m_dt = 0;
    // The platform's conversion would carry a 30 February over into March.
    const bool converted =
        IsCalendarDate(time) && IsTimeOfDay(time) && SystemTimeToVariantTime(&time, &m_dt);
    m_status = converted ? valid : invalid;
    return converted ? 0 : 1;
}

CString COleDateTime::Format(LPCWSTR format) const
{
    SYSTEMTIME time = {};
    if (!format || !GetAsSystemTime(time)) return {};
    tm parts = {};
    parts.tm_year = time.wYear - 1900;
    parts.tm_mon = time.wMonth - 1;
    parts.tm_mday = time.wDay;
    parts.tm_hour = time.wHour;
    parts.tm_min = time.wMinute;
    parts.tm_sec = time.wSecond;
    parts.tm_wday = time.wDayOfWeek;
    parts.tm_yday = GetDayOfYear() - 1;
    wchar_t text[256];
    const size_t length = std::wcsftime(text, 256, format, &parts);
    return CString(text, static_cast<int>(length));
}

double COleDateTime::Linear(DATE date) noexcept
{
    const double days = std::trunc(date);
    return days + std::fabs(date - days);
}
