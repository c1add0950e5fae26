#include "CrashFaults.h"

#include "../faults/FaultHooks.h"

#include <base/Encoding.h>
#include <Utils_Statics/MiniDumper.h>

#include <windows.h>

#include <cstdio>

namespace {

const faults::Hooks& AllHooks()
{
    static const faults::Hooks hooks; // until the crash
    return hooks;
}

// A place as another run of the program finds it again: its function, module and offset.
std::string NameOf(const faults::Site& site)
{
    HMODULE module = nullptr;
    wchar_t path[MAX_PATH] = {};
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(site.address), &module);
    GetModuleFileNameW(module, path, MAX_PATH);
    const std::string name = base::Utf8FromWide(path);
    const auto offset = static_cast<char*>(site.address) - reinterpret_cast<char*>(module);
    return std::string(site.function) + ':' + name.substr(name.rfind('\\') + 1) + ':' +
           std::to_string(offset);
}

LONG WINAPI ListCalls(EXCEPTION_POINTERS* exception)
{
    faults::Record();
    const LONG result = MiniDumper::TopLevelFilter(exception);
    for (const faults::Site& site : faults::Recorded())
        std::puts(NameOf(site).c_str());
    std::fflush(stdout);
    return result;
}

void SayThatItFailed()
{
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), "failed\n", 7, &written, nullptr);
}

} // namespace

bool ListCallsOfTheCrash()
{
    AllHooks();
    SetUnhandledExceptionFilter(ListCalls);
    return true;
}

bool LetFail(const std::string& place)
{
    static std::string function; // the name has to stay
    const std::size_t module = place.find(':'), offset = place.rfind(':');
    if (module == offset) return false;
    function = place.substr(0, module);
    AllHooks();
    char* const base = reinterpret_cast<char*>(
        GetModuleHandleA(place.substr(module + 1, offset - module - 1).c_str()));
    faults::FailNext({function, base + std::stoul(place.substr(offset + 1))}, SayThatItFailed);
    return base != nullptr;
}
