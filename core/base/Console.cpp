#include "base/Console.h"

#include <base/Encoding.h>
#include <base/Handles.h>

#include <cstdio>

namespace exam {

namespace {

// A windowed program gets no console of its own. When no output handle was passed to it, it asks
// once for the console that it was started from.
HANDLE ParentConsole()
{
    static const base::File screen = [] {
        AttachConsole(ATTACH_PARENT_PROCESS); // fails when the process is attached already
        return base::File(CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
    }();
    return screen.get();
}

bool IsUsable(HANDLE handle)
{
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

bool WriteToConsole(HANDLE console, const std::wstring& text)
{
    DWORD written = 0;
    return WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written,
                         nullptr) != FALSE;
}

void Write(DWORD stream, std::FILE* file, const std::wstring& text)
{
    const HANDLE handle = GetStdHandle(stream);
    const HANDLE console = IsUsable(handle) ? handle : ParentConsole();
    if (WriteToConsole(console, text)) return;
    // The output is a file or a pipe.
    const std::string bytes = base::Utf8FromWide(text);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fflush(file);
}

} // namespace

void WriteOut(const std::wstring& text)
{
    Write(STD_OUTPUT_HANDLE, stdout, text);
}

bool Fail(const std::wstring& problem)
{
    Write(STD_ERROR_HANDLE, stderr, L"exam: " + problem + L"\n");
    return false;
}

} // namespace exam
