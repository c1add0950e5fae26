#pragma once

#include <qor_utils/export.h>

#include <string>

namespace qor_utils {

/// Sets a folder of zelPath; forward slashes become backslashes. Relative folders lie below the
/// application folder. Any number may be used. An empty folder restores the number's initial one,
/// or removes the number if it had none. Any thread may call this.
QOR_UTILS_API void SetStoreFolder(int store, const std::wstring& folder);

} // namespace qor_utils
