#pragma once

#include <Utils_Statics/CBufferedWnd.h>

namespace exam {

/// A small window over the image. Its shape may be anything: the image is painted below it too, and
/// shows where the mask leaves pixels out. The mouse goes through it, unless a derived class says
/// otherwise.
class Overlay : public CBufferedWnd
{
public:
    /// Creates the window over an image whose area is `image`, in client coordinates of `parent`.
    /// False when the platform refuses.
    bool Open(CWnd& parent, const CRect& image);

    void PlaceOver(const CRect& image) override;
    void Refresh() override;

    /// Draws the window's content into a picture of its parent's client area.
    void DrawOnto(CDC& picture);

protected:
    /// The window's place over an image.
    virtual CRect AreaOver(const CRect& image) const = 0;
    /// True when the window is a control of its own.
    virtual bool TakesMouse() const { return false; }

    LRESULT OnNcHitTest(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    CRect Client() const;
};

} // namespace exam
