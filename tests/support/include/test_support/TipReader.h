#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace test_support {

// This thread's tooltip windows, shown or not.
std::vector<HWND> TipWindows();
// This process's hidden windows of class "Static" whose parent is HWND_MESSAGE.
std::vector<HWND> MessageOnlyWindows();

std::wstring TipText(HWND tip);
// True when a tooltip window shows the text. Not every platform's control shows, or returns, more
// than 1023 characters of it.
bool ShowsText(HWND tip, const std::wstring& text);

// The title that a tooltip window got last.
struct TipTitle
{
    std::wstring text;
    int icon = 0; // TTI_...
    bool isAccepted = false;
};

// Records the titles of this thread's tooltip windows as long as the object lives, because not
// every platform's control can be asked for its title. One object at a time.
class TitleWatch
{
public:
    TitleWatch();
    ~TitleWatch();
    TitleWatch(const TitleWatch&) = delete;
    TitleWatch& operator=(const TitleWatch&) = delete;

    // The title of a window; empty for a window without one.
    TipTitle Of(HWND tip) const;

private:
    HHOOK m_hook;
};

// The tip that is shown; null when there is none.
HWND ShownTip();

// The drawing objects that the platform's own control loses with each tip that it showed: none, if
// the platform is right.
DWORD DrawingObjectsLostWithATip();

} // namespace test_support
