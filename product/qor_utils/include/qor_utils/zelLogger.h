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
/// ("exam.log"), to the debugger's output, and to a hook. At 5 MB the file is renamed and a new one
/// begun; five old ones are kept.
///
/// Nothing is opened before the first message. Logging throws nothing, and the other members at
/// most std::bad_alloc. A log that cannot be written is no failure: the message still goes to the
/// debugger and the hook, and the file is tried again after some seconds. All members may be called
/// on any thread. Each message is in the file when the call that logged it returns.
class QOR_UTILS_API zelLogger
{
public:
    /// The log folder, absolute, with a backslash at its end. It is created if it is missing, when
    /// that is possible.
    static std::wstring getCurrentDirectory();

    /// True when the file system can have such a path. Otherwise a warning is logged for the given
    /// source and line. Faults are: null or empty, 260 characters or more, a control character or
    /// one of <>"|?*, and a colon that does not follow a drive letter. After the prefix \\?\ the
    /// length is not limited.
    static bool checkPath(const char* source, int line, const wchar_t* path);

    /// Writes one message:
    ///
    ///     zelLogger::zelLogHelper("Utils_Statics/ActionRepository", 32, 1)(L"%s not found.",
    ///     name);
    class QOR_UTILS_API zelLogHelper
    {
    public:
        /// The source must be a literal, because only the pointer is kept.
        zelLogHelper(const char* source, int line, int level) noexcept;

        /// Formats like the platform's wide printf (%s and %c take wide arguments, %S and %hs
        /// narrow ones) and logs the text. A text is cut after 65536 characters. A null format logs
        /// an empty text.
        void operator()(const wchar_t* format, ...) const noexcept;

    private:
        const char* m_source;
        int m_line;
        int m_level;
    };
};
