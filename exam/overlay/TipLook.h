#pragma once

#include "base/Painting.h"

#include <base/Owner.h>

#include <memory>

namespace exam {

struct WinEventHookTraits
{
    using Handle = HWINEVENTHOOK;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle hook) noexcept { UnhookWinEvent(hook); }
};

/// Gives the tips and balloons of the user-interface thread the application's colours and font,
/// whoever makes their windows, by the messages that the platform's control has for that. There is
/// one object at a time.
class TipLook
{
public:
    TipLook();
    ~TipLook();
    TipLook(const TipLook&) = delete;
    TipLook& operator=(const TipLook&) = delete;

private:
    static void CALLBACK OnEvent(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object,
                                 LONG child, DWORD thread, DWORD time) noexcept;

    std::unique_ptr<TextFont> m_font;
    base::Owner<WinEventHookTraits> m_hook;
};

} // namespace exam
