#pragma once

#include "study/Mark.h"
#include "study/Shared.h"

#include <qor_utils/uData.h>

#include <cstdint>
#include <string>
#include <vector>

namespace exam {

/// The patient of a study. Every text may be empty.
struct Patient
{
    std::wstring name;
    std::wstring id;
    std::wstring birth; ///< year-month-day, such as 1969-07-20
    std::wstring sex;   ///< one of `sexes`
    std::wstring comment;

    friend bool operator==(const Patient&, const Patient&) = default;
};

/// Patient::sex is one of these or empty. The string table has a text for "study.sex." and each.
inline constexpr const wchar_t* sexes[] = {L"female", L"male", L"other"};

/// This says how the frames of a recording were acquired. All millimetres follow from it. Without
/// scan lines (a picture, the strip alone) there are none.
struct Acquisition
{
    uDataDesc stream;            ///< its tag is 0
    std::int32_t steerAngle = 0; ///< thousandths of a degree
    std::int32_t apexAngle = 0;  ///< virtual apex, thousandths of a degree; 0: none

    friend bool operator==(const Acquisition&, const Acquisition&) = default;
};

/// A recording or a picture that belongs to a study.
struct StudyObject
{
    std::wstring id;    ///< unique in its study, and the name of its own file
    std::wstring image; ///< the file with the frames
    std::wstring title;
    Acquisition acquisition;

    friend bool operator==(const StudyObject&, const StudyObject&) = default;
};

/// All that a study is, as one value. Copies share its parts, so that hundreds may be kept.
struct StudyContent
{
    Patient patient;
    std::wstring date; ///< of the examination, year-month-day
    std::wstring description;
    std::vector<Shared<StudyObject>> objects;
    std::vector<Shared<Mark>> marks; ///< in the order of their numbers
    int lastNumber = 0;              ///< the largest number that a mark had
    int lastObject = 0;              ///< the largest number in the id of an object

    friend bool operator==(const StudyContent&, const StudyContent&) = default;
};

/// A number from a file, or 0 for one that leaves no room for the numbers after it.
constexpr int CountedNumber(long number)
{
    constexpr long largest = 1'000'000'000;
    return number > 0 && number <= largest ? static_cast<int>(number) : 0;
}

/// The object with this id, or null. It lives as long as `content` or a copy has it.
const StudyObject* FindObject(const StudyContent& content, const std::wstring& id);

/// The mark with this number, or null.
const Mark* FindMark(const StudyContent& content, int number);

} // namespace exam
