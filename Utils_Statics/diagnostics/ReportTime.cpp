#include "diagnostics/ReportTime.h"

namespace utils_statics {

FixedText<64> LocalTimeText(const FILETIME& utc) noexcept
{
    FixedText<64> text;
    FILETIME local = {};
    SYSTEMTIME time = {};
    if (!FileTimeToLocalFileTime(&utc, &local) || !FileTimeToSystemTime(&local, &time)) {
        text = L"Unknown";
        return text;
    }
    wsprintfW(text.data(), L"%d/%d/%d %02d:%02d:%02d", time.wMonth, time.wDay, time.wYear,
              time.wHour, time.wMinute, time.wSecond);
    text.Measure();
    return text;
}

FixedText<64> DosTimeStamp() noexcept
{
    FILETIME now = {};
    FILETIME local = {};
    WORD date = 0;
    WORD time = 0;
    GetSystemTimeAsFileTime(&now);
    FileTimeToLocalFileTime(&now, &local);
    FileTimeToDosDateTime(&local, &date, &time);
    FixedText<64> text;
    wsprintfW(text.data(), L"%02d%02d%04d_%02d%02d%02d", date >> 5 & 0xF, date & 0x1F,
              (date >> 9) + 1980, time >> 11, time >> 5 & 0x3F, (time & 0x1F) * 2);
    text.Measure();
    return text;
}

unsigned long long TimeUnits(const FILETIME& time) noexcept
{
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

} // namespace utils_statics
