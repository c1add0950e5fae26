#pragma once

#include <windows.h>

#include <dbghelp.h>

#include <cwchar>

namespace qor_utils {

using DumpFunction = decltype(&MiniDumpWriteDump);

// From the system's folder only: a crash must not run what lies about in the program's. Null when
// it is not there. The library stays loaded: the process is about to end anyway.
inline DumpFunction LoadDumpFunction()
{
    wchar_t path[MAX_PATH + 16];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    std::wcscpy(path + length, L"\\dbghelp.dll");
    const HMODULE library = LoadLibraryW(path);
    if (!library) return nullptr;
    return reinterpret_cast<DumpFunction>(
        reinterpret_cast<void*>(GetProcAddress(library, "MiniDumpWriteDump")));
}

} // namespace qor_utils
