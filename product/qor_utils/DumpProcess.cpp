#include "DumpProcess.h"

#include <base/Handles.h>

#include <cwchar>
#include <iterator>

namespace qor_utils {

namespace {

constexpr wchar_t writerName[] = L"dumpwriter.exe";
constexpr std::size_t longestProgram = 1024;
constexpr std::size_t longestCommand = 3072;

// Beside the module that this code is in.
bool FindWriter(wchar_t (&path)[longestProgram])
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<const wchar_t*>(&FindWriter), &module))
        return false;
    constexpr DWORD room = longestProgram - std::size(writerName);
    const DWORD length = GetModuleFileNameW(module, path, room);
    wchar_t* const name = length > 0 && length < room ? std::wcsrchr(path, L'\\') : nullptr;
    if (!name) return false;
    std::wcscpy(name + 1, writerName);
    return true;
}

// A handle of this process that the writer inherits, with what reading a dump takes.
base::Process InheritableSelf()
{
    base::Process self;
    DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(), self.put(), 0,
                    TRUE, DUPLICATE_SAME_ACCESS);
    return self;
}

// The writer's main function says what the numbers mean.
bool Command(wchar_t (&command)[longestCommand], const wchar_t* program, HANDLE self,
             const wchar_t* path, const MINIDUMP_EXCEPTION_INFORMATION& exception,
             MINIDUMP_TYPE type)
{
    const int length =
        _snwprintf(command, longestCommand, L"\"%ls\" %Ix %lx %lx %Ix %x \"%ls\"", program,
                   reinterpret_cast<ULONG_PTR>(self), GetCurrentProcessId(), exception.ThreadId,
                   reinterpret_cast<ULONG_PTR>(exception.ExceptionPointers),
                   static_cast<unsigned>(type), path);
    return length > 0 && length < static_cast<int>(longestCommand);
}

base::Process Start(const wchar_t* program, wchar_t* command)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program, command, nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                        nullptr, &startup, &started))
        return {};
    base::Thread(started.hThread).reset();
    return base::Process(started.hProcess);
}

bool Succeeded(const base::Process& writer, DWORD timeout)
{
    DWORD status = 1;
    if (WaitForSingleObject(writer.get(), timeout) != WAIT_OBJECT_0) {
        TerminateProcess(writer.get(), status);
        WaitForSingleObject(writer.get(), timeout);
        return false;
    }
    return GetExitCodeProcess(writer.get(), &status) && status == 0;
}

} // namespace

bool WriteDumpFromOutside(const wchar_t* path, const MINIDUMP_EXCEPTION_INFORMATION& exception,
                          MINIDUMP_TYPE type, DWORD timeout)
{
    wchar_t program[longestProgram];
    wchar_t command[longestCommand];
    const base::Process self = InheritableSelf();
    if (!self || !FindWriter(program)) return false;
    if (!Command(command, program, self.get(), path, exception, type)) return false;
    const base::Process writer = Start(program, command);
    if (!writer) return false;
    if (Succeeded(writer, timeout)) return true;
    DeleteFileW(path);
    return false;
}

} // namespace qor_utils
