#pragma once

#include "study/StudyContent.h"

#include <string>

namespace exam {

/// The measurements of a study as comma-separated values after RFC 4180, in UTF-8 with a byte order
/// mark, by which spreadsheets know it. The first row names the columns. Each value has a row, and
/// a measurement without a value has one too.
///
/// Decimal sign and separator are those of the current language: where the sign is a comma, the
/// separator is a semicolon.
std::string MeasurementTable(const StudyContent& study);

} // namespace exam
