#pragma once

#include <qor_utils/zelLogger.h>

namespace utils_statics {

// The source name of every message of the exam environment, whichever file it comes from. With it
// goes a line number that stands for the message. Whoever searches logs relies on both.
inline constexpr const char* environmentSource = "Utils_Statics/Utils_Statics";

// A helper for one message of the exam environment.
zelLogger::zelLogHelper EnvironmentLog(int line, int level);

} // namespace utils_statics
