#include "diagnostics/ReportText.h"

#include <cstdarg>

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

bool ReportText::Open(const wchar_t* path) noexcept
{
    m_length = 0;
    m_file.reset(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr));
    if (!m_file) return false;
    constexpr unsigned char byteOrderMark[] = {0xFF, 0xFE};
    DWORD written = 0;
    WriteFile(m_file.get(), byteOrderMark, sizeof byteOrderMark, &written, nullptr);
    SetFilePointer(m_file.get(), 0, nullptr, FILE_END);
    return true;
}

void ReportText::Write(const wchar_t* format, ...) noexcept
{
    if (m_length > flushLength) Flush();
    va_list arguments;
    va_start(arguments, format);
    wvsprintfW(m_text + m_length, format, arguments);
    va_end(arguments);
    // The length is measured: for a text that was cut, implementations return different results.
    const std::size_t piece = wcsnlen(m_text + m_length, longestPiece - 1);
    if (piece == longestPiece - 1) EndCutLine(format, piece);
    m_length += piece;
}

void ReportText::EndCutLine(const wchar_t* format, std::size_t piece) noexcept
{
    constexpr std::wstring_view lineEnd = L"\r\n";
    if (std::wstring_view(format).ends_with(lineEnd))
        lineEnd.copy(m_text + m_length + piece - lineEnd.size(), lineEnd.size());
}

void ReportText::Flush() noexcept
{
    DWORD written = 0;
    WriteFile(m_file.get(), m_text, static_cast<DWORD>(m_length * sizeof(wchar_t)), &written,
              nullptr);
    m_length = 0;
}

void ReportText::Close() noexcept
{
    Flush();
    m_file.reset();
}

} // namespace utils_statics
