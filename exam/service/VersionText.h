#pragma once

#include <Utils_Statics/CMiniVersion.h>

#include <string>

namespace exam {

/// Four numbers with dots between them: "6.1.7601.24059".
std::wstring NumbersText(const unsigned short (&numbers)[4]);

/// One of the texts of a version resource: TextOf(version, &CMiniVersion::GetCompanyName).
std::wstring TextOf(const CMiniVersion& version,
                    int (CMiniVersion::*get)(unsigned short*, int) const noexcept);

} // namespace exam
