#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace exam {

/// The names of the ways to crash, by which service staff see that a crash is reported.
std::vector<std::wstring> CrashNames();

/// Ends the program in the way of this name. Returns only when there is no such way.
void CrashOnPurpose(const std::wstring& name);

/// Opens the menu of the service staff at the mouse pointer and carries out the choice, which is a
/// crash on purpose. Does nothing outside the service mode. Returns when the menu is closed.
void ShowServiceMenu(HWND owner);

} // namespace exam
