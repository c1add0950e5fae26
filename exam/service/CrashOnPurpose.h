#pragma once

#include <span>
#include <string>

namespace exam {

/// A way to crash, by which service staff see that a crash is reported.
struct CrashKind
{
    const wchar_t* name;
    const char* textKey; ///< key of its text in the service menu
    void (*crash)();
};

std::span<const CrashKind> CrashKinds();

/// Ends the program by the named kind of crash. Returns only when there is no such kind.
void CrashOnPurpose(const std::wstring& name);

/// All names, with commas between them.
std::wstring CrashNames();

} // namespace exam
