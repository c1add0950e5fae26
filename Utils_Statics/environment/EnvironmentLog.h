#pragma once

#include <qor_utils/zelLogger.h>

namespace utils_statics {

// The source name of every message of the exam environment, in whichever file it arises.
inline constexpr const char* environmentSource = "Utils_Statics/Utils_Statics";

// The messages of the exam environment, each with its line number in the log. Searches of logs rely
// on these numbers.
enum EnvironmentMessage : int
{
    messageDeleteFailed = 521,
    messageShellOperationFailed = 581,
    messageStudyPathFault = 1029,
    messageTranslationDoesNotMatch = 1170,
    messageBaseTextUnusable = 1180,
    messageTextUnusable = 1187,
    messageLayoutFileMissing = 1332,
    messageProtocolFileMissing = 1497,
};

// A helper for one message of the exam environment.
inline zelLogger::zelLogHelper EnvironmentLog(EnvironmentMessage message, int level)
{
    return zelLogger::zelLogHelper(environmentSource, message, level);
}

} // namespace utils_statics
