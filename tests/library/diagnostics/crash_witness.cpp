// Stands in for the crash reporter. It writes how it was called to a file beside itself, and
// signals the event to the test. Sets the event that it would have if it inherited handles.
#include <windows.h>

#include <cstdio>
#include <string>

int main()
{
    wchar_t program[32768] = {};
    wchar_t event[64] = {};
    GetModuleFileNameW(nullptr, program, 32767);
    GetEnvironmentVariableW(L"CRASH_WITNESS", event, 64);
    const std::wstring path = program;
    STARTUPINFOW startup = {};
    GetStartupInfoW(&startup);
    // Writes the low word of the start-up flags, the requested show state, and the command line.
    std::FILE* const file =
        _wfopen((path.substr(0, path.rfind(L'\\') + 1) + L"witness").c_str(), L"wb");
    const std::wstring command = GetCommandLineW();
    const wchar_t shown[2] = {static_cast<wchar_t>(startup.dwFlags & 0xFFFF),
                              static_cast<wchar_t>(startup.wShowWindow)};
    std::fwrite(shown, sizeof(wchar_t), 2, file);
    std::fwrite(command.data(), sizeof(wchar_t), command.size(), file);
    std::fclose(file);
    wchar_t inherited[32] = {};
    if (GetEnvironmentVariableW(L"CRASH_HANDLE", inherited, 32))
        SetEvent(reinterpret_cast<HANDLE>(std::stoull(inherited)));
    const HANDLE told = OpenEventW(EVENT_MODIFY_STATE, FALSE, event);
    if (told) SetEvent(told);
    return 0;
}
