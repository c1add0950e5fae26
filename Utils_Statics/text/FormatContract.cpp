#include "text/FormatContract.h"

#include "text/FormatOutput.h"
#include "text/FormatText.h"

namespace utils_statics {

using Piece = FormatReader::Piece;

namespace {

Piece NextConversion(FormatReader& reader)
{
    Piece piece = reader.Next();
    while (piece == Piece::literal)
        piece = reader.Next();
    return piece;
}

} // namespace

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
