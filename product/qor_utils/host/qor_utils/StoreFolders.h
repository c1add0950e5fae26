#pragma once

#include <qor_utils/export.h>

#include <string>

namespace qor_utils {

/// Sets a folder of zelPath; forward slashes become backslashes. Relative folders lie below the
/// application folder. Any number may be used. An empty folder goes back to the one that the number
/// has from the start, or takes the number away if it had none. Any thread.
QOR_UTILS_API void SetStoreFolder(int store, const std::wstring& folder);

} // namespace qor_utils
