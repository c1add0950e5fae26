#include "CrashFaults.h"

#include "../faults/FaultHooks.h"

#include <windows.h>

#include <cstdio>

namespace {

void SayThatItFailed()
{
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), "failed\n", 7, &written, nullptr);
}

} // namespace

int ListFunctions()
{
    for (const std::string& row : faults::Hooks().rows)
        std::puts(row.c_str());
    return 0;
}

bool LetFail(const std::string& function)
{
    static const faults::Hooks hooks; // until the crash
    faults::FailNext({function, nullptr}, SayThatItFailed);
    return true;
}
