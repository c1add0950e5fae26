#pragma once

#include "overlay/HoverTip.h"
#include "panel/PanelButton.h"
#include "panel/PanelLayout.h"

#include <Utils_Statics/IStateChangeConsumer.h>

#include <afxwin.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The ways in which the control panel is shown.
enum class PanelForm
{
    below,   ///< below the fixed form of the main window, like the second screen of a console
    docked,  ///< a part of the main window
    floating ///< a window of its own, which the user moves and resizes
};

/// The control panel, with buttons that grow and shrink with it. Buttons, places, actions and lamps
/// all come from protocol files. A click on a button carries its action out, the ends of a rotary
/// control turn it, and a click with Ctrl ticks it. While the panel is not locked, a button that is
/// dragged goes to another cell. The user's changes are saved at once. Its owner shows the context
/// menu.
class ControlPanel : public CWnd, private IStateChangeConsumer
{
public:
    /// The calls by which the panel reaches its owner.
    struct Listener
    {
        std::function<void(const ActionInfo&)> carryOut;
        std::function<void(const CString&)> tell; ///< a sentence for the user
        std::function<void()> broadcast;          ///< broadcasts all action states
        std::function<void()> close = [] {};      ///< the user closes the panel
    };

    explicit ControlPanel(Listener listener);
    ~ControlPanel() override;

    /// Creates and shows the window, or shows it in another form; false when the platform refuses.
    /// The window takes no keyboard input away from its owner. `area` is its place, in the owner's
    /// client area when it is docked, else on the screen.
    bool Open(CWnd& owner, PanelForm form, const CRect& area);

    /// The place below a window of the fixed form, or as far down as the screen allows.
    static CRect AreaBelow(const CWnd& owner);

    /// The last place of the window on the screen, also when it is gone.
    const CRect& LastPlace() const { return m_lastPlace; }

    /// Reads the protocol's files in force: derived states, the buttons' actions and the layout.
    /// They stay in force until the end of this object. All states are broadcast then, for the
    /// lamps.
    void Reload();

    /// A locked panel, as it is at first, lets no button be moved.
    void SetLocked(bool locked) { m_isLocked = locked; }
    bool IsLocked() const { return m_isLocked; }

    /// Removes the user's layout and goes back to the one that came with the protocol.
    void Reset();

    const std::vector<PanelButton>& Buttons() const { return m_buttons; }
    const PanelLayout& Layout() const { return m_layout; }

    /// The button of that name; null when none stands on the panel.
    const PanelButton* Find(const std::wstring& name) const;
    /// Draws the panel in pixels of its client area.
    void Draw(CDC& dc) const;

    bool IsLit(const PanelButton& button) const { return m_lamps->IsLit(*button.action); }

protected:
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnSize(UINT type, int width, int height);
    void OnMove(int x, int y);
    void OnLButtonDown(UINT flags, CPoint point);
    void OnLButtonUp(UINT flags, CPoint point);
    void OnMouseMove(UINT flags, CPoint point);
    LRESULT OnMouseLeave(WPARAM wParam, LPARAM lParam);
    LRESULT OnContextMenu(WPARAM window, LPARAM place);
    void OnCaptureChanged(CWnd* next);
    void OnClose() { m_listener.close(); }
    LRESULT OnMinMaxInfo(WPARAM wParam, LPARAM info);
    LRESULT OnMouseActivate(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    // A button that the mouse holds down.
    struct Press
    {
        std::size_t button;
        CPoint at;
        CPoint now;
        bool isDrag = false;
    };

    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    CSize Client() const;
    int TextSize(CSize client) const;
    void Arrange();
    void Repaint();
    PanelButtonLook LookOf(const PanelButton& button) const;
    void ShowTip(CPoint point);
    std::optional<std::size_t> ButtonAt(CPoint point) const;
    void Push(std::size_t button, CPoint at);
    void ToggleCheck(std::size_t button);
    void Drop(const Press& press);
    void SaveLayout();

    Listener m_listener;
    PanelLayout m_layout;
    std::vector<PanelButton> m_buttons; // the layout's buttons that the repository knows
    std::unique_ptr<Lamps> m_lamps;
    std::optional<Press> m_press;
    HoverTip m_tip;
    bool m_isLocked = true;
    CRect m_lastPlace{};
    std::wstring m_pushedOnce; // the button whose next push is a second one
};

} // namespace exam
