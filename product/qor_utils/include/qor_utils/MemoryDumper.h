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
    /// Made for crashes: the work is done on a thread of its own (a thread cannot take its own
    /// stack well, and it may have none left), and each wait has a bound. Where the caller holds
    /// the lock of the process's heap or of the loader, which that thread needs, or where DbgHelp
    /// crashes for want of memory, a process of its own does it. One dump is written at a time; a
    /// call while another runs fails. False when no dump was written; the file is then gone.
    ///
    /// The first call makes the thread and loads DbgHelp, and they stay. An empty path does that
    /// and no more, so that nothing of it is left for the crash; its result is false.
    static bool GenerateMiniDump(const wchar_t* path, EXCEPTION_POINTERS* exception,
                                 int dumpType) noexcept;
};
