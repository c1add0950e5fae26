// utilsExam: the places of dialogs and of the imaging area on the console's screen, stray pop-up
// windows, controls, fonts and keys.
#include "Utils_Statics/utilsExam.h"

#include "environment/Application.h"

#include <base/WrapArithmetic.h>

#include <algorithm>
#include <cwchar>

using utils_statics::MainWindow;

namespace {

constexpr int screenWidth = 1024;
constexpr int screenHeight = 768;
constexpr int tavrenDialogHeight = 600;
constexpr int raisedBy = 50; // leaves room below a centred image

CSize ClientSize(HWND window)
{
    RECT client = {0, 0, screenWidth, screenHeight};
    if (window) GetClientRect(window, &client);
    return CSize(client.right - client.left, client.bottom - client.top);
}

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

constexpr int selectionField = -1;
constexpr BYTE toggled = 1;        // in a key's state
constexpr BYTE keyScanCode = 0x45; // Num Lock's; the platform goes by the virtual key

struct FontChange
{
    HFONT font;
    bool redraw;
};

void SetWindowFont(HWND window, const FontChange& change)
{
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(change.font),
                 change.redraw ? TRUE : FALSE);
}

BOOL CALLBACK SetChildFont(HWND child, LPARAM change)
{
    SetWindowFont(child, *reinterpret_cast<const FontChange*>(change));
    return TRUE;
}

} // namespace

CSize utilsExam::GetMainScreenSize() noexcept
{
    return CSize(screenWidth, screenHeight);
}

CSize utilsExam::GetImagingSize() noexcept
{
    return IsFullscreen() ? CSize(screenWidth, screenHeight) : CSize(800, 600);
}

CRect utilsExam::CalculateDialogRect()
{
    CRect around(0, 0, screenWidth, screenHeight);
    if (const HWND window = MainWindow()) GetWindowRect(window, &around);
    const int left = around.left + (around.Width() - screenWidth) / 2;
    const int top = around.top + (around.Height() - screenHeight) / 2;
    const int height = GetConsoleType() == eConsoleTavren ? tavrenDialogHeight : screenHeight;
    return CRect(left, top, left + screenWidth, top + height);
}

CPoint utilsExam::CalculateSystemOrigin(CSize image)
{
    const CSize client = ClientSize(MainWindow());
    int x = (client.cx - screenWidth) / 2;
    int y = (client.cy - screenHeight) / 2;
    if (image.cx < 0 || image.cy < 0) image = GetImagingSize();
    const int width = std::min<int>(client.cx, screenWidth);
    const int height = std::min<int>(client.cy, screenHeight);
    if (GetConsoleType() == eConsoleTavren && !IsLayoutLeft())
        return CPoint(x + width - image.cx, y);
    if (width > image.cx && height > image.cy) {
        x += (width - image.cx) / 2;
        y += (height - image.cy) / 2 - raisedBy;
    }
    return CPoint(x, y);
}

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

void utilsExam::SetComboBoxDropdownHeight(CComboBox& box, int itemCount, int maxItems)
{
    const int wanted = std::max(itemCount >= 1 ? itemCount : box.GetCount(), 1);
    const int visible = std::min(wanted, maxItems);
    CRect rect;
    box.GetWindowRect(&rect);
    const int list = base::wrap::Multiply(box.GetItemHeight(selectionField), visible);
    box.SetWindowPos(nullptr, 0, 0, rect.Width(), base::wrap::Add(rect.Height(), list),
                     SWP_NOMOVE | SWP_NOZORDER);
}

void utilsExam::SetKeyState(unsigned char virtualKey, int on)
{
    BYTE keys[256] = {};
    if (!GetKeyboardState(keys)) return;
    if (((keys[virtualKey] & toggled) != 0) == (on != 0)) return;
    keybd_event(virtualKey, keyScanCode, KEYEVENTF_EXTENDEDKEY, 0);
    keybd_event(virtualKey, keyScanCode, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP, 0);
}

void utilsExam::ChangeDialogFont(CWnd* dialog, CFont* font, int redraw)
{
    const HWND window = dialog ? dialog->GetSafeHwnd() : nullptr;
    if (!window) return;
    FontChange change = {font ? static_cast<HFONT>(*font) : nullptr, redraw != 0};
    SetWindowFont(window, change);
    EnumChildWindows(window, SetChildFont, reinterpret_cast<LPARAM>(&change));
}
