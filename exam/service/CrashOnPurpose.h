#pragma once

#include <functional>
#include <string>
#include <vector>

namespace exam {

/// The names of the ways to crash, by which service staff see that a crash is reported.
std::vector<std::wstring> CrashNames();

/// Ends the program in the way of this name. Returns only when there is no such way.
void CrashOnPurpose(const std::wstring& name);

/// Lets the service staff choose one of the ways to crash by `choose`, which gives one of some
/// texts, and carries it out. Does nothing outside the service mode.
void CrashByChoice(
    const std::function<std::wstring(const std::vector<std::wstring>& texts)>& choose);

} // namespace exam
