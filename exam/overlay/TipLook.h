#pragma once

#include "base/Painting.h"

#include <base/Owner.h>

#include <atlstr.h>

#include <functional>
#include <memory>

namespace exam {

/// Tells which tips are links, and follows them.
struct TipLink
{
    std::function<bool(const CString& text)> isOne; ///< a click on a tip with this text follows it
    std::function<void()> follow;
};

struct WinEventHookTraits
{
    using Handle = HWINEVENTHOOK;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle hook) noexcept { UnhookWinEvent(hook); }
};

/// Gives the tips and balloons of the user-interface thread the application's colours and font,
/// whoever makes their windows, by the messages that the platform's control has for that. Clicks on
/// those that are links are followed; the mouse sees through the others. There is one object at a
/// time.
class TipLook
{
public:
    explicit TipLook(TipLink link = {});
    ~TipLook();
    TipLook(const TipLook&) = delete;
    TipLook& operator=(const TipLook&) = delete;

private:
    static void CALLBACK OnEvent(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object,
                                 LONG child, DWORD thread, DWORD time) noexcept;
    static LRESULT CALLBACK OnMessage(HWND tip, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR id, DWORD_PTR data) noexcept;

    TipLink m_link;
    std::unique_ptr<TextFont> m_font;
    base::Owner<WinEventHookTraits> m_hook;
};

} // namespace exam
