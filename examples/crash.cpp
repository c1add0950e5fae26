// The crash report: one object at the start, and a program that dies of an unhandled exception
// leaves a report, a memory dump and the settings for the crash reporter in its log folder.
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/MiniDumper.h>

#include <cstdint>
#include <cstdio>

int main(int arguments, char**)
{
    qor_utils::SetLogDirectory(L"log");
    const MiniDumper reporter;
    std::printf("a crash would be reported\n");
    std::fflush(stdout);
    volatile std::uintptr_t nowhere = 8;
    if (arguments > 1) *reinterpret_cast<int*>(nowhere) = 0; // any argument: crash
}
