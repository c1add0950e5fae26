#pragma once

#include "image/ImageView.h"
#include "app/Session.h"

#include <afxwin.h>

namespace exam
{

// The fixed layout of the main window's client area, in pixels.
struct ScreenLayout
{
    static constexpr int width = 1024;
    static constexpr int height = 768;
    static constexpr int headerHeight = 44;
    static constexpr int statusHeight = 32;
    static constexpr int panelWidth = 248;
    static constexpr int rulerWidth = 64;

    static CRect header() { return {0, 0, width, headerHeight}; }
    static CRect image() { return {0, headerHeight, width - panelWidth, height - statusHeight}; }
    static CRect panel() { return {width - panelWidth, headerHeight, width, height - statusHeight}; }
    static CRect status() { return {0, height - statusHeight, width, height}; }

    // The part of image() that the frame is fitted into; the depth scale stands to the right of it.
    static CSize imageSize() { return {image().Width() - rulerWidth, image().Height()}; }
};

// Paints the whole client area: header, image with its scale, facts, status line.
void DrawScreen(CDC& dc, const Session& session, const ImageView& view, const CString& status);

} // namespace exam
