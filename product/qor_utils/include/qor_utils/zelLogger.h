#pragma once

#include "qor_utils/export.h"

#include <string>

namespace qor_utils {

/// The levels that messages are logged with; any other number is recorded as detail for developers.
enum LogLevel : int
{
    errorLevel = 1,
    warningLevel = 2,
    noticeLevel = 3, ///< information that the user was shown too
    informationLevel = 4,
};

} // namespace qor_utils

/// The application's log. Messages go to a file in the log folder, named after the program
/// ("exam.log"; at 5 MB it is renamed and a new one begun, and five old ones are kept), to the
/// debugger's output, and to a hook.
///
/// Nothing is opened before the first message. Logging throws nothing (the other members at most
/// std::bad_alloc), and a log that cannot be written is no failure: the message still goes to the
/// debugger and the hook, and the file is tried again after some seconds. All members may be called
/// on any thread. Each message is in the file when the call that logged it returns.
class QOR_UTILS_API zelLogger
{
public:
    /// The log folder, absolute, with a backslash at its end. It is made if it is missing and can
    /// be made.
    static std::wstring getCurrentDirectory();

    /// Whether a path can be one of the file system's; when not, a warning is logged for the source
    /// and line given. Faults are: null or empty, 260 characters or more, a control character or
    /// one of <>"|?*, and a colon that does not follow a drive letter. Behind the prefix \\?\ the
    /// length is not limited.
    static bool checkPath(const char* source, int line, const wchar_t* path);

    /// Writes one message: zelLogger::zelLogHelper("Utils_Statics/ActionRepository", 32, 1)(L"%s
    /// not found.", name);
    class QOR_UTILS_API zelLogHelper
    {
    public:
        /// The source is kept as a pointer, for a literal.
        zelLogHelper(const char* source, int line, int level) noexcept;

        /// Formats as the platform's wide printf does (%s and %c take wide arguments, %S and %hs
        /// narrow ones) and logs the text. A text of more than 65536 characters is cut there. A
        /// null format logs an empty text.
        void operator()(const wchar_t* format, ...) const noexcept;

    private:
        const char* m_source;
        int m_line;
        int m_level;
    };
};
