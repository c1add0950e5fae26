// Writes a memory dump of the process that started it, for MemoryDumper: a crashed process may lack
// memory, and its threads may hold any lock. The status is 0 for a whole dump and 1 for no file.
// With --version alone it prints its version.
#include <base/Handles.h>
#include <base/ProgramVersion.h>

#include <windows.h>
#include <dbghelp.h>

#include <cstdio>
#include <cwchar>
#include <string_view>

namespace {

constexpr int argumentCount = 6;
constexpr int knownTypes = MiniDumpValidTypeFlags; // a value beyond the enumeration is undefined
constexpr DWORD neededRights = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | PROCESS_DUP_HANDLE;

ULONG_PTR Number(const wchar_t* text)
{
    return static_cast<ULONG_PTR>(std::wcstoull(text, nullptr, 16));
}

// The process to dump and the data to record with it, from the command line.
struct Request
{
    DWORD processId;
    MINIDUMP_EXCEPTION_INFORMATION exception; // has addresses of the other process
    MINIDUMP_TYPE type;
    const wchar_t* path;
};

Request Read(wchar_t** arguments)
{
    Request request{};
    request.processId = static_cast<DWORD>(Number(arguments[1]));
    request.exception.ThreadId = static_cast<DWORD>(Number(arguments[2]));
    request.exception.ExceptionPointers =
        reinterpret_cast<EXCEPTION_POINTERS*>(Number(arguments[3]));
    request.exception.ClientPointers = TRUE;
    request.type = static_cast<MINIDUMP_TYPE>(Number(arguments[4]) & knownTypes);
    request.path = arguments[5];
    return request;
}

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

// The functions of the system's DbgHelp for dumps. The library stays loaded.
class DumpLibrary
{
public:
    // Converts to false when DbgHelp cannot be loaded.
    DumpLibrary()
    {
        const HMODULE library = LoadDbgHelp();
        m_isLoaded = library && Find(library, "MiniDumpWriteDump", m_writeDump) &&
                     Find(library, "SymInitializeW", m_openSymbols) &&
                     Find(library, "SymCleanup", m_closeSymbols);
    }
    explicit operator bool() const { return m_isLoaded; }

    // Replaces the file's content with a dump. Null pointers in the request leave the exception
    // out. A type that DbgHelp refuses is replaced with the normal one.
    bool Write(HANDLE file, HANDLE process, const Request& request) const
    {
        MINIDUMP_EXCEPTION_INFORMATION exception = request.exception;
        auto* const stream = exception.ExceptionPointers ? &exception : nullptr;
        const auto write = [&](MINIDUMP_TYPE attempted) {
            SetFilePointer(file, 0, nullptr, FILE_BEGIN);
            SetEndOfFile(file);
            return m_writeDump(process, request.processId, file, attempted, stream, nullptr,
                               nullptr) != FALSE;
        };
        // Without opened symbols some versions of DbgHelp read those of every module for a dump,
        // which takes seconds and adds nothing to it. Symbols opened like this stay unread.
        const bool isOpened = m_openSymbols(process, nullptr, FALSE);
        const bool isWritten =
            write(request.type) || (request.type != MiniDumpNormal && write(MiniDumpNormal));
        if (isOpened) m_closeSymbols(process);
        return isWritten;
    }

private:
    decltype(&MiniDumpWriteDump) m_writeDump = nullptr;
    decltype(&SymInitializeW) m_openSymbols = nullptr;
    decltype(&SymCleanup) m_closeSymbols = nullptr;
    bool m_isLoaded;
};

bool Write(const Request& request)
{
    const DumpLibrary library;
    const base::Process process(OpenProcess(neededRights, FALSE, request.processId));
    if (!library || !process) return false;
    base::File file(CreateFileW(request.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    if (library.Write(file.get(), process.get(), request)) return true;
    file.reset(); // an open file cannot be deleted
    DeleteFileW(request.path);
    return false;
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count == 2 && std::wstring_view(arguments[1]) == L"--version") {
        std::printf("dumpwriter %ls\n", base::ProgramVersion().c_str());
        return 0;
    }
    return count == argumentCount && Write(Read(arguments)) ? 0 : 1;
}
