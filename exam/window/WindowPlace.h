#pragma once

#include <atltypes.h>

#include <windows.h>

namespace exam {

/// The place of a window on the screen, as the profile keeps it from one start to the next.
struct WindowPlace
{
    CRect area{}; ///< when it is neither maximised nor minimised
    bool isMaximised = false;
};

/// The window must not become smaller than this, in pixels.
constexpr CSize leastWindow(800, 600);

/// The place that the profile keeps. Without one, or when it is not on a screen any more, the
/// window takes most of the working area.
WindowPlace ReadWindowPlace();

/// Keeps the place of a window in the profile.
void WriteWindowPlace(HWND window);

/// The control panel as the profile keeps it.
struct PanelPlace
{
    bool isShown = true;
    bool isFloating = false;
    CRect area{}; ///< when it floats; empty: it never did, or would be off the screen
};

PanelPlace ReadPanelPlace();
void WritePanelPlace(const PanelPlace& place);

} // namespace exam
