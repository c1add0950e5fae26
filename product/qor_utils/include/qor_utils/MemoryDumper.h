#pragma once

#include "qor_utils/export.h"

#include <windows.h>

/// Memory dumps of the running process, in the format that debuggers read.
class QOR_UTILS_API MemoryDumper
{
public:
    /// Writes a dump to the path given, over a file that is there. exception may be null: the dump
    /// then has no exception stream; otherwise its context is recorded for the calling thread.
    /// dumpType is a set of MINIDUMP_TYPE bits (0 is MiniDumpNormal), of which unknown ones are
    /// ignored; when the system's DbgHelp refuses it, a dump of type 0 is written instead.
    ///
    /// Made for crashes: a process of its own (dumpwriter.exe, beside this library) does the work,
    /// so it matters neither which locks the caller holds nor how little stack or memory it has
    /// left. It has two minutes. One dump is written at a time; a call while another runs fails.
    /// False when no dump was written; the file is then gone.
    static bool GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                 int dumpType) noexcept;
};
