#pragma once

#include <atltypes.h>

namespace exam {

/// The fixed layout of the main window's client area, in pixels.
struct ScreenLayout
{
    static constexpr int width = 1024;
    static constexpr int height = 768;
    static constexpr int headerHeight = 44;
    static constexpr int statusHeight = 32;
    static constexpr int statusRowWidth = 460;
    static constexpr int panelWidth = 248;
    static constexpr int rulerWidth = 64;
    static constexpr int stripHeight = 200;
    static constexpr int outlineHeight = 150;

    static CRect Header() { return {0, 0, width - statusRowWidth, headerHeight}; }
    /// The status row's own window, to the right of the header.
    static CRect StatusRow() { return {width - statusRowWidth, 0, width, headerHeight}; }
    static CRect ImageArea()
    {
        return {0, headerHeight, width - panelWidth, height - statusHeight};
    }
    static CRect Panel()
    {
        return {width - panelWidth, headerHeight, width, height - statusHeight};
    }
    static CRect Status() { return {0, height - statusHeight, width, height}; }

    /// The part of ImageArea() that shows the frame. The depth scale stands to the right of it.
    static CRect Image()
    {
        CRect rect = ImageArea();
        rect.right -= rulerWidth;
        return rect;
    }

    /// The spectral strip covers the lower end of ImageArea() while it is shown.
    static CRect Strip()
    {
        CRect rect = ImageArea();
        rect.top = rect.bottom - stripHeight;
        return rect;
    }

    /// The mark stands in the upper left corner of ImageArea(), where a sector leaves room.
    static CRect RecordingMark() { return {16, headerHeight + 12, 176, headerHeight + 36}; }

    /// The turned outline takes the lower end of the panel.
    static CRect Outline()
    {
        CRect rect = Panel();
        rect.top = rect.bottom - outlineHeight;
        rect.DeflateRect(24, 16);
        return rect;
    }
};

} // namespace exam
