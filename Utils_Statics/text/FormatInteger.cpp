// Integers are written here because the platform's functions get some combinations of '#', width
// and precision wrong.
#include "text/FormatInteger.h"

#include <cstdint>

namespace utils_statics {

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

} // namespace

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

std::wstring AddressText(const FormatConversion& conversion, const void* address)
{
    FormatConversion hexadecimal = conversion;
    hexadecimal.type = L'X';
    hexadecimal.size = Size::bits64;
    hexadecimal.precision = 2 * sizeof address;
    return IntegerText(hexadecimal,
                       static_cast<long long>(reinterpret_cast<std::uintptr_t>(address)));
}

} // namespace utils_statics
