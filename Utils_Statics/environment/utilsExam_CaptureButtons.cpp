// utilsExam: the settings of the capture ("print") buttons.
#include "Utils_Statics/utilsExam.h"

#include "environment/ProfileSettings.h"

using utils_statics::ProfileNumber;

namespace {

constexpr wchar_t section[] = L"Settings\\Capture";

// The flags and actions are the application's own; the library only knows the defaults.
constexpr int defaultAction = 18;

int DefaultFlags(unsigned int n)
{
    switch (n) {
    case 0: return 1;
    case 1: return 13;
    case 2: return 64;
    default: return 3;
    }
}

} // namespace

unsigned int utilsExam::GetPrintButtonFlags(unsigned int n)
try {
    CString entry;
    entry.Format(L"PrintButton%d", n);
    return ProfileNumber(section, entry, DefaultFlags(n));
} catch (const std::bad_alloc&) {
    return static_cast<unsigned int>(DefaultFlags(n));
}

unsigned int utilsExam::GetPrintButtonAction(unsigned int n)
try {
    CString entry;
    entry.Format(L"PrintButton%d_Action", n);
    return ProfileNumber(section, entry, defaultAction);
} catch (const std::bad_alloc&) {
    return defaultAction;
}
