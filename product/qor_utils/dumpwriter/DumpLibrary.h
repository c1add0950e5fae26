#pragma once

#include <windows.h>

#include <dbghelp.h>

namespace qor_utils {

// What the system's DbgHelp has for dumps. It stays loaded.
class DumpLibrary
{
public:
    // Does not convert to true when DbgHelp is not there.
    DumpLibrary();
    explicit operator bool() const { return m_isLoaded; }

    // Writes a dump over what the file has. Null pointers in `exception` leave it out. A type that
    // DbgHelp refuses becomes the normal one.
    bool Write(HANDLE file, HANDLE process, DWORD processId,
               const MINIDUMP_EXCEPTION_INFORMATION& exception, MINIDUMP_TYPE type) const;

private:
    decltype(&MiniDumpWriteDump) m_writeDump = nullptr;
    decltype(&SymInitializeW) m_openSymbols = nullptr;
    decltype(&SymCleanup) m_closeSymbols = nullptr;
    bool m_isLoaded;
};

} // namespace qor_utils
