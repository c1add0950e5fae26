#pragma once

#include "study/MarkValues.h"

#include <string>

// The texts of a study in the current language.
namespace exam {

/// The text of a key that takes no arguments.
std::wstring TextOf(const char* key);

/// A number with this many decimals and the language's decimal sign. Nothing is grouped, and no
/// zero is negative.
std::wstring NumberText(double value, int decimals);

/// The name of an object for readers: its title, its file's name or its id, whichever comes first.
std::wstring NameOf(const StudyObject& object);
std::wstring ObjectNameOf(const Mark& mark, const StudyContent& study);

/// A mark's frame as readers count, from 1; empty on the strip.
std::wstring FrameText(const Mark& mark);

/// A term in the current language; terms are kept in the base language. One that the string table
/// does not know stays as it is.
std::wstring TermText(const std::wstring& term);

/// The text of a mark for readers.
std::wstring TextOf(const Mark& mark);

/// A patient's sex in the current language. One that is not known stays as it is.
std::wstring SexText(const std::wstring& sex);

/// The patient's age on a day, or today when that is no day: whole years, and below two years whole
/// months. Empty without a day of birth before it.
std::wstring AgeText(const Patient& patient, const std::wstring& date);

/// The units in which readers are shown lengths; millimetres at first.
enum class LengthUnit
{
    millimetre,
    centimetre
};
void ShowLengthsIn(LengthUnit unit);

/// A value in the unit in which readers are shown it; areas are always in square centimetres.
MarkValue AsShown(const MarkValue& value);

/// A length with its unit, such as "12.5 mm".
std::wstring LengthText(double millimetres);

/// A value with its name and its unit, such as "Length 12.5 mm".
std::wstring ValueText(const MarkValue& value);

} // namespace exam
