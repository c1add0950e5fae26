// The control panel answers the pointer.
#include "panel/ControlPanel.h"

#include "panel/PanelLayout.h"

#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cstdlib>

namespace exam {

namespace {

// A pointer that moves less than this while a button is down still clicks.
constexpr int dragThreshold = 8;

bool IsFar(CPoint a, CPoint b)
{
    return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)) > dragThreshold;
}

} // namespace

std::optional<std::size_t> ControlPanel::ButtonAt(CPoint point) const
{
    // When buttons overlap, the one on top counts.
    for (std::size_t i = m_buttons.size(); i-- > 0;)
        if (m_buttons[i].area.PtInRect(point)) return i;
    return std::nullopt;
}

void ControlPanel::OnLButtonDown(UINT flags, CPoint point)
{
    m_tip.Press();
    const auto button = ButtonAt(point);
    if (!button) return;
    if (flags & MK_CONTROL) return ToggleCheck(*button);
    m_press = Press{*button, point, point};
    SetCapture();
    Repaint();
}

void ControlPanel::OnMouseMove(UINT, CPoint point)
{
    if (!m_press) return ShowTip(point);
    m_press->now = point;
    if (!m_isLocked && IsFar(m_press->at, point)) m_press->isDrag = true;
    if (m_press->isDrag) Repaint();
}

LRESULT ControlPanel::OnMouseLeave(WPARAM, LPARAM)
{
    m_tip.Leave();
    return 0;
}

void ControlPanel::ShowTip(CPoint point)
{
    const std::optional<std::size_t> index = ButtonAt(point);
    if (!index) return m_tip.Leave();
    const PanelButton& button = m_buttons[*index];
    m_tip.Follow(*this, button.area, button.label,
                 GetStr(button.IsRotary() ? "exam.tip.rotary" : "exam.tip.button"));
}

void ControlPanel::OnLButtonUp(UINT, CPoint point)
{
    if (!m_press) return;
    Press press = *m_press;
    m_press.reset();
    ReleaseCapture();
    Repaint();
    press.now = point;
    if (press.isDrag || (!m_isLocked && IsFar(press.at, point)))
        Drop(press);
    else if (m_buttons[press.button].area.PtInRect(point))
        Push(press.button, press.at);
}

// Another window has taken the mouse away: nothing was pushed or moved.
void ControlPanel::OnCaptureChanged(CWnd*)
{
    m_press.reset();
    Repaint();
}

// The owner has the menus.
LRESULT ControlPanel::OnContextMenu(WPARAM window, LPARAM place)
{
    m_tip.Press();
    return ::SendMessage(::GetParent(GetSafeHwnd()), WM_CONTEXTMENU, window, place);
}

void ControlPanel::ToggleCheck(std::size_t button)
{
    m_layout.ToggleCheck(m_buttons[button].placement);
    SaveLayout();
    Repaint();
}

// Keys still go to the main window.
LRESULT ControlPanel::OnMouseActivate(WPARAM, LPARAM)
{
    return MA_NOACTIVATE;
}

void ControlPanel::Push(std::size_t button, CPoint at)
{
    const PanelButton& pushed = m_buttons[button];
    const bool isSecond = m_pushedOnce == pushed.action->name;
    // A copy: the action may reload the panel.
    const ActionInfo action = pushed.ActionAt(at, isSecond);
    if (!pushed.IsTurnedAt(at)) m_pushedOnce = isSecond ? L"" : pushed.action->name;
    if (IsAction(action)) m_listener.carryOut(action);
}

void ControlPanel::Drop(const Press& press)
{
    const PanelButton& button = m_buttons[press.button];
    // The middle of the button's first cell decides.
    GridInfo first = m_layout.Placements()[button.placement].grid;
    first.span = 1;
    first.height = 1;
    const CPoint middle = PanelGrid::AreaOf(first, Client()).CenterPoint();
    const auto cell = PanelGrid::CellAt(middle + (press.now - press.at), Client());
    if (!cell || !m_layout.Move(button.placement, cell->row, cell->column)) return;
    Arrange();
    SaveLayout();
}

void ControlPanel::SaveLayout()
{
    const std::wstring path = PanelSaveFile();
    if (!m_layout.Save(path)) m_listener.tell(GetStr("exam.panel.notsaved", path.c_str()));
}

} // namespace exam
