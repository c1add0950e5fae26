#pragma once

#include <qor_utils/export.h>

// What the host asks of the profile beyond reading texts (Profile.h).
namespace qor_utils {

/// The number of a REG_DWORD value, read as signed; anything else gives the default. Any thread.
QOR_UTILS_API int ReadProfileInt(const wchar_t* section, const wchar_t* key, int defaultValue);

/// Sets the root key, "Software\Kestrow\Exam" from the start; null or empty goes back to that. Any
/// thread.
QOR_UTILS_API void SetProfileRoot(const wchar_t* root);

} // namespace qor_utils
