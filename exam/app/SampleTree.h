#pragma once

#include <string>

namespace exam {

/// Points the numbered stores at the sample data beside the program. The stores of the patients and
/// of the user's changes lie below `userFolder`.
void InstallStores(const std::wstring& userFolder);

/// Copies the sample patient into the user's patients when there are none yet. The result is the
/// folder of the sample study there.
std::wstring PreparePatients(const std::wstring& userFolder);

/// The folder of the string tables.
std::wstring StringTableFolder();

/// The action vocabulary of the console.
std::wstring VocabularyFile();

/// The folder for a user's own files unless another one is asked for.
std::wstring DefaultUserFolder();

} // namespace exam
