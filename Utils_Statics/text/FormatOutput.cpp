#include "text/FormatOutput.h"

#include "text/FormatInteger.h"

#include <base/Encoding.h>

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace utils_statics {

namespace {

// The largest finite real has 309 digits before its point.
constexpr std::size_t realCapacity = maximumFormatField + 512;

// "%<flags>*[.*]<type>", the only form of a conversion that is passed to the platform.
std::wstring PlatformForm(const FormatConversion& conversion)
{
    std::wstring form = L"%";
    if (conversion.leftAlign) form += L'-';
    if (conversion.sign) form += L'+';
    if (conversion.space) form += L' ';
    if (conversion.alternate) form += L'#';
    if (conversion.zeroPad) form += L'0';
    form += conversion.precision >= 0 ? L"*.*" : L"*";
    form += conversion.type == L'F' ? L'f' : conversion.type; // %F is not known everywhere
    return form;
}

} // namespace

bool FormatOutput::AppendConversion(const FormatConversion& conversion)
{
    switch (conversion.argument) {
    case FormatArgument::real: return AppendReal(conversion);
    case FormatArgument::wideText: AppendWideText(conversion); break;
    case FormatArgument::narrowText: AppendNarrowText(conversion); break;
    case FormatArgument::address:
        m_text += AddressText(conversion, va_arg(m_arguments, void*));
        break;
    case FormatArgument::integer64:
        m_text += IntegerText(conversion, va_arg(m_arguments, long long));
        break;
    case FormatArgument::integer32: AppendInteger32(conversion, va_arg(m_arguments, int)); break;
    }
    return true;
}

void FormatOutput::AppendInteger32(const FormatConversion& conversion, int value)
{
    if (conversion.type == L'c' || conversion.type == L'C')
        AppendCharacter(conversion, value);
    else
        m_text += IntegerText(conversion, value);
}

void FormatOutput::AppendCharacter(const FormatConversion& conversion, int value)
{
    const char narrow = static_cast<char>(value);
    const std::wstring text = conversion.type == L'C'
                                  ? base::WideFromBytes(CP_ACP, {&narrow, 1}).value_or(L"")
                                  : std::wstring(1, static_cast<wchar_t>(value));
    AppendPadded(conversion, text.data(), text.size());
}

void FormatOutput::AppendWideText(const FormatConversion& conversion)
{
    const wchar_t* text = va_arg(m_arguments, const wchar_t*);
    if (!text) text = L"(null)";
    // With a precision the text need not end in a zero, so no more of it is read.
    const bool bounded = conversion.precision >= 0;
    AppendPadded(conversion, text,
                 bounded ? wcsnlen(text, static_cast<std::size_t>(conversion.precision))
                         : std::wcslen(text));
}

void FormatOutput::AppendNarrowText(const FormatConversion& conversion)
{
    const char* text = va_arg(m_arguments, const char*);
    if (!text) text = "(null)";
    const bool bounded = conversion.precision >= 0;
    const std::size_t length =
        bounded ? strnlen(text, static_cast<std::size_t>(conversion.precision)) : std::strlen(text);
    const std::wstring wide = base::WideFromBytes(CP_ACP, {text, length}).value_or(L"");
    AppendPadded(conversion, wide.data(), wide.size());
}

void FormatOutput::AppendPadded(const FormatConversion& conversion, const wchar_t* begin,
                                std::size_t length)
{
    const std::size_t width = static_cast<std::size_t>(conversion.width);
    const std::size_t padding = width > length ? width - length : 0;
    if (!conversion.leftAlign) m_text.append(padding, conversion.zeroPad ? L'0' : L' ');
    m_text.append(begin, length);
    if (conversion.leftAlign) m_text.append(padding, L' ');
}

bool FormatOutput::AppendReal(const FormatConversion& conversion)
{
    const double value = va_arg(m_arguments, double);
    wchar_t number[realCapacity];
    const std::wstring form = PlatformForm(conversion);
    const int length =
        conversion.precision >= 0
            ? _snwprintf(number, realCapacity, form.c_str(), conversion.width, conversion.precision,
                         value)
            : _snwprintf(number, realCapacity, form.c_str(), conversion.width, value);
    if (length < 0) return false; // the text did not fit, or the platform refused
    m_text.append(number, static_cast<std::size_t>(length));
    return true;
}

} // namespace utils_statics
