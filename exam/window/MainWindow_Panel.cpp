// The control panel: docked, floating or hidden.
#include "window/MainWindow.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

bool MainWindow::OpenPanel()
{
    m_panel.Reload();
    TellPanel();
    if (!m_panelPlace.isShown) return true;
    return m_panel.Open(*this, FormOfPanel(), AreaOfPanel());
}

PanelForm MainWindow::FormOfPanel() const
{
    if (m_form == WindowForm::console) return PanelForm::below;
    return m_panelPlace.isFloating ? PanelForm::floating : PanelForm::docked;
}

CRect MainWindow::AreaOfPanel() const
{
    switch (FormOfPanel()) {
    case PanelForm::below: return ControlPanel::AreaBelow(*this);
    case PanelForm::docked: return m_state.Layout().controlPanel;
    default: break;
    }
    if (!m_panelPlace.area.IsRectEmpty()) return m_panelPlace.area;
    // At first it floats in the lower part of the window.
    CRect area;
    GetWindowRect(&area);
    const int height = m_state.Layout().Scaled(PanelGrid::consoleSize.cy);
    area.DeflateRect(area.Width() / 10, 0);
    area.top = area.bottom - 2 * height;
    area.bottom = area.top + height;
    return area;
}

void MainWindow::KeepPanelPlace()
{
    if (FormOfPanel() == PanelForm::floating && m_panelPlace.isShown)
        m_panelPlace.area = m_panel.LastPlace();
}

void MainWindow::ChangePanel(bool isShown, bool isFloating)
{
    KeepPanelPlace();
    m_panelPlace.isShown = isShown;
    m_panelPlace.isFloating = isFloating;
    if (m_panel.GetSafeHwnd()) m_panel.DestroyWindow();
    TellPanel();
    Arrange();
    if (isShown) m_panel.Open(*this, FormOfPanel(), AreaOfPanel());
}

// Menus tick what is on.
void MainWindow::TellPanel()
{
    m_state.SetPanel({m_panelPlace.isShown, m_panelPlace.isFloating, m_panel.IsLocked()});
}

void MainWindow::TogglePanel()
{
    ChangePanel(!m_panelPlace.isShown, m_panelPlace.isFloating);
}

void MainWindow::FloatPanel()
{
    ChangePanel(true, !m_panelPlace.isFloating);
}

void MainWindow::TogglePanelLock()
{
    m_panel.SetLocked(!m_panel.IsLocked());
    TellPanel();
    m_state.SetStatus(GetStr(m_panel.IsLocked() ? "exam.panel.locked" : "exam.panel.unlocked"));
}

void MainWindow::ResetPanel()
{
    m_panel.Reset();
    m_panel.SetLocked(true);
    ChangePanel(true, false);
    m_state.SetStatus(GetStr("exam.panel.reset"));
}

} // namespace exam
