#pragma once

#include "overlay/DepthBadge.h"
#include "overlay/LoopDial.h"
#include "overlay/ToolBar.h"

#include <array>
#include <vector>

namespace exam {

/// All windows over the image.
class Overlays
{
public:
    /// Session and view outlive this object. The buttons are those of the tool bar.
    Overlays(const Session& session, const ImageView& view, std::vector<ToolButton> buttons);

    /// Shows them over an image whose area is `image`, in client coordinates of `parent`. False
    /// when the platform refuses.
    bool Open(CWnd& parent, const CRect& image);

    /// Repaints all of them.
    void Refresh();

    /// Draws the windows that belong into recordings onto a picture of the parent's client area.
    void DrawRecorded(CDC& picture);

    LoopDial& Dial() { return m_dial; }
    ToolBar& Tools() { return m_tools; }

private:
    std::array<Overlay*, 3> All() { return {&m_dial, &m_badge, &m_tools}; }

    LoopDial m_dial;
    DepthBadge m_badge;
    ToolBar m_tools;
};

} // namespace exam
