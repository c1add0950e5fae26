#pragma once

#include <qor_utils/LogOutput.h>

namespace qor_utils {

// Writes a message to the log file in a folder (with a backslash at its end) and to the debugger's
// output.
void WriteToLog(const std::wstring& directory, const LogMessage& message) noexcept;

// Closes the log file; the next message opens it again.
void CloseLogFile() noexcept;

// Passes a message to the hook, if there is one and this thread is not inside one already.
void CallLogHook(const LogMessage& message) noexcept;

} // namespace qor_utils
