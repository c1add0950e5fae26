#pragma once

#include <qor_utils/zelLogger.h>

namespace utils_statics {

// A helper for one error message of the zip archives. Whichever file it comes from, it names the
// source of the two classes.
inline zelLogger::zelLogHelper ArchiveError(int line = __builtin_LINE())
{
    return {"Utils_Statics/ZipArchive", line, qor_utils::errorLevel};
}

} // namespace utils_statics
