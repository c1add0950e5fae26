#pragma once

#include "text/FormatText.h"

#include <cstdarg>
#include <string>
#include <utility>

namespace utils_statics {

// Appends literal pieces and converted arguments to one text. The arguments are fetched in order,
// each with the type of its conversion.
class FormatOutput
{
public:
    // Works on a copy of `arguments`.
    explicit FormatOutput(va_list arguments)
    {
        va_copy(m_arguments, arguments);
        m_text.reserve(128); // one allocation is enough for most texts
    }
    ~FormatOutput() { va_end(m_arguments); }
    FormatOutput(const FormatOutput&) = delete;
    FormatOutput& operator=(const FormatOutput&) = delete;

    void AppendLiteral(const wchar_t* begin, std::size_t length) { m_text.append(begin, length); }

    // False when the platform could not convert a number.
    bool AppendConversion(const FormatConversion& conversion);

    std::wstring Take() { return std::move(m_text); }

private:
    bool AppendReal(const FormatConversion& conversion);
    void AppendInteger32(const FormatConversion& conversion, int value);
    void AppendCharacter(const FormatConversion& conversion, int value);
    void AppendWideText(const FormatConversion& conversion);
    void AppendNarrowText(const FormatConversion& conversion);
    void AppendPadded(const FormatConversion& conversion, const wchar_t* begin, std::size_t length);

    va_list m_arguments;
    std::wstring m_text;
};

} // namespace utils_statics
