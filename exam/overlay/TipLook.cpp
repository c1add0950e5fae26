#include "overlay/TipLook.h"

#include "base/Dpi.h"
#include "base/Palette.h"

#include <commctrl.h>

#include <algorithm>
#include <cwchar>
#include <string>
#include <utility>

namespace exam {

namespace {

constexpr std::size_t longestText = 0x10000; // more than a notice has
constexpr int widestLine = 320;              // pixels at 96 dpi; longer ones wrap

constinit const TextFont* s_font = nullptr;
constinit const TipLink* s_link = nullptr;

bool IsTip(HWND window)
{
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    return std::wcscmp(name, TOOLTIPS_CLASSW) == 0;
}

// The library's tips have one tool each.
bool IsLink(HWND tip)
{
    if (!s_link || !s_link->isOne) return false;
    std::wstring text(longestText, L'\0');
    TOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.lpszText = text.data();
    SendMessageW(tip, TTM_GETTEXTW, longestText, reinterpret_cast<LPARAM>(&tool));
    return s_link->isOne(text.c_str());
}

} // namespace

TipLook::TipLook(TipLink link)
    : m_link(std::move(link)), m_font(std::make_unique<TextFont>(MulDiv(
                                   ScopedFont::textSize, DpiOf(nullptr), USER_DEFAULT_SCREEN_DPI))),
      m_hook(SetWinEventHook(EVENT_OBJECT_CREATE, EVENT_OBJECT_CREATE, GetModuleHandleW(nullptr),
                             OnEvent, GetCurrentProcessId(), GetCurrentThreadId(),
                             WINEVENT_INCONTEXT))
{
    s_font = m_font.get();
    s_link = &m_link;
}

TipLook::~TipLook()
{
    s_font = nullptr;
    s_link = nullptr;
}

// The thread calls it itself, before the tip has a text.
void CALLBACK TipLook::OnEvent(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG, DWORD,
                               DWORD) noexcept
{
    if (object != OBJID_WINDOW || !s_font || !IsTip(window)) return;
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(s_font->GetSafeHandle()), FALSE);
    SendMessageW(window, TTM_SETTIPBKCOLOR, palette::line, 0);
    SendMessageW(window, TTM_SETTIPTEXTCOLOR, palette::text, 0);
    SetWindowSubclass(window, OnMessage, 1, 0);
}

LRESULT CALLBACK TipLook::OnMessage(HWND tip, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                    DWORD_PTR) noexcept
{
    if (message == TTM_SETMAXTIPWIDTH)
        lParam = std::min<LPARAM>(lParam, MulDiv(widestLine, DpiOf(tip), USER_DEFAULT_SCREEN_DPI));
    if (message == WM_NCHITTEST && IsLink(tip)) return HTCLIENT;
    if (message != WM_LBUTTONDOWN || !IsLink(tip))
        return DefSubclassProc(tip, message, wParam, lParam);
    ShowWindow(tip, SW_HIDE);
    s_link->follow();
    return 0;
}

} // namespace exam
