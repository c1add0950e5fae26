#pragma once

#include <qor_utils/export.h>

// The host's functions on the profile besides reading texts (Profile.h).
namespace qor_utils {

/// The number of a REG_DWORD value, read as signed; anything else gives the default. Any thread may
/// call this.
QOR_UTILS_API int ReadProfileInt(const wchar_t* section, const wchar_t* key, int defaultValue);

/// Sets the root key. The initial one is "Software\Kestrow\Exam"; null or empty restores it. Any
/// thread may call this.
QOR_UTILS_API void SetProfileRoot(const wchar_t* root);

} // namespace qor_utils
