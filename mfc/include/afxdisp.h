#pragma once

#include <framework/export.h>

#include <atltime.h>

#include <windows.h>
#include <oaidl.h>

/// The value of each part of a moment without a calendar date.
inline constexpr int AFX_OLE_DATETIME_ERROR = -1;

/// A moment in OLE Automation's count: days since midnight, 30 December 1899, in no particular time
/// zone, for the years 100 to 9999.
class COleDateTime
{
public:
    /// The status tells whether the value is a moment.
    enum DateTimeStatus
    {
        error = -1,  ///< something failed
        valid = 0,   ///< a moment
        invalid = 1, ///< no such moment
        null = 2     ///< deliberately none
    };

    /// The status lies before the value. In the other order the value could be read without a look
    /// at the status.
    DateTimeStatus m_status = valid;
    DATE m_dt = 0; ///< days since midnight, 30 December 1899

    constexpr COleDateTime() noexcept = default;
    /// Invalid when the count is no moment.
    MFC_API COleDateTime(DATE date);
    /// Month and day count from 1.
    MFC_API COleDateTime(int year, int month, int day, int hour, int minute, int second);
    /// Leaves the milliseconds out.
    MFC_API COleDateTime(const SYSTEMTIME& time);
    /// Takes local time.
    MFC_API explicit COleDateTime(const CTime& time);

    /// The present moment in local time.
    MFC_API static COleDateTime WINAPI GetCurrentTime();

    /// The status, which may be set without the value.
    constexpr DateTimeStatus GetStatus() const noexcept { return m_status; }
    constexpr void SetStatus(DateTimeStatus status) noexcept { m_status = status; }
    /// False unless the status is valid.
    MFC_API bool GetAsSystemTime(SYSTEMTIME& time) const;

    /// AFX_OLE_DATETIME_ERROR unless the status is valid. Days of the week count from 1, which is
    /// Sunday.
    MFC_API int GetYear() const;
    MFC_API int GetMonth() const;
    MFC_API int GetDay() const;
    MFC_API int GetHour() const;
    MFC_API int GetMinute() const;
    MFC_API int GetSecond() const;
    MFC_API int GetDayOfWeek() const;
    MFC_API int GetDayOfYear() const;

    /// Returns 0; or 1, with the status invalid, when there is no such moment.
    MFC_API int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    /// Sets midnight of a day.
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
    /// Sets a time on 30 December 1899.
    int SetTime(int hour, int minute, int second)
    {
        return SetDateTime(1899, 12, 30, hour, minute, second);
    }
    /// Formats like the C library's wcsftime; empty unless the status is valid.
    MFC_API CString Format(LPCWSTR format) const;

    /// Compares moments. Two that are not valid are equal when their statuses are. The fraction of
    /// a negative value counts the hours forward, and the comparison takes account of that.
    friend bool operator==(const COleDateTime& a, const COleDateTime& b) noexcept
    {
        return a.m_status == b.m_status &&
               (a.m_status != valid || Linear(a.m_dt) == Linear(b.m_dt));
    }
    friend std::partial_ordering operator<=>(const COleDateTime& a, const COleDateTime& b) noexcept
    {
        if (a.m_status != valid || b.m_status != valid)
            return a == b ? std::partial_ordering::equivalent : std::partial_ordering::unordered;
        return Linear(a.m_dt) <=> Linear(b.m_dt);
    }

private:
    MFC_API static double Linear(DATE date) noexcept;
};
