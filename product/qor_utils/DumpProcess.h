#pragma once

#include <windows.h>

#include <dbghelp.h>

namespace qor_utils {

// Has a process of its own (dumpwriter.exe, beside this library) write a dump of this one, which
// works whatever locks the crashed thread holds. True when the dump was written, false also after
// `timeout` milliseconds; the dump is then given up, and its file gone. Allocates nothing.
bool WriteDumpFromOutside(const wchar_t* path, const MINIDUMP_EXCEPTION_INFORMATION& exception,
                          MINIDUMP_TYPE type, DWORD timeout);

} // namespace qor_utils
