#pragma once

#include <string>

namespace exam {

/// Translates what is said of a damaged recording. The readers say it in the base language of the
/// string tables, where a # stands for each number. A sentence that the tables do not have stays as
/// it is.
std::wstring InUsersLanguage(const std::wstring& sentence);

} // namespace exam
