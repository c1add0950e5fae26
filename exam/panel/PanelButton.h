#pragma once

#include <Utils_Statics/ButtonAction.h>

#include <afxwin.h>

#include <cstddef>

namespace exam {

/// A button that stands on the control panel.
struct PanelButton
{
    std::size_t placement;      ///< its index in the layout
    const ButtonAction* action; ///< the repository's record of it
    CString label;              ///< in the current language
    CRect area;                 ///< in pixels of the panel's client area

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

} // namespace exam
