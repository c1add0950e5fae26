#pragma once

#include <framework/export.h>

#include <atlstr.h>

#include <windows.h>

#include <compare>
#include <ctime>

/// The system's header defines a macro of this name, which would rename the functions below.
#undef GetCurrentTime

/// A moment: seconds since 1970-01-01 00:00 UTC, zero by default. Its parts are in local time.
class CTime
{
public:
    constexpr CTime() noexcept = default;
    /// Seconds since 1970-01-01 00:00 UTC.
    constexpr CTime(__time64_t time) noexcept : m_time(time) {}
    /// Takes local time; month and day count from 1. Parts that form no moment give -1 (GetTime).
    MFC_API CTime(int year, int month, int day, int hour, int minute, int second,
                  int daylightSaving = -1);

    /// The present moment.
    MFC_API static CTime WINAPI GetCurrentTime();

    /// Seconds since 1970-01-01 00:00 UTC; -1 for no moment.
    constexpr __time64_t GetTime() const noexcept { return m_time; }
    /// Null when the moment has no local calendar date.
    MFC_API tm* GetLocalTm(tm* result) const;
    /// 0 when the moment has no local calendar date. Days of the week count from 1, which is
    /// Sunday.
    MFC_API int GetYear() const;
    MFC_API int GetMonth() const;
    MFC_API int GetDay() const;
    MFC_API int GetHour() const;
    MFC_API int GetMinute() const;
    MFC_API int GetSecond() const;
    MFC_API int GetDayOfWeek() const;
    /// Formats local time like the C library's wcsftime; empty when that fails.
    MFC_API CString Format(LPCWSTR format) const;

    /// Compares moments.
    friend constexpr auto operator<=>(const CTime&, const CTime&) noexcept = default;

private:
    __time64_t m_time = 0;
};
