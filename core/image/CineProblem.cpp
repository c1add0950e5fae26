#include "image/CineProblem.h"

#include <Utils_Statics/GetStr.h>

#include <cwctype>
#include <vector>

namespace exam {

namespace {

constexpr wchar_t quote = L'"';

// A sentence of which a # takes the place of each number and each quoted text.
struct Pattern
{
    std::wstring text;
    std::vector<std::wstring> values;
};

Pattern PatternOf(const std::wstring& sentence)
{
    Pattern pattern;
    bool isQuoted = false;
    bool isInValue = false;
    for (const wchar_t character : sentence) {
        const bool isQuote = character == quote;
        if (isQuote) isQuoted = !isQuoted;
        const bool isValue = !isQuote && (isQuoted || std::iswdigit(character) != 0);
        if (isValue && !isInValue) pattern.values.emplace_back();
        if (isValue) pattern.values.back() += character;
        if (!isValue || !isInValue) pattern.text += isValue ? L'#' : character;
        isInValue = isValue;
    }
    return pattern;
}

} // namespace

std::wstring InUsersLanguage(const std::wstring& sentence)
{
    const Pattern pattern = PatternOf(sentence);
    const CString translated = TranslateStr(pattern.text.c_str());
    if (translated.IsEmpty()) return sentence;
    std::wstring text = translated.GetString();
    std::size_t at = 0;
    for (const std::wstring& value : pattern.values) {
        at = text.find(L'#', at);
        if (at == std::wstring::npos) break;
        text.replace(at, 1, value);
        at += value.size();
    }
    return text;
}

std::wstring Quoted(const std::wstring& text)
{
    return quote + text + quote;
}

} // namespace exam
