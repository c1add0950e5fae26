#include "CrashFaults.h"

int ListFunctions()
{
    return 1;
}

bool LetFail(const std::string&)
{
    return false;
}
