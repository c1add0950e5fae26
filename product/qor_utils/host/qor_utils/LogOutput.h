#pragma once

#include <qor_utils/export.h>

#include <string>

// The targets of zelLogger's messages.
namespace qor_utils {

/// One message, as it was logged.
struct LogMessage
{
    const char* source;  ///< the source file's path without its extension; never null
    int line;            ///< in the source file
    int level;           ///< a level of zelLogger
    const wchar_t* text; ///< valid during the call only; never null
};

/// A function of the application that receives messages.
using LogHook = void (*)(const LogMessage& message, void* userData);

/// Sets the function that receives each message, on the thread that logs it and with no lock held;
/// null for none. Messages that the hook itself logs are written but not passed to it. Its
/// exceptions are dropped. On return no other thread is inside the former hook, except that a call
/// from inside a hook does not wait. Any thread may call this.
QOR_UTILS_API void SetLogHook(LogHook hook, void* userData);

/// Sets the log folder and closes the file in the former one. An empty folder restores zelPath's
/// log store. Any thread may call this.
QOR_UTILS_API void SetLogDirectory(const std::wstring& directory);

} // namespace qor_utils
