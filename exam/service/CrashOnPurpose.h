#pragma once

#include <span>
#include <string>

namespace exam {

/// A way to crash, for service staff to see that a crash is reported.
struct CrashKind
{
    const wchar_t* name;
    const char* textKey; ///< of its text in the service menu
    void (*crash)();
};

std::span<const CrashKind> CrashKinds();

/// Ends the program by the crash of a name. Returns only when there is none of that name.
void CrashOnPurpose(const std::wstring& name);

/// All names, with commas between them.
std::wstring CrashNames();

} // namespace exam
