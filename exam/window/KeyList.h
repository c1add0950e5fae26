#pragma once

#include "base/Painting.h"

#include <afxwin.h>

#include <memory>

namespace exam {

/// A window that lists the keys and what they do, made from the table of commands. Escape and the
/// key that opened it close it.
class KeyList : public CWnd
{
public:
    ~KeyList() override;

    /// Shows the list over a window, or hides it. False when the platform refuses.
    bool Toggle(CWnd& owner);
    /// Writes the texts again.
    void FollowLanguage();

    bool IsShown() const { return GetSafeHwnd() != nullptr; }

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    void OnSize(UINT type, int width, int height);
    DECLARE_MESSAGE_MAP()

private:
    bool Open(CWnd& owner);
    void AddColumns();
    void AddCommands();

    std::unique_ptr<TextFont> m_font; // of the list
    HWND m_list = nullptr;            // destroyed with the window
};

} // namespace exam
