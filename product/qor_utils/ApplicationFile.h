#pragma once

#include <string>

namespace qor_utils {

// The full path of the running program, of any length; empty when the system does not tell it.
std::wstring ApplicationFile();

} // namespace qor_utils
