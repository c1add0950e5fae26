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

    /// What a push at a pixel of the area does. `isSecond`: the button was pushed last before, and
    /// that was its first push; without an action of its own a second push is a first one.
    const ActionInfo& ActionAt(CPoint pixel, bool isSecond) const;

    /// Whether a press at a pixel of the area turns a rotary control.
    bool IsTurnedAt(CPoint pixel) const;

    /// The ends of a rotary control.
    CRect DecrementArea() const;
    CRect IncrementArea() const;
};

/// Whether the vocabulary knows the action.
bool IsAction(const ActionInfo& action);

/// How a button looks at the moment.
struct PanelButtonLook
{
    bool lit = false;
    bool pressed = false;
    bool checked = false;
    CString value; ///< empty: none
};

void DrawPanelButton(CDC& dc, const PanelButton& button, const PanelButtonLook& look);

} // namespace exam
