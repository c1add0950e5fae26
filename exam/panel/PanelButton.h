#pragma once

#include <pro_actions/IActionStateConsumer.h>
#include <Utils_Statics/ButtonAction.h>

#include <afxwin.h>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>

namespace exam {

/// A button that stands on the control panel.
struct PanelButton
{
    std::size_t placement;      ///< its index in the layout
    const ButtonAction* action; ///< the repository's record of it
    CString label;              ///< in the current language
    CRect area;                 ///< in pixels of the panel's client area
    double scale = 1;           ///< the size of what is drawn, compared to a console
    int textSize = 13;          ///< pixels

    /// A rotary control is turned by its left and right ends.
    bool IsRotary() const;

    /// The action of a push at a pixel of the area. `isSecond`: the push before was this button's
    /// first one. A button without an action for the second push takes it as a first one.
    const ActionInfo& ActionAt(CPoint pixel, bool isSecond) const;

    /// True when a press at a pixel of the area turns a rotary control.
    bool IsTurnedAt(CPoint pixel) const;

    /// The ends of a rotary control.
    CRect DecrementArea() const;
    CRect IncrementArea() const;

    int Scaled(int pixels) const { return static_cast<int>(pixels * scale + 0.5); }
};

/// True when the vocabulary knows the action.
bool IsAction(const ActionInfo& action);

/// The present look of a button.
struct PanelButtonLook
{
    bool lit = false;
    bool pressed = false;
    bool checked = false;
    CString value; ///< empty: none
};

void DrawPanelButton(CDC& dc, const PanelButton& button, const PanelButtonLook& look);

/// The last values of the action states that the panel's buttons show.
class Lamps : public IActionStateConsumer
{
public:
    /// `changed` is called after each value that differs from the one before.
    explicit Lamps(std::function<void()> changed);

    /// Listens to all states of a button from now on.
    void Follow(const ButtonAction& button);

    /// True when any state of the button is on.
    bool IsLit(const ButtonAction& button) const;

    /// The value of the button's first state; none before its first broadcast.
    std::optional<int> ValueOf(const ButtonAction& button) const;

    void ActionStateChanged(const ActionStateInfo& source, int value) override;
    void ActionNotification(ActionType type, int action, int param) override;

private:
    std::function<void()> m_changed;
    std::map<ActionStateInfo, int> m_values;
};

} // namespace exam
