#pragma once

#include <string>

// The ways to crash that the child process knows.
namespace crash_test {

// Crashes on the calling thread in the way of that name; returns when there is none, or when the
// platform did not mind. A number is a code for RaiseException.
void Crash(const std::string& kind);

} // namespace crash_test
