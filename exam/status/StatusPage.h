#pragma once

#include "base/Painting.h"

#include <afxwin.h>

#include <functional>
#include <memory>
#include <vector>

namespace exam {

/// A check box of the page: its label, its state and its effect.
struct PageSwitch
{
    const char* text; ///< key of its label
    std::function<bool()> isOn;
    std::function<void(bool)> set;
};

/// A column of the page.
struct PageColumn
{
    const char* heading; ///< key of its heading
    std::vector<PageSwitch> switches;
};

/// A pop-up window over the main window, with switches in two columns. Escape and the close of
/// stray pop-ups end it.
class StatusPage : public CWnd
{
public:
    /// `title`: the key of its title.
    StatusPage(const char* title, PageColumn left, PageColumn right);
    ~StatusPage() override;

    /// Opens the page, or updates it if it is open.
    void Open(CWnd& owner);

    /// Clicks a check box as the user would. `index` counts through both columns.
    void Click(int index);

    /// Writes the labels again.
    void FollowLanguage();

    /// Draws what the page itself holds: its title, headings and border.
    void Draw(CDC& dc);

protected:
    BOOL PreTranslateMessage(MSG* message) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    LRESULT OnControlColour(WPARAM dc, LPARAM control);
    DECLARE_MESSAGE_MAP()

private:
    const PageSwitch& Switch(int index) const;
    int Scaled(int pixels) const;
    CPoint Place(int column, int line) const;
    bool CreateSwitches();
    bool CreateSwitch(int index, const CPoint& place);
    void ShowStates();

    const char* m_title;
    PageColumn m_left;
    PageColumn m_right;
    int m_dpi = USER_DEFAULT_SCREEN_DPI;
    std::unique_ptr<TextFont> m_font;
};

} // namespace exam
