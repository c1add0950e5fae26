// The target formats by a translated text, for calls with each kind of argument. The first byte
// chooses the call, and the text follows in UTF-16.
#include "text/FormatContract.h"
#include "text/FormatText.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

#include <climits>
#include <cstdarg>

namespace {

using namespace utils_statics;

std::optional<std::wstring> Format(const wchar_t* text, const wchar_t* contract, ...)
{
    va_list arguments;
    va_start(arguments, contract);
    auto result = FormatByContract(text, contract, arguments);
    va_end(arguments);
    return result;
}

std::optional<std::wstring> FormatForCall(std::uint8_t call, const wchar_t* text)
{
    static const char byte = 0;
    switch (call % 8) {
    case 0: return Format(text, L"%s", L"Kestrow");
    case 1: return Format(text, L"%d %I64d", -17, LLONG_MIN);
    case 2: return Format(text, L"%f %f", -1.5, 1e300);
    case 3: return Format(text, L"%S %c %p", "narrow", L'x', static_cast<const void*>(&byte));
    case 4: return Format(text, L"%s %d %s", nullptr, INT_MAX, L"\x3B1\x3B2");
    case 5: return Format(text, L"no argument at all");
    case 6: return Format(text, L"%hs %s %g", nullptr, L"", 0.0);
    default: return Format(text, text); // what is written in no table
    }
}

// The pieces of a text lie side by side, and their number has a bound.
std::size_t CountPieces(const std::wstring& text)
{
    FormatReader reader(text.c_str());
    std::size_t count = 0;
    for (auto piece = reader.Next();
         piece == FormatReader::Piece::literal || piece == FormatReader::Piece::conversion;
         piece = reader.Next()) {
        const auto done = static_cast<std::size_t>(reader.Position() - text.c_str());
        fuzz::Require(++count <= done && done <= text.size(), "each piece takes a character");
    }
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const auto call = input.Take<std::uint8_t>();
    const std::wstring text = input.RestAsText();
    const std::size_t pieces = CountPieces(text);
    // Without a table's base text there is no contract: only texts without arguments can be tried.
    if (call % 8 == 7 && text.find(L'%') != std::wstring::npos) return 0;
    const auto result = FormatForCall(call, text.c_str());
    // Each conversion has at most its field, or a real number's digits with its precision.
    constexpr std::size_t longestConversion = maximumFormatField + 512;
    if (result)
        fuzz::Require(result->size() <= text.size() + pieces * longestConversion,
                      "a formatted text has a bound");
    return 0;
}
