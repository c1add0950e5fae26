#pragma once

#include <atltypes.h>

namespace exam {

/// The places of the main window's parts, in pixels of its client area.
struct ScreenLayout
{
    CSize client{};   ///< size of the client area
    double scale = 1; ///< the pixels that stand for one pixel at 96 dpi
    CRect header{};
    CRect statusRow{};     ///< the status row's own window, to the right of the header
    CRect tools{};         ///< room of the tool bar
    CRect dial{};          ///< the place that shows how far the loop of frames has gone
    CRect badge{};         ///< the shown depth
    CRect imageArea{};     ///< the image, with the depth scale to the right of it or below it
    CRect image{};         ///< the part of imageArea that shows the frame
    CRect strip{};         ///< the spectral strip, while it is shown
    CRect panel{};         ///< the facts beside the image
    CRect timeline{};      ///< the frames of the recording as a line; empty: none
    CRect recordingMark{}; ///< the sign that a recording runs
    CRect controlPanel{};  ///< the docked control panel; empty: it is not docked
    CRect status{};        ///< the status line
    CRect movie{};         ///< the part that movies show; it begins at the corner

    int Scaled(int pixels) const { return static_cast<int>(pixels * scale + 0.5); }

    bool operator==(const ScreenLayout& other) const = default;
};

/// The fixed form of a console: 1024 x 768 pixels. The strip covers the lower end of the image
/// while it is shown, and tool bar, dial, badge and recording mark stand in corners of the image.
/// `isOnSide`: the depth scale lies below the image.
ScreenLayout ConsoleLayout(bool isOnSide = false);

/// The things that the layout of a window follows from.
struct WindowRoom
{
    CSize client{};
    int dpi = 96;
    bool hasControlPanel = true; ///< the control panel is docked
    bool hasStrip = false;       ///< the strip is shown
    bool isOnSide = false;       ///< the depth scale lies below the image
};

/// The layout of a window whose size the user chooses. No part overlaps another one, but those
/// that are parts of each other. Lengths follow the dpi as far as the window has room.
ScreenLayout WindowLayout(const WindowRoom& room);

} // namespace exam
