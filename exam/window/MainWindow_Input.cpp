// The keyboard, the menus and the mouse.
#include "window/MainWindow.h"

#include "screen/Timeline.h"
#include "window/MenuLook.h"
#include "window/Menus.h"

#include <Utils_Statics/MouseCapture.h>

#include <cmath>

namespace exam {

namespace {

// The key that means the same as one of the number pad.
UINT WithoutNumberPad(UINT key)
{
    if (key == VK_ADD) return VK_OEM_PLUS;
    if (key == VK_SUBTRACT) return VK_OEM_MINUS;
    if (key >= VK_NUMPAD0 && key <= VK_NUMPAD9) return key - VK_NUMPAD0 + '0';
    return key;
}

bool IsHeld(int key)
{
    return GetKeyState(key) < 0;
}

} // namespace

CPoint MainWindow::OnScreen(CPoint point) const
{
    ClientToScreen(&point);
    return point;
}

void MainWindow::OnKeyDown(UINT key, UINT, UINT flags)
{
    m_commands.Press({WithoutNumberPad(key), IsHeld(VK_CONTROL),
                      IsHeld(VK_SHIFT) || IsHeld(VK_MENU) || IsHeld(VK_LWIN) || IsHeld(VK_RWIN),
                      (flags & KF_REPEAT) != 0});
}

BOOL MainWindow::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (const std::wstring recent = RecentFileOfItem(LOWORD(wParam));
        lParam == 0 && !recent.empty()) {
        m_exam.OpenImage(recent);
        return TRUE;
    }
    const Command* const command = lParam == 0 ? CommandOfItem(LOWORD(wParam)) : nullptr;
    if (!command) return CWnd::OnCommand(wParam, lParam);
    m_commands.CarryOut(*command);
    return TRUE;
}

LRESULT MainWindow::OnInitMenuPopup(WPARAM menu, LPARAM)
{
    ShowStates(reinterpret_cast<HMENU>(menu), m_state);
    return 0;
}

LRESULT MainWindow::OnFrameChange(WPARAM, LPARAM)
{
    const LRESULT result = Default();
    DrawMenuBarRest(GetSafeHwnd());
    return result;
}

LRESULT MainWindow::OnMeasureItem(WPARAM, LPARAM item)
{
    MeasureMenuItem(*reinterpret_cast<MEASUREITEMSTRUCT*>(item), m_dpi);
    return TRUE;
}

LRESULT MainWindow::OnDrawItem(WPARAM, LPARAM item)
{
    DrawMenuItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(item), m_dpi);
    return TRUE;
}

LRESULT MainWindow::OnMenuChar(WPARAM letter, LPARAM menu)
{
    const auto place = FindItemByLetter(reinterpret_cast<HMENU>(menu), LOWORD(letter));
    return place ? MAKELRESULT(*place, MNC_EXECUTE) : MAKELRESULT(0, MNC_IGNORE);
}

// The place is that of the pointer on the screen, or -1 for the key of context menus.
LRESULT MainWindow::OnContextMenu(WPARAM over, LPARAM place)
{
    const CRect& image = m_state.Layout().image;
    CPoint point(place);
    if (place == -1) point = OnScreen(image.CenterPoint());
    CPoint inClient = point;
    ScreenToClient(&inClient);
    const bool isOnImage =
        image.PtInRect(inClient) && reinterpret_cast<HWND>(over) != m_panel.GetSafeHwnd();
    const MenuHandle menu =
        isOnImage ? MakeContextMenu({Menu::measure, Menu::image}) : MakeContextMenu({Menu::view});
    TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, 0, GetSafeHwnd(),
                   nullptr);
    return 0;
}

void MainWindow::ShowRecent()
{
    const MenuHandle menu = MakeRecentMenu();
    const CPoint corner = OnScreen(m_state.Layout().image.TopLeft());
    TrackPopupMenu(menu.get(), TPM_LEFTALIGN, corner.x, corner.y, 0, GetSafeHwnd(), nullptr);
}

void MainWindow::OnLButtonDown(UINT flags, CPoint point)
{
    if (m_state.Layout().timeline.PtInRect(point)) return Take(Drag::timeline, point);
    if (m_state.Layout().status.PtInRect(point)) return m_exam.FollowStatus();
    if (flags & MK_CONTROL) return Take(Drag::levels, point);
    m_state.Press(flags, point);
    // A press that no tool takes moves the image.
    if (!MouseCapture::IsLocked() && m_state.View().Zoom() != 1) Take(Drag::image, point);
}

void MainWindow::OnLButtonUp(UINT flags, CPoint point)
{
    if (m_drag != Drag::nothing) ReleaseCapture();
    MouseCapture::HandleMouse(WM_LBUTTONUP, flags, OnScreen(point));
}

void MainWindow::OnMouseMove(UINT flags, CPoint point)
{
    if (m_drag != Drag::nothing) return DragTo(point);
    MouseCapture::HandleMouse(WM_MOUSEMOVE, flags, OnScreen(point));
}

void MainWindow::OnMButtonDown(UINT, CPoint point)
{
    Take(Drag::image, point);
}

void MainWindow::OnMButtonUp(UINT, CPoint)
{
    if (m_drag == Drag::image) ReleaseCapture();
}

// The wheel's position is one of the screen.
BOOL MainWindow::OnMouseWheel(UINT, short delta, CPoint point)
{
    constexpr double zoomOfNotch = 1.25;
    ScreenToClient(&point);
    const CRect& image = m_state.Layout().image;
    if (!m_state.HasSource() || !image.PtInRect(point)) return FALSE;
    m_state.ZoomAt(std::pow(zoomOfNotch, 1.0 * delta / WHEEL_DELTA),
                   CPoint(point - image.TopLeft()));
    return TRUE;
}

void MainWindow::OnCaptureChanged(CWnd*)
{
    m_drag = Drag::nothing;
}

void MainWindow::Take(Drag drag, CPoint point)
{
    if (!m_state.HasSource()) return;
    if (drag != Drag::timeline && !m_state.Layout().image.PtInRect(point)) return;
    m_drag = drag;
    m_dragged = point;
    SetCapture();
    if (drag == Drag::timeline) Seek(point);
}

void MainWindow::DragTo(CPoint point)
{
    if (m_drag == Drag::timeline) return Seek(point);
    const CSize way = point - m_dragged;
    if (m_drag == Drag::levels)
        m_state.MoveGreyWindow(way.cy, way.cx);
    else
        m_state.Pan(way);
    m_dragged = point;
}

void MainWindow::Seek(CPoint point)
{
    m_state.SetFrozen(true);
    m_state.ShowPosition(PlaceAt(m_state, point.x) + 1);
}

} // namespace exam
