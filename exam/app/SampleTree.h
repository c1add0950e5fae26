#pragma once

#include <string>

namespace exam {

// Points the numbered stores at the sample data beside the program, and the store of what the user
// changes below `userFolder`.
void InstallStores(const std::wstring& userFolder);

// The folder of the string tables.
std::wstring StringTableFolder();

// The action vocabulary of the console.
std::wstring VocabularyFile();

// The folder that a user's own files go to when nothing else is asked for.
std::wstring DefaultUserFolder();

} // namespace exam
