// utilsExam: stray pop-up windows.
#include "Utils_Statics/utilsExam.h"

#include "environment/MainWindow.h"

#include <cwchar>

using utils_statics::MainWindow;

namespace {

constexpr int attemptLimit = 5;
constexpr int popupLimit = 9;
constexpr DWORD checkInterval = 100; // milliseconds
constexpr DWORD longestWait = 5000;  // milliseconds

// The enabled pop-up of `owner`, or null. Some platforms know no enabled pop-ups: GetWindow returns
// null for an owner that has one. They still know the last active one. Where both are known, the
// last active one is an enabled one.
HWND EnabledPopup(HWND owner)
{
    if (const HWND popup = GetWindow(owner, GW_ENABLEDPOPUP)) return popup;
    const HWND popup = owner ? GetLastActivePopup(owner) : nullptr;
    return IsWindowEnabled(popup) && IsWindowVisible(popup) ? popup : nullptr;
}

bool IsBalloonHelp(HWND window)
{
    wchar_t name[64] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::wcscmp(name, L"BalloonHelpClassDS") == 0;
}

bool IsToolWindow(HWND window)
{
    return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
}

void PostKey(HWND window, WPARAM key)
{
    PostMessageW(window, WM_KEYDOWN, key, 0);
    PostMessageW(window, WM_KEYUP, key, 0);
}

// Makes a dialog end: the first key cancels it, the second answers one that cannot be cancelled.
void AskToClose(HWND popup)
{
    ShowWindow(popup, SW_SHOW);
    PostMessageW(popup, WM_SETFOCUS, 0, 0);
    PostKey(popup, VK_ESCAPE);
    PostKey(popup, VK_RETURN);
}

// True when the window is gone within the longest wait.
bool WaitUntilGone(HWND window)
{
    for (DWORD waited = 0; IsWindow(window); waited += checkInterval) {
        if (waited >= longestWait) return false;
        Sleep(checkInterval);
    }
    return true;
}

UINT __cdecl ClosePopupsOneByOne(LPVOID owner)
{
    const HWND window = static_cast<HWND>(owner);
    for (int closed = 0; closed < popupLimit; ++closed) {
        const HWND popup = utilsExam::FindPopupWindow(window);
        if (!popup) break;
        utilsExam::ClosePopup(popup, window);
    }
    return 0;
}

} // namespace

HWND utilsExam::FindPopupWindow(HWND owner)
{
    if (!owner) owner = MainWindow();
    const HWND popup = EnabledPopup(owner);
    if (!popup || popup == owner || IsBalloonHelp(popup) || IsToolWindow(popup)) return nullptr;
    return popup;
}

void utilsExam::ClosePopup(HWND popup, HWND owner)
{
    if (!popup) return;
    for (int attempt = 0; attempt < attemptLimit && FindPopupWindow(owner) == popup; ++attempt) {
        AskToClose(popup);
        if (!WaitUntilGone(popup)) return;
    }
}

bool utilsExam::ClosePopups(HWND owner)
{
    return FindPopupWindow(owner) && AfxBeginThread(ClosePopupsOneByOne, owner);
}
