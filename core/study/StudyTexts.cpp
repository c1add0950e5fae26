#include "study/StudyTexts.h"

#include "study/Study.h"

#include <base/Encoding.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <afxdisp.h>

#include <algorithm>
#include <charconv>
#include <cwchar>
#include <iterator>
#include <string_view>

namespace exam {

namespace {

constexpr double millimetresPerCentimetre = 10;

constinit LengthUnit s_lengthUnit = LengthUnit::millimetre;

std::wstring AmountText(const MarkValue& value)
{
    const MarkValue shown = AsShown(value);
    return NumberText(shown.value, shown.decimals) + L" " + TextOf(shown.unitKey);
}

COleDateTime DayOf(const std::wstring& date)
{
    COleDateTime day;
    day.SetStatus(COleDateTime::null);
    int year = 0;
    int month = 0;
    int monthDay = 0;
    if (IsDate(date) && std::swscanf(date.c_str(), L"%d-%d-%d", &year, &month, &monthDay) == 3)
        day.SetDate(year, month, monthDay);
    return day;
}

} // namespace

void ShowLengthsIn(LengthUnit unit)
{
    s_lengthUnit = unit;
}

MarkValue AsShown(const MarkValue& value)
{
    const bool isLength = std::string_view(value.unitKey) == "study.unit.mm";
    if (!isLength || s_lengthUnit == LengthUnit::millimetre) return value;
    return {value.nameKey, "study.unit.cm", value.value / millimetresPerCentimetre,
            value.decimals + 1};
}

std::wstring LengthText(double millimetres)
{
    return AmountText({"", "study.unit.mm", millimetres, 1});
}

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

std::wstring TermText(const std::wstring& term)
{
    const CString translated = TranslateStr(term.c_str());
    return translated.IsEmpty() ? term : translated.GetString();
}

std::wstring TextOf(const Mark& mark)
{
    return mark.kind == MarkKind::term ? TermText(mark.text) : mark.text;
}

std::wstring SexText(const std::wstring& sex)
{
    if (std::ranges::find(sexes, sex) == std::end(sexes)) return sex;
    return TextOf(("study.sex." + base::Utf8FromWide(sex)).c_str());
}

std::wstring AgeText(const Patient& patient, const std::wstring& date)
{
    constexpr int leastYears = 2;
    const COleDateTime birth = DayOf(patient.birth);
    COleDateTime day = DayOf(date);
    if (day.GetStatus() != COleDateTime::valid) day = COleDateTime::GetCurrentTime();
    if (birth.GetStatus() != COleDateTime::valid || day < birth) return {};
    const int years = utilsExam::GetYearSpan(birth, day);
    if (years >= leastYears) return GetStr("study.age.years", years).GetString();
    const int begun = utilsExam::GetMonthSpan(birth, day); // one of them is not over yet
    return GetStr("study.age.months", 12 * years + std::max(0, begun - 1)).GetString();
}

std::wstring ValueText(const MarkValue& value)
{
    return TextOf(value.nameKey) + L" " + AmountText(value);
}

} // namespace exam
