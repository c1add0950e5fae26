// The entry point of every test program. With --run-until-input-ends it runs no test, so that a
// script has a program of this platform running.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstring>

namespace {

int RunUntilInputEnds()
{
    std::puts("keeper runs");
    while (std::getchar() != EOF) {
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    // A crash ends the program at once with its code instead of waiting for a dialog to be closed.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc == 2 && std::strcmp(argv[1], "--run-until-input-ends") == 0)
        return RunUntilInputEnds();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
