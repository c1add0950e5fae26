#pragma once

#include <qor_utils/export.h>

#include <string>

// Where the messages of zelLogger go.
namespace qor_utils {

/// One message, as it was logged.
struct LogMessage
{
    const char* source; ///< the source file's path without its extension; never null
    int line;
    int level;
    const wchar_t* text; ///< valid during the call only; never null
};

using LogHook = void (*)(const LogMessage& message, void* userData);

/// Sets the function that is handed each message, on the thread that logs it and with no lock held;
/// null for none. What the hook itself logs is written, but not handed to it again. What the hook
/// throws is dropped. On return no other thread is inside the former hook; from inside a hook the
/// call returns without that wait. Any thread.
QOR_UTILS_API void SetLogHook(LogHook hook, void* userData);

/// Sets the log folder, closing the file in the former one; empty goes back to zelPath's log store.
/// Any thread.
QOR_UTILS_API void SetLogDirectory(const std::wstring& directory);

} // namespace qor_utils
