#pragma once

#include <qor_utils/zelLogger.h>

namespace utils_statics {

// A helper for one error message of the zip archives. The message names the same source in
// whichever file it arises.
inline zelLogger::zelLogHelper ArchiveError(int line = __builtin_LINE())
{
    return {"Utils_Statics/ZipArchive", line, qor_utils::errorLevel};
}

} // namespace utils_statics
