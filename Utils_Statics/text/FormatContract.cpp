#include "text/FormatContract.h"

#include "text/FormatText.h"

#include <base/Encoding.h>

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <utility>

namespace utils_statics {

using Piece = FormatReader::Piece;
using Size = FormatConversion::Size;

namespace {

bool IsSigned(const FormatConversion& conversion)
{
    return conversion.type == L'd' || conversion.type == L'i';
}

// The argument reduced to the type of the size prefix, then sign or zero extended.
long long Narrowed(long long value, const FormatConversion& conversion)
{
    const bool isSigned = IsSigned(conversion);
    switch (conversion.size) {
    case Size::bits64: return value;
    case Size::half:
        return isSigned ? static_cast<short>(value) : static_cast<unsigned short>(value);
    case Size::character:
        return isSigned ? static_cast<signed char>(value) : static_cast<unsigned char>(value);
    default:
        return isSigned ? static_cast<int>(value)
                        : static_cast<long long>(static_cast<unsigned int>(value));
    }
}

unsigned int BaseOf(wchar_t type)
{
    if (type == L'o') return 8;
    return type == L'x' || type == L'X' ? 16 : 10;
}

// The digits without leading zeros; none for zero.
std::wstring Digits(unsigned long long magnitude, unsigned int base, bool upperCase)
{
    const wchar_t* const symbols = upperCase ? L"0123456789ABCDEF" : L"0123456789abcdef";
    std::wstring digits;
    for (; magnitude != 0; magnitude /= base)
        digits.insert(digits.begin(), symbols[magnitude % base]);
    return digits;
}

std::wstring SignOf(const FormatConversion& conversion, bool negative)
{
    if (!IsSigned(conversion)) return L"";
    if (negative) return L"-";
    if (conversion.sign) return L"+";
    return conversion.space ? L" " : L"";
}

std::wstring Padded(const FormatConversion& conversion, const std::wstring& prefix,
                    const std::wstring& digits)
{
    const std::size_t length = prefix.size() + digits.size();
    const std::size_t width = static_cast<std::size_t>(conversion.width);
    const std::size_t padding = width > length ? width - length : 0;
    if (conversion.leftAlign) return prefix + digits + std::wstring(padding, L' ');
    // A precision fixes the number of zeros, so the zero flag has no effect with it.
    if (conversion.zeroPad && conversion.precision < 0)
        return prefix + std::wstring(padding, L'0') + digits;
    return std::wstring(padding, L' ') + prefix + digits;
}

// The text of an argument of the conversion's own size: signed for %d and %i, unsigned for the
// others. Integers are written here because the platform's functions get some combinations of '#',
// width and precision wrong.
std::wstring IntegerText(const FormatConversion& conversion, long long argument)
{
    const long long value = Narrowed(argument, conversion);
    const bool negative = IsSigned(conversion) && value < 0;
    const unsigned long long bits = static_cast<unsigned long long>(value);
    const bool upperCase = conversion.type == L'X';
    std::wstring digits = Digits(negative ? 0 - bits : bits, BaseOf(conversion.type), upperCase);

    const std::size_t least =
        conversion.precision < 0 ? 1 : static_cast<std::size_t>(conversion.precision);
    if (digits.size() < least) digits.insert(0, least - digits.size(), L'0');
    std::wstring prefix = SignOf(conversion, negative);
    if (conversion.alternate && conversion.type == L'o' && !digits.starts_with(L'0'))
        digits.insert(0, 1, L'0');
    if (conversion.alternate && BaseOf(conversion.type) == 16 && bits != 0)
        prefix += upperCase ? L"0X" : L"0x";
    return Padded(conversion, prefix, digits);
}

// Upper-case hexadecimal digits, as many as an address of the program has.
std::wstring AddressText(const FormatConversion& conversion, const void* address)
{
    FormatConversion hexadecimal = conversion;
    hexadecimal.type = L'X';
    hexadecimal.size = Size::bits64;
    hexadecimal.precision = 2 * sizeof address;
    return IntegerText(hexadecimal,
                       static_cast<long long>(reinterpret_cast<std::uintptr_t>(address)));
}

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

Piece NextConversion(FormatReader& reader)
{
    Piece piece = reader.Next();
    while (piece == Piece::literal)
        piece = reader.Next();
    return piece;
}

// FormatByContract tells when a text does.
bool SatisfiesContract(const wchar_t* text, const wchar_t* contract)
{
    FormatReader texts(text);
    FormatReader contracts(contract);
    for (;;) {
        const Piece piece = NextConversion(texts);
        if (piece == Piece::end) return true;
        if (piece != Piece::conversion || NextConversion(contracts) != Piece::conversion)
            return false;
        if (texts.Conversion().argument != contracts.Conversion().argument) return false;
    }
}

} // namespace

std::optional<std::wstring> FormatByContract(const wchar_t* text, const wchar_t* contract,
                                             va_list arguments)
{
    if (!SatisfiesContract(text, contract)) return std::nullopt;
    FormatOutput output(arguments);
    FormatReader reader(text);
    for (Piece piece = reader.Next(); piece != Piece::end; piece = reader.Next()) {
        if (piece == Piece::literal)
            output.AppendLiteral(reader.LiteralBegin(), reader.LiteralLength());
        else if (!output.AppendConversion(reader.Conversion()))
            return std::nullopt;
    }
    return output.Take();
}

} // namespace utils_statics
