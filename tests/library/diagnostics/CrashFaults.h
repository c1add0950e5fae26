#pragma once

#include <string>

// The platform's calls that fail during a crash. Only crash_fault_child makes them fail: its table
// of them makes the program large, and the other tests copy crash_child often.

// Lists, after the crash, the places from which the library called the platform for its report.
// Call it when the crash handler is made. False when it cannot.
bool ListCallsOfTheCrash();

// Makes the library's next call from a place of that list fail, and says so then. False when it
// cannot.
bool LetFail(const std::string& place);
