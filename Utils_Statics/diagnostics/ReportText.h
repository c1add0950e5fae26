#pragma once

#include <base/Handles.h>

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <string_view>

namespace utils_statics {

// A text in memory of its own, for code that must not allocate. Text that does not fit is cut off.
template <std::size_t Size>
class FixedText
{
public:
    // The characters that fit, without the null.
    static constexpr std::size_t capacity = Size - 1;

    const wchar_t* Text() const noexcept { return m_text; }
    std::wstring_view View() const noexcept { return {m_text, m_length}; }

    FixedText& operator=(std::wstring_view text) noexcept
    {
        m_length = 0;
        m_isCut = false;
        *this += text;
        return *this;
    }
    FixedText& operator+=(std::wstring_view text) noexcept
    {
        const std::size_t size = std::min(text.size(), capacity - m_length);
        std::wmemcpy(m_text + m_length, text.data(), size);
        m_length += size;
        m_text[m_length] = L'\0';
        m_isCut = m_isCut || size < text.size();
        return *this;
    }

    // True when text was cut off since the last assignment.
    bool IsCut() const noexcept { return m_isCut; }

    // The buffer for a function of the platform that stores a text of up to `capacity` characters.
    // Measure must be called afterwards.
    wchar_t* data() noexcept { return m_text; }
    void Measure() noexcept
    {
        m_text[capacity] = L'\0';
        m_length = std::wcslen(m_text);
        m_isCut = false;
    }

private:
    wchar_t m_text[Size] = {};
    std::size_t m_length = 0;
    bool m_isCut = false;
};

// The part of a path after its last backslash, and the part up to and including it.
inline std::wstring_view FileNamePart(std::wstring_view path) noexcept
{
    return path.substr(path.rfind(L'\\') + 1);
}
inline std::wstring_view FolderPart(std::wstring_view path) noexcept
{
    return path.substr(0, path.rfind(L'\\') + 1);
}

// A moment in local time, as the report writes it: "6/30/2024 09:05:07".
FixedText<64> LocalTimeText(const FILETIME& utc) noexcept;

// The report's file and the buffer its text is formatted into. It needs no memory but its own.
class ReportText
{
public:
    // Creates the file, replacing an existing one, and writes the byte-order mark. False when the
    // file cannot be created.
    bool Open(const wchar_t* path) noexcept;

    // Formats one piece as the platform's wsprintf does. The rest after 1023 characters is cut off,
    // but a piece that should end a line still ends it.
    void Write(const wchar_t* format, ...) noexcept;

    // Writes what is left in the buffer and closes the file.
    void Close() noexcept;

private:
    static constexpr std::size_t flushLength = 7168;  // a fuller buffer is written out first
    static constexpr std::size_t longestPiece = 1024; // with its null

    void EndCutLine(const wchar_t* format, std::size_t piece) noexcept;
    void Flush() noexcept;

    base::File m_file;
    std::size_t m_length = 0;
    wchar_t m_text[flushLength + longestPiece] = {};
};

} // namespace utils_statics
