#include "study/StudyContent.h"

#include <algorithm>

namespace exam {

const StudyObject* FindObject(const StudyContent& content, const std::wstring& id)
{
    const auto found =
        std::ranges::find_if(content.objects, [&](const auto& object) { return object->id == id; });
    return found == content.objects.end() ? nullptr : &**found;
}

const Mark* FindMark(const StudyContent& content, int number)
{
    const auto found = std::ranges::find_if(
        content.marks, [&](const auto& mark) { return mark->number == number; });
    return found == content.marks.end() ? nullptr : &**found;
}

} // namespace exam
