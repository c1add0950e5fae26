// Writes a memory dump of the process that started it; MemoryDumper starts it where the crashed
// process cannot do so itself. A whole dump or none: the status is 0 or 1.
#include "../DumpLibrary.h"

#include <base/Handles.h>

#include <cwchar>

namespace {

constexpr int argumentCount = 7;

ULONG_PTR Number(const wchar_t* text)
{
    return static_cast<ULONG_PTR>(std::wcstoull(text, nullptr, 16));
}

// The process to dump and what is recorded with it, from the command line.
struct Request
{
    HANDLE process;
    DWORD processId;
    MINIDUMP_EXCEPTION_INFORMATION exception; // with addresses of the other process
    MINIDUMP_TYPE type;
    const wchar_t* path;
};

Request Read(wchar_t** arguments)
{
    Request request{};
    request.process = reinterpret_cast<HANDLE>(Number(arguments[1])); // inherited
    request.processId = static_cast<DWORD>(Number(arguments[2]));
    request.exception.ThreadId = static_cast<DWORD>(Number(arguments[3]));
    request.exception.ExceptionPointers =
        reinterpret_cast<EXCEPTION_POINTERS*>(Number(arguments[4]));
    request.exception.ClientPointers = TRUE;
    request.type = static_cast<MINIDUMP_TYPE>(Number(arguments[5]));
    request.path = arguments[6];
    return request;
}

bool WriteFile(const Request& request)
{
    const qor_utils::DumpLibrary library;
    const base::File file(CreateFileW(request.path, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return library && file &&
           library.Write(file.get(), request.process, request.processId, request.exception,
                         request.type);
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    return count == argumentCount && WriteFile(Read(arguments)) ? 0 : 1;
}
