#include "study/Study.h"

#include "study/FrameScale.h"

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <iterator>
#include <utility>

namespace exam {

namespace {

bool IsHighSurrogate(wchar_t character)
{
    return character >= 0xD800 && character < 0xDC00;
}

bool IsLowSurrogate(wchar_t character)
{
    return character >= 0xDC00 && character < 0xE000;
}

bool IsAllowed(wchar_t character)
{
    if (character < L' ') return character == L'\t' || character == L'\n' || character == L'\r';
    return character < 0xFFFE && !IsHighSurrogate(character) && !IsLowSurrogate(character);
}

bool IsPair(const std::wstring& text, std::size_t at)
{
    return at + 1 < text.size() && IsHighSurrogate(text[at]) && IsLowSurrogate(text[at + 1]);
}

std::wstring Clean(std::wstring text)
{
    text.resize(std::min(text.size(), Study::longestText));
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPair(text, i))
            ++i;
        else if (!IsAllowed(text[i]))
            text[i] = 0xFFFD;
    }
    return text;
}

bool IsNewDateAllowed(const std::wstring& date, const std::wstring& present)
{
    return date.empty() || date == present || IsDate(date);
}

bool IsNewSexAllowed(const std::wstring& sex, const std::wstring& present)
{
    return sex.empty() || sex == present || std::ranges::find(sexes, sex) != std::end(sexes);
}

} // namespace

void Study::Open(StudyContent content)
{
    m_content = std::move(content);
    m_history = {};
    m_gesture.reset();
}

bool Study::SetPatient(Patient patient)
{
    const Patient& present = m_content.patient;
    if (!IsNewDateAllowed(patient.birth, present.birth)) return false;
    if (!IsNewSexAllowed(patient.sex, present.sex)) return false;
    patient.name = Clean(std::move(patient.name));
    patient.id = Clean(std::move(patient.id));
    patient.comment = Clean(std::move(patient.comment));
    StudyContent changed = m_content;
    changed.patient = std::move(patient);
    return Put(std::move(changed));
}

bool Study::SetDescription(std::wstring date, std::wstring description)
{
    if (!IsNewDateAllowed(date, m_content.date)) return false;
    StudyContent changed = m_content;
    changed.date = std::move(date);
    changed.description = Clean(std::move(description));
    return Put(std::move(changed));
}

std::wstring Study::AddObject(StudyObject object)
{
    if (m_content.objects.size() >= mostObjects) return {};
    StudyContent changed = m_content;
    object.id = L"O" + std::to_wstring(++changed.lastObject);
    object.image = Clean(std::move(object.image));
    object.title = Clean(std::move(object.title));
    changed.objects.emplace_back(object);
    Put(std::move(changed));
    return object.id;
}

bool Study::RemoveObject(const std::wstring& id)
{
    if (!FindObject(m_content, id)) return false;
    const std::wstring removed = id; // the argument may be part of what is removed
    StudyContent changed = m_content;
    std::erase_if(changed.objects, [&](const auto& object) { return object->id == removed; });
    std::erase_if(changed.marks, [&](const auto& mark) { return mark->object == removed; });
    return Put(std::move(changed));
}

int Study::AddMark(Mark mark)
{
    if (!IsSound(mark) || !FindObject(m_content, mark.object)) return 0;
    if (m_content.marks.size() >= mostMarks) return 0;
    StudyContent changed = m_content;
    mark.number = ++changed.lastNumber;
    mark.text = Clean(std::move(mark.text));
    changed.marks.emplace_back(std::move(mark));
    const int number = changed.lastNumber;
    Put(std::move(changed));
    return number;
}

bool Study::SetPoints(int number, std::vector<MarkPoint> points)
{
    return ReplaceMark(number, [&](Mark& mark) {
        mark.points = std::move(points);
        return IsSound(mark);
    });
}

bool Study::MoveMark(int number, const MarkPoint& by)
{
    return ReplaceMark(number, [&](Mark& mark) {
        const StudyObject* const object = FindObject(m_content, mark.object);
        return object && MovePoints(mark, object->acquisition, by) && IsSound(mark);
    });
}

bool Study::Rename(int number, std::wstring text)
{
    return ReplaceMark(number, [&](Mark& mark) {
        mark.text = Clean(std::move(text));
        return true;
    });
}

bool Study::RemoveMark(int number)
{
    if (!FindMark(m_content, number)) return false;
    StudyContent changed = m_content;
    std::erase_if(changed.marks, [&](const auto& mark) { return mark->number == number; });
    return Put(std::move(changed));
}

void Study::BeginGesture()
{
    EndGesture();
    m_gesture = m_content;
}

void Study::EndGesture()
{
    if (HasGestureChanged()) m_history.Keep(std::move(*m_gesture));
    m_gesture.reset();
}

bool Study::Undo()
{
    EndGesture();
    return m_history.Undo(m_content);
}

bool Study::Redo()
{
    EndGesture();
    return m_history.Redo(m_content);
}

bool Study::Put(StudyContent changed)
{
    if (changed == m_content) return true;
    if (!m_gesture) m_history.Keep(std::move(m_content));
    m_content = std::move(changed);
    return true;
}

bool Study::ReplaceMark(int number, const std::function<bool(Mark&)>& change)
{
    StudyContent changed = m_content;
    const auto found = std::ranges::find_if(
        changed.marks, [&](const auto& mark) { return mark->number == number; });
    if (found == changed.marks.end()) return false;
    Mark mark = **found;
    if (!change(mark)) return false;
    *found = Shared<Mark>(std::move(mark));
    return Put(std::move(changed));
}

bool IsDate(const std::wstring& text)
{
    constexpr const wchar_t* digit = L"0123456789";
    if (text.size() != 10 || text[4] != L'-' || text[7] != L'-') return false;
    if (text.find_first_not_of(L"-0123456789") != std::wstring::npos) return false;
    if (text.find_first_not_of(digit) != 4 || text.find_first_not_of(digit, 5) != 7) return false;
    if (text.find_first_not_of(digit, 8) != std::wstring::npos) return false;
    const auto number = [&](std::size_t at) { return std::wcstol(text.c_str() + at, nullptr, 10); };
    const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(number(0))),
                                           std::chrono::month(static_cast<unsigned>(number(5))),
                                           std::chrono::day(static_cast<unsigned>(number(8))));
    return date.ok();
}

} // namespace exam
