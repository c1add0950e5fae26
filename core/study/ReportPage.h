#pragma once

#include "study/StudyContent.h"

#include <string>
#include <vector>

namespace exam {

/// A picture of a report: the bytes of a PNG file, and what is said below it.
struct ReportPicture
{
    std::string png;
    std::wstring caption;
};

/// The report of a study in the current language: patient, pictures, measured values, annotations.
/// It is one HTML page in UTF-8 that needs no other file, and that any browser shows and prints.
std::string ReportPage(const StudyContent& study, const std::vector<ReportPicture>& pictures);

} // namespace exam
