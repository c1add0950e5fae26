// The entry point of every test program.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>

int main(int argc, char** argv)
{
    // A crash ends the program at once with its code instead of waiting for a dialog to be closed.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
