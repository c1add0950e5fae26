#include "text/FormatText.h"

#include <cwchar>

namespace utils_statics {

using Size = FormatConversion::Size;

namespace {

constexpr Size pointerSize = sizeof(void*) == 8 ? Size::bits64 : Size::bits32;

bool IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

} // namespace

FormatReader::Piece FormatReader::Next()
{
    if (*m_next == L'\0') return Piece::end;
    if (*m_next != L'%') return ReadLiteral(std::wcscspn(m_next, L"%"));
    if (m_next[1] == L'%') {
        ++m_next;
        return ReadLiteral(1);
    }
    const wchar_t* const begin = m_next;
    if (ReadConversion()) return Piece::conversion;
    m_next = begin;
    return Piece::refused;
}

FormatReader::Piece FormatReader::ReadLiteral(std::size_t length)
{
    m_literal = m_next;
    m_literalLength = length;
    m_next += length;
    return Piece::literal;
}

bool FormatReader::ReadConversion()
{
    ++m_next; // the percent sign
    m_conversion = FormatConversion();
    ReadFlags();
    if (!ReadNumber(m_conversion.width)) return false;
    if (TakeIf(L'.')) {
        m_conversion.precision = 0; // a point alone means zero
        if (!ReadNumber(m_conversion.precision)) return false;
    }
    ReadSize();
    return ReadType();
}

void FormatReader::ReadFlags()
{
    for (;; ++m_next) {
        switch (*m_next) {
        case L'-': m_conversion.leftAlign = true; break;
        case L'+': m_conversion.sign = true; break;
        case L' ': m_conversion.space = true; break;
        case L'#': m_conversion.alternate = true; break;
        case L'0': m_conversion.zeroPad = true; break;
        default: return;
        }
    }
}

// Leaves `number` unchanged when there are no digits; false when the number is too large, however
// many digits it has.
bool FormatReader::ReadNumber(int& number)
{
    if (!IsDigit(*m_next)) return true;
    number = 0;
    for (; IsDigit(*m_next); ++m_next) {
        number = number * 10 + (*m_next - L'0');
        if (number > maximumFormatField) return false;
    }
    return true;
}

void FormatReader::ReadSize()
{
    Size& size = m_conversion.size;
    if (TakeIf(L'h'))
        size = TakeIf(L'h') ? Size::character : Size::half;
    else if (TakeIf(L'l'))
        size = TakeIf(L'l') ? Size::bits64 : Size::lower;
    else if (TakeIf(L'w'))
        size = Size::wide;
    else if (TakeIf(L'j'))
        size = Size::bits64;
    else if (TakeIf(L'z') || TakeIf(L't'))
        size = pointerSize;
    else if (TakeIf(L'I')) {
        size = pointerSize;
        if (m_next[0] == L'6' && m_next[1] == L'4') {
            size = Size::bits64;
            m_next += 2;
        } else if (m_next[0] == L'3' && m_next[1] == L'2') {
            size = Size::bits32;
            m_next += 2;
        }
    }
}

// Unlisted types are refused: %n writes to memory, '*' and '$' take arguments of their own.
bool FormatReader::ReadType()
{
    m_conversion.type = *m_next;
    if (*m_next == L'\0') return false;
    ++m_next;
    switch (m_conversion.type) {
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X': return ClassifyInteger();
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
    case L'a':
    case L'A': return ClassifyReal();
    case L's':
    case L'S':
    case L'c':
    case L'C': return ClassifyText();
    case L'p':
        m_conversion.argument = FormatArgument::address;
        return m_conversion.size == Size::standard;
    default: return false;
    }
}

bool FormatReader::ClassifyInteger()
{
    const bool is64 = m_conversion.size == Size::bits64;
    m_conversion.argument = is64 ? FormatArgument::integer64 : FormatArgument::integer32;
    return m_conversion.size != Size::wide;
}

// A long double is refused, because compilers disagree about its size.
bool FormatReader::ClassifyReal()
{
    m_conversion.argument = FormatArgument::real;
    return m_conversion.size == Size::standard || m_conversion.size == Size::lower;
}

bool FormatReader::ClassifyText()
{
    const Size size = m_conversion.size;
    if (size != Size::standard && size != Size::half && size != Size::lower && size != Size::wide)
        return false;
    const bool capital = m_conversion.type == L'S' || m_conversion.type == L'C';
    const bool narrow = size == Size::half || (size == Size::standard && capital);
    // From here on the type alone names the argument, however it was written.
    if (m_conversion.type == L'c' || m_conversion.type == L'C') {
        m_conversion.type = narrow ? L'C' : L'c';
        m_conversion.argument = FormatArgument::integer32;
        return true;
    }
    m_conversion.type = narrow ? L'S' : L's';
    m_conversion.argument = narrow ? FormatArgument::narrowText : FormatArgument::wideText;
    return true;
}

bool FormatReader::TakeIf(wchar_t character)
{
    if (*m_next != character) return false;
    ++m_next;
    return true;
}

} // namespace utils_statics
