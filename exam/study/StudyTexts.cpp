#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace exam {

std::wstring TextOf(const char* key)
{
    return GetStr(key).GetString();
}

std::wstring NumberText(double value, int decimals)
{
    char digits[400]; // the largest number has 309 digits before the decimal sign
    const auto written = std::to_chars(std::begin(digits), std::end(digits), value,
                                       std::chars_format::fixed, std::clamp(decimals, 0, 20));
    std::wstring text(digits, written.ptr);
    if (text.starts_with(L'-') && text.find_first_of(L"123456789") == std::wstring::npos)
        text.erase(0, 1);
    if (const auto point = text.find(L'.'); point != std::wstring::npos)
        text.replace(point, 1, TextOf("study.number.decimal"));
    return text;
}

std::wstring NameOf(const StudyObject& object)
{
    if (!object.title.empty()) return object.title;
    const std::wstring file = object.image.substr(object.image.find_last_of(L"\\/") + 1);
    return file.empty() ? object.id : file;
}

std::wstring ObjectNameOf(const Mark& mark, const StudyContent& study)
{
    const StudyObject* const object = FindObject(study, mark.object);
    return object ? NameOf(*object) : mark.object;
}

std::wstring FrameText(const Mark& mark)
{
    const bool isOnFrame = InfoOf(mark.kind).place == MarkPlace::frame;
    return isOnFrame ? std::to_wstring(mark.frame + 1LL) : std::wstring();
}

std::wstring ValueText(const MarkValue& value)
{
    return TextOf(value.nameKey) + L" " + NumberText(value.value, value.decimals) + L" " +
           TextOf(value.unitKey);
}

} // namespace exam
