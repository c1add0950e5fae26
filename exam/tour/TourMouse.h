#pragma once

#include "tour/Tour.h"

namespace exam {

/// Works the main window with the mouse. In trackball style the tools move the cursor, which brings
/// mouse messages of its own. Positions are pixels of the image.
class Mouse
{
public:
    explicit Mouse(TourContext& context) : m_context(context) {}

    void Press(CPoint at) { Post(WM_LBUTTONDOWN, MK_LBUTTON, at); }
    void Drag(CPoint to) { Post(WM_MOUSEMOVE, MK_LBUTTON, to); }
    void Move(CPoint to) { Post(WM_MOUSEMOVE, 0, to); }
    void Release(CPoint at) { Post(WM_LBUTTONUP, 0, at); }
    void Key(UINT key) { m_context.Post(m_context.window.GetSafeHwnd(), WM_KEYDOWN, key, 0); }

    void DragPoint(CPoint from, CPoint to)
    {
        Press(from);
        Drag(to);
        Release(to);
    }

private:
    void Post(UINT message, WPARAM flags, CPoint imagePoint)
    {
        const CPoint at = imagePoint + m_context.state.Layout().image.TopLeft();
        m_context.Post(m_context.window.GetSafeHwnd(), message, flags, MAKELPARAM(at.x, at.y));
    }

    TourContext& m_context;
};

} // namespace exam
