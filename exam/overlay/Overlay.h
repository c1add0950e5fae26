#pragma once

#include <Utils_Statics/CBufferedWnd.h>

namespace exam {

/// A small window over a part of the main window. Its shape may be anything: the main window paints
/// below it too, and shows where the mask leaves pixels out. The mouse goes through it, unless a
/// derived class says otherwise.
class Overlay : public CBufferedWnd
{
public:
    /// Creates the window in a room, in client coordinates of `parent`. False when the platform
    /// refuses.
    bool Open(CWnd& parent, const CRect& room);

    /// Moves the window into another room.
    void PlaceOver(const CRect& room) override;
    void Refresh() override;

    /// Draws the window's content into a picture of its parent's client area.
    void DrawOnto(CDC& picture);

protected:
    /// The part of a room that the window takes.
    virtual CRect AreaIn(const CRect& room) const { return room; }
    /// True when the window is a control of its own.
    virtual bool TakesMouse() const { return false; }

    LRESULT OnNcHitTest(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    CRect Client() const;
};

} // namespace exam
