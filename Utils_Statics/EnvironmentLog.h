#pragma once

#include <qor_utils/zelLogger.h>

namespace utils_statics {

// Every message of the exam environment carries this source name, whichever Utils_Statics_*.cpp it comes from,
// and a line number that stands for the message: whoever searches logs relies on both.
inline constexpr const char* environmentSource = "Utils_Statics/Utils_Statics";

inline zelLogger::zelLogHelper EnvironmentLog(int line, int level)
{
    return zelLogger::zelLogHelper(environmentSource, line, level);
}

} // namespace utils_statics
