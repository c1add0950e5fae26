// utilsExam: small functions on controls, fonts and keys.
#include "Utils_Statics/utilsExam.h"

#include <base/WrapArithmetic.h>

#include <afxwin.h>

#include <algorithm>

namespace {

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
