#pragma once

#include <string>

namespace exam {

// Points the numbered stores at the sample data beside the program. The store of the user's changes
// lies below `userFolder`.
void InstallStores(const std::wstring& userFolder);

// The folder of the string tables.
std::wstring StringTableFolder();

// The action vocabulary of the console.
std::wstring VocabularyFile();

// The folder for a user's own files unless another one is asked for.
std::wstring DefaultUserFolder();

} // namespace exam
