#include <atltime.h>

#include <cwchar>

namespace {

tm LocalTm(const CTime& time)
{
    tm parts = {};
    if (time.GetLocalTm(&parts)) return parts;
    parts = {}; // the C library filled it with -1
    // These parts do not count from 0. With the values below every part of CTime reads 0.
    parts.tm_year = -1900;
    parts.tm_mon = parts.tm_wday = -1;
    return parts;
}

} // namespace

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int daylightSaving)
{
    tm parts = {};
    // The sum is unsigned, because an absurd year may wrap around. The conversion then refuses it.
    parts.tm_year = static_cast<int>(static_cast<unsigned>(year) - 1900u);
    parts.tm_mon = static_cast<int>(static_cast<unsigned>(month) - 1u);
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = daylightSaving;
    m_time = _mktime64(&parts);
}

CTime WINAPI CTime::GetCurrentTime()
{
    return CTime(_time64(nullptr));
}

tm* CTime::GetLocalTm(tm* result) const
{
    return result && m_time >= 0 && _localtime64_s(result, &m_time) == 0 ? result : nullptr;
}

int CTime::GetYear() const
{
    return LocalTm(*this).tm_year + 1900;
}

int CTime::GetMonth() const
{
    return LocalTm(*this).tm_mon + 1;
}

int CTime::GetDay() const
{
    return LocalTm(*this).tm_mday;
}

int CTime::GetHour() const
{
    return LocalTm(*this).tm_hour;
}

int CTime::GetMinute() const
{
    return LocalTm(*this).tm_min;
}

int CTime::GetSecond() const
{
    return LocalTm(*this).tm_sec;
}

int CTime::GetDayOfWeek() const
{
    return LocalTm(*this).tm_wday + 1;
}

CString CTime::Format(LPCWSTR format) const
{
    tm parts = {};
    if (!format || !GetLocalTm(&parts)) return {};
    wchar_t text[256];
    const size_t length = std::wcsftime(text, 256, format, &parts);
    return CString(text, static_cast<int>(length));
}
