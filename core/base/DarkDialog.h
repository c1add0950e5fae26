#pragma once

#include "base/Painting.h"

#include <memory>
#include <string>
#include <vector>

namespace exam {

struct DialogButton
{
    int id;
    std::wstring text;
};

/// A modal dialog of platform controls, in the application's colours and font. Lengths are pixels.
class DarkDialog
{
public:
    DarkDialog() = default;
    virtual ~DarkDialog() = default;
    DarkDialog(const DarkDialog&) = delete;
    DarkDialog& operator=(const DarkDialog&) = delete;

    /// Shows the dialog in the middle of its owner, or of the screen for null, until a button ends
    /// it. The result is the id of that button; IDCANCEL for Escape, or when the platform refuses.
    int Run(HWND owner, const std::wstring& title);

protected:
    /// Adds the controls. The result is the size of the client area.
    virtual CSize Fill() = 0;
    /// False when a button must not end the dialog.
    virtual bool Accept(int) { return true; }

    HWND Window() const { return m_window; }
    /// The pixels that stand for some at 96 dpi.
    int Scaled(int pixels) const;
    /// The size of a text whose lines wrap at a width.
    CSize SizeOf(const std::wstring& text, int width) const;

    HWND Add(const wchar_t* kind, const std::wstring& text, DWORD style, const CRect& box, int id);
    /// Adds buttons in a row that ends at a lower right corner. Enter presses the one with the
    /// focus, or `usual` from elsewhere.
    void AddButtons(const std::vector<DialogButton>& buttons, int usual, CPoint corner);
    int ButtonHeight() const { return Scaled(28); }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Open(HWND window);
    void Centre(CSize client);
    int ButtonOfEnter() const;

    HWND m_owner = nullptr;
    HWND m_window = nullptr;
    int m_dpi = USER_DEFAULT_SCREEN_DPI;
    int m_usual = IDOK;
    std::wstring m_title;
    std::unique_ptr<TextFont> m_font;
};

/// Shows a text with buttons as a DarkDialog does, and returns what Run returns.
int ShowBox(HWND owner, const std::wstring& title, const std::wstring& text,
            const std::vector<DialogButton>& buttons, int usual);

} // namespace exam
