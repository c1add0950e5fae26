#pragma once

#include "overlay/Overlay.h"
#include "overlay/ToolBar.h"
#include "state/ExamState.h"

#include <array>
#include <vector>

namespace exam {

/// A round dial that shows how far the loop of frames has gone.
class LoopDial : public Overlay
{
public:
    explicit LoopDial(const ExamState& state) : m_state(state) {}

    void Draw(CDC* dc) override;
    void DrawMask(CDC* dc) override;

private:
    const ExamState& m_state;
};

/// A rectangle with the depth that is shown.
class DepthBadge : public Overlay
{
public:
    explicit DepthBadge(const ExamState& state) : m_state(state) {}

    void Draw(CDC* dc) override;
    int IsRectMask() override { return 1; }

private:
    const ExamState& m_state;
};

/// All windows over the image.
class Overlays
{
public:
    /// The state outlives this object. The buttons are those of the tool bar.
    Overlays(const ExamState& state, std::vector<ToolButton> buttons);

    /// Shows them in their places of the state's layout, in the client area of `parent`. False when
    /// the platform refuses.
    bool Open(CWnd& parent);

    /// Moves them to their places after the layout has changed.
    void Place();

    /// Repaints all of them.
    void Refresh();

    /// Draw the windows onto a picture of the parent's client area: all of them, so that the
    /// parent's painting never covers one for a moment; or those that belong into recordings.
    void DrawAll(CDC& picture);
    void DrawRecorded(CDC& picture);

    LoopDial& Dial() { return m_dial; }
    ToolBar& Tools() { return m_tools; }

private:
    std::array<Overlay*, 3> All() { return {&m_dial, &m_badge, &m_tools}; }
    std::array<CRect, 3> Rooms() const;

    const ExamState& m_state;
    LoopDial m_dial;
    DepthBadge m_badge;
    ToolBar m_tools;
};

} // namespace exam
