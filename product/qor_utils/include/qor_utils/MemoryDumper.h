#pragma once

#include "qor_utils/export.h"

#include <windows.h>

/// Memory dumps of the running process, in the format that debuggers read.
class QOR_UTILS_API MemoryDumper
{
public:
    /// Writes a dump to the given path, replacing an existing file. For a null exception the dump
    /// has no exception stream; otherwise its context is recorded for the calling thread. dumpType
    /// is a set of MINIDUMP_TYPE bits (0 is MiniDumpNormal), of which unknown ones are ignored.
    /// When the system's DbgHelp refuses it, a dump of type 0 is written instead.
    ///
    /// It is made for crashes: a separate process (dumpwriter.exe, beside this library) does the
    /// work, so the caller may hold any lock and have little stack or memory left. The process has
    /// two minutes. Only one dump is written at a time; a call while another runs fails. False when
    /// no dump was written; a partly written file is deleted.
    static bool GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                 int dumpType) noexcept;
};
