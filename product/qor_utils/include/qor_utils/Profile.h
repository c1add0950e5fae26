#pragma once

#include "qor_utils/export.h"

#include <string>

// Reads the application's settings: values of the registry below
// HKEY_CURRENT_USER\<root>\<section>. Nothing is cached, so the next read sees a change. All
// functions may be called on any thread.
namespace qor_utils {

/// The text of a value of type REG_SZ, or of REG_EXPAND_SZ with the environment's variables
/// replaced. A text ends at its first null character. Anything else (no such value, another type, a
/// null name) gives the default; a null default is an empty text.
QOR_UTILS_API std::wstring ReadProfileString(const wchar_t* section, const wchar_t* key,
                                             const wchar_t* defaultValue);

} // namespace qor_utils
