#include "overlay/TipLook.h"

#include "base/Dpi.h"
#include "base/Palette.h"

#include <commctrl.h>

#include <cwchar>

namespace exam {

namespace {

constinit const TextFont* s_font = nullptr;

bool IsTip(HWND window)
{
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    return std::wcscmp(name, TOOLTIPS_CLASSW) == 0;
}

} // namespace

TipLook::TipLook()
    : m_font(std::make_unique<TextFont>(
          MulDiv(ScopedFont::textSize, DpiOf(nullptr), USER_DEFAULT_SCREEN_DPI))),
      m_hook(SetWinEventHook(EVENT_OBJECT_CREATE, EVENT_OBJECT_CREATE, GetModuleHandleW(nullptr),
                             OnEvent, GetCurrentProcessId(), GetCurrentThreadId(),
                             WINEVENT_INCONTEXT))
{
    s_font = m_font.get();
}

TipLook::~TipLook()
{
    s_font = nullptr;
}

// The thread calls it itself, before the tip has a text.
void CALLBACK TipLook::OnEvent(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG, DWORD,
                               DWORD) noexcept
{
    if (object != OBJID_WINDOW || !s_font || !IsTip(window)) return;
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(s_font->GetSafeHandle()), FALSE);
    SendMessageW(window, TTM_SETTIPBKCOLOR, palette::line, 0);
    SendMessageW(window, TTM_SETTIPTEXTCOLOR, palette::text, 0);
}

} // namespace exam
