#include "DumpLibrary.h"

#include <cwchar>

namespace qor_utils {

namespace {

// DbgHelp is loaded only from the system's folder, because a crash must not run a stray library of
// the program's folder.
HMODULE LoadDbgHelp()
{
    wchar_t path[MAX_PATH + 16];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    std::wcscpy(path + length, L"\\dbghelp.dll");
    return LoadLibraryW(path);
}

template <typename Function>
bool Find(HMODULE library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    return function != nullptr;
}

} // namespace

DumpLibrary::DumpLibrary()
{
    const HMODULE library = LoadDbgHelp();
    m_isLoaded = library && Find(library, "MiniDumpWriteDump", m_writeDump) &&
                 Find(library, "SymInitializeW", m_openSymbols) &&
                 Find(library, "SymCleanup", m_closeSymbols);
}

bool DumpLibrary::Write(HANDLE file, HANDLE process, DWORD processId,
                        const MINIDUMP_EXCEPTION_INFORMATION& exception, MINIDUMP_TYPE type) const
{
    MINIDUMP_EXCEPTION_INFORMATION recorded = exception;
    auto* const stream = exception.ExceptionPointers ? &recorded : nullptr;
    const auto write = [&](MINIDUMP_TYPE attempted) {
        SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        SetEndOfFile(file);
        return m_writeDump(process, processId, file, attempted, stream, nullptr, nullptr) != FALSE;
    };
    // Without opened symbols some versions of DbgHelp read those of every module for a dump, which
    // takes seconds and adds nothing to it. Symbols opened like this stay unread.
    const bool isOpened = m_openSymbols(process, nullptr, FALSE);
    const bool isWritten = write(type) || (type != MiniDumpNormal && write(MiniDumpNormal));
    if (isOpened) m_closeSymbols(process);
    return isWritten;
}

} // namespace qor_utils
