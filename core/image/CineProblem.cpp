#include "image/CineProblem.h"

#include <Utils_Statics/GetStr.h>

#include <cwctype>
#include <vector>

namespace exam {

std::wstring InUsersLanguage(const std::wstring& sentence)
{
    std::wstring pattern;
    std::vector<std::wstring> numbers;
    bool isInNumber = false;
    for (const wchar_t character : sentence) {
        const bool isDigit = std::iswdigit(character) != 0;
        if (isDigit && !isInNumber) numbers.emplace_back();
        if (isDigit) numbers.back() += character;
        if (!isDigit || !isInNumber) pattern += isDigit ? L'#' : character;
        isInNumber = isDigit;
    }
    const CString translated = TranslateStr(pattern.c_str());
    if (translated.IsEmpty()) return sentence;
    std::wstring text = translated.GetString();
    std::size_t at = 0;
    for (const std::wstring& number : numbers) {
        at = text.find(L'#', at);
        if (at == std::wstring::npos) break;
        text.replace(at, 1, number);
        at += number.size();
    }
    return text;
}

} // namespace exam
