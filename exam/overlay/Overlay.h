#pragma once

#include <Utils_Statics/CBufferedWnd.h>

namespace exam {

/// A small window over the image. Its shape may be anything: what its mask leaves out shows the
/// image, which goes on below it. The mouse goes through it, unless a derived class says otherwise.
class Overlay : public CBufferedWnd
{
public:
    /// Creates the window over an image whose area is `image`, in client coordinates of `parent`.
    /// False when the platform refuses.
    bool Open(CWnd& parent, const CRect& image);

    void PlaceOver(const CRect& image) override;
    void Refresh() override;

    /// Draws what the window shows into a picture of its parent's client area.
    void DrawOnto(CDC& picture);

protected:
    /// Where the window is over an image.
    virtual CRect AreaOver(const CRect& image) const = 0;
    /// Whether the window is a control of its own.
    virtual bool TakesMouse() const { return false; }

    LRESULT OnNcHitTest(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    CRect Client() const;
};

} // namespace exam
