#pragma once

#include <string>

namespace exam {

/// Packs a folder and prints the result. False, with a sentence on standard error, when it failed,
/// and when the archive exists and `overwrite` does not allow replacing it.
bool PackCommand(const std::wstring& archive, const std::wstring& folder, bool overwrite);

/// Unpacks an archive into a folder and prints the result. False, with a sentence on standard
/// error, when not all of it is there.
bool UnpackCommand(const std::wstring& archive, const std::wstring& folder,
                   const std::wstring& password);

} // namespace exam
