#pragma once

#include <base/Handles.h>

#include <windows.h>

namespace utils_statics {

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
