#pragma once

#include <windows.h>
#include <dbghelp.h>

namespace qor_utils {

// The functions of the system's DbgHelp for dumps. The library stays loaded.
class DumpLibrary
{
public:
    // Converts to false when DbgHelp cannot be loaded.
    DumpLibrary();
    explicit operator bool() const { return m_isLoaded; }

    // Replaces the file's content with a dump. Null pointers in `exception` leave the exception
    // out. A type that DbgHelp refuses is replaced with the normal one.
    bool Write(HANDLE file, HANDLE process, DWORD processId,
               const MINIDUMP_EXCEPTION_INFORMATION& exception, MINIDUMP_TYPE type) const;

private:
    decltype(&MiniDumpWriteDump) m_writeDump = nullptr;
    decltype(&SymInitializeW) m_openSymbols = nullptr;
    decltype(&SymCleanup) m_closeSymbols = nullptr;
    bool m_isLoaded;
};

} // namespace qor_utils
