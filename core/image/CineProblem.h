#pragma once

#include <string>

namespace exam {

/// Translates what is said of a damaged recording or an archive. It is said in the base language of
/// the string tables, where a # stands for each number and for each quoted text. A sentence that
/// the tables do not have stays as it is.
std::wstring InUsersLanguage(const std::wstring& sentence);

/// Puts a text between the quotes that such a sentence needs around names.
std::wstring Quoted(const std::wstring& text);

} // namespace exam
