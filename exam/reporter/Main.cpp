// XCrashReport.exe [/quiet] "PROGRAM.exe"
// Packs what a crash of the program left behind, as "crashreport.ini" beside this program lists it.
// Tells where the archive is: in a message, or with /quiet on the standard output only.
#include "Collection.h"

#include <base/Encoding.h>
#include <base/FilePath.h>

#include <windows.h>

#include <cstdio>
#include <string_view>

namespace {

void Tell(const std::wstring& message, bool isQuiet)
{
    std::printf("%s\n", base::Utf8FromWide(message).c_str());
    std::fflush(stdout);
    if (!isQuiet)
        MessageBoxW(nullptr, message.c_str(), L"Crash report", MB_OK | MB_ICONINFORMATION);
}

std::wstring SettingsFile()
{
    const std::wstring program = base::ModuleFile(nullptr);
    return program.substr(0, program.rfind(L'\\') + 1) + L"crashreport.ini";
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int)
{
    // Reads the command line itself rather than its arguments, because the crash handler's does not
    // begin with a program.
    const std::wstring_view command = GetCommandLineW();
    const bool isQuiet = command.find(L"/quiet") != std::wstring_view::npos;
    const auto collection = exam::ReadCollection(SettingsFile());
    if (!collection) {
        Tell(L"There is no crash to report: " + SettingsFile() + L" names no archive.", isQuiet);
        return 1;
    }
    const bool isPacked = exam::Pack(*collection);
    Tell((isPacked ? L"The crash report is in " : L"A part of the crash report is in ") +
             collection->archive,
         isQuiet);
    return isPacked ? 0 : 1;
}
