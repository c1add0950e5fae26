#pragma once

#include <cstddef>
#include <string>

namespace utils_statics {

// The argument that a conversion takes from a variadic call, after the default promotions.
enum class FormatArgument
{
    integer32, // int, long, and the character and short types, which are promoted
    integer64,
    real,
    wideText,
    narrowText,
    address,
};

// One conversion such as "%-8.3f", read like the platform's wide printf family does: %s and %c are
// wide, %S and %C are narrow, the prefixes h and l override that, and I64 and I32 are sizes.
struct FormatConversion
{
    bool leftAlign = false;
    bool sign = false;
    bool space = false;
    bool alternate = false;
    bool zeroPad = false;
    int width = 0;
    int precision = -1; // none given
    enum class Size
    {
        standard,
        character, // hh
        half,      // h
        lower,     // l
        wide,      // w
        bits32,    // I32
        bits64,    // I64, ll, j; and I, z, t in 64-bit programs
    } size = Size::standard;
    wchar_t type = 0;
    FormatArgument argument = FormatArgument::integer32;
};

// Widths and precisions above this are refused: no text on a screen needs them, and a translation
// must not be able to ask for a gigabyte of blanks.
inline constexpr int maximumFormatField = 1024;

// Reads a format text piece by piece.
class FormatReader
{
public:
    enum class Piece
    {
        literal,    // LiteralBegin(), LiteralLength()
        conversion, // Conversion()
        end,
        refused, // an unknown or unfinished conversion, %n, a * or positional argument, or a field
                 // that is too wide
    };

    // `text` is not null and outlives the reader.
    explicit FormatReader(const wchar_t* text) : m_next(text) {}

    // After `refused` every further call gives `refused`.
    Piece Next();

    // The beginning of the next piece.
    const wchar_t* Position() const { return m_next; }
    const wchar_t* LiteralBegin() const { return m_literal; }
    std::size_t LiteralLength() const { return m_literalLength; }
    const FormatConversion& Conversion() const { return m_conversion; }

private:
    Piece ReadLiteral(std::size_t length);
    bool ReadConversion();
    void ReadFlags();
    bool ReadNumber(int& number);
    void ReadSize();
    bool ReadType();
    bool ClassifyInteger();
    bool ClassifyReal();
    bool ClassifyText();
    bool TakeIf(wchar_t character);

    const wchar_t* m_next;
    const wchar_t* m_literal = nullptr;
    std::size_t m_literalLength = 0;
    FormatConversion m_conversion;
};

} // namespace utils_statics
