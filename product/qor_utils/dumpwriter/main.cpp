// Writes a memory dump of the process that started it, for MemoryDumper: a crashed process may lack
// memory, and its threads may hold any lock. The status is 0 for a whole dump and 1 for no file.
#include "DumpLibrary.h"

#include <base/Handles.h>

#include <cwchar>

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

bool Write(const Request& request)
{
    const qor_utils::DumpLibrary library;
    const base::Process process(OpenProcess(neededRights, FALSE, request.processId));
    if (!library || !process) return false;
    base::File file(CreateFileW(request.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    if (library.Write(file.get(), process.get(), request.processId, request.exception,
                      request.type))
        return true;
    file.reset(); // an open file cannot be deleted
    DeleteFileW(request.path);
    return false;
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    return count == argumentCount && Write(Read(arguments)) ? 0 : 1;
}
