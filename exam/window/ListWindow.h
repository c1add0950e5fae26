#pragma once

#include "base/Painting.h"

#include <afxwin.h>

#include <memory>

namespace exam {

/// A window of a list view over the main window. Escape, and the key that shows it, hide it.
class ListWindow : public CWnd
{
public:
    ~ListWindow() override;

    /// Shows the list over a window, or hides it. False when the platform refuses.
    bool Toggle(CWnd& owner);
    bool IsShown() const { return GetSafeHwnd() != nullptr; }

    /// Writes the texts again.
    void FollowLanguage();

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    /// `style`: that of the list view.
    ListWindow(const char* titleKey, DWORD style, UINT key)
        : m_titleKey(titleKey), m_style(style), m_key(key)
    {
    }

    /// Fills the list, which is empty.
    virtual void Fill() = 0;

    /// Follows the size of the list, which may be empty yet, and the language.
    virtual void Resized() {}

    HWND List() const { return m_list; }

    void OnSize(UINT type, int width, int height);
    DECLARE_MESSAGE_MAP()

private:
    bool Open(CWnd& owner);

    const char* m_titleKey;
    DWORD m_style;
    UINT m_key;
    std::unique_ptr<TextFont> m_font; // of the list
    HWND m_list = nullptr;            // destroyed with the window
};

} // namespace exam
