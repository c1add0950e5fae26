#pragma once

#include <string>

// The platform's calls that fail during a crash. Only crash_fault_child makes them fail: its table
// of them makes the program large, and the other tests copy crash_child often.

// Prints the functions that can fail, and gives the exit status.
int ListFunctions();

// Makes the library's next call to a function fail, and says so then. False when it cannot.
bool LetFail(const std::string& function);
