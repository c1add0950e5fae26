#include "panel/ControlPanel.h"

#include "base/Dpi.h"
#include "base/Painting.h"
#include "base/Palette.h"
#include "base/StateChanges.h"
#include "panel/PanelLayout.h"

#include <base/Encoding.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/DerivedState.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace exam {

namespace {

// A pointer that moves less than this while a button is down still clicks.
constexpr int dragThreshold = 8;

constexpr CSize leastFloating(560, 140); // pixels at 96 dpi

bool IsFar(CPoint a, CPoint b)
{
    return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)) > dragThreshold;
}

DWORD StyleOf(PanelForm form)
{
    switch (form) {
    case PanelForm::docked: return WS_CHILD;
    case PanelForm::floating: return WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME;
    default: return WS_POPUP;
    }
}

// A button's text in the current language: the text of the key exam.button.NAME, or the name
// itself.
CString LabelOf(const std::wstring& name)
{
    const std::string key = "exam.button." + base::Utf8FromWide(name);
    const CString label = GetStr(key.c_str());
    const bool isTranslated = !label.IsEmpty() && label != CString(key.c_str());
    return isTranslated ? label : CString(name.c_str());
}

} // namespace

BEGIN_MESSAGE_MAP(ControlPanel, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_SIZE()
    ON_WM_MOVE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_MESSAGE(WM_MOUSELEAVE, OnMouseLeave)
    ON_MESSAGE(WM_CONTEXTMENU, OnContextMenu)
    ON_WM_CAPTURECHANGED()
    ON_WM_CLOSE()
    ON_MESSAGE(WM_GETMINMAXINFO, OnMinMaxInfo)
    ON_MESSAGE(WM_MOUSEACTIVATE, OnMouseActivate)
END_MESSAGE_MAP()

ControlPanel::ControlPanel(Listener listener)
    : m_listener(std::move(listener)), m_lamps(std::make_unique<Lamps>([this] { Repaint(); }))
{
}

ControlPanel::~ControlPanel()
{
    DestroyWindow(); // it shows objects that end next
    m_buttons.clear();
    DerivedState::DestroyAll();
    ActionRepository::DestroyInstance();
}

CRect ControlPanel::AreaBelow(const CWnd& owner)
{
    CRect beside;
    owner.GetWindowRect(&beside);
    const int lowest = GetSystemMetrics(SM_CYSCREEN) - PanelGrid::consoleSize.cy;
    return {CPoint(beside.left, std::min<int>(beside.bottom, lowest)), PanelGrid::consoleSize};
}

bool ControlPanel::Open(CWnd& owner, PanelForm form, const CRect& area)
{
    if (GetSafeHwnd()) DestroyWindow();
    m_press.reset();
    const CString windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_ARROW));
    const DWORD extended = form == PanelForm::docked ? 0 : WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW;
    if (!CreateEx(extended, windowClass, GetStr("exam.panel.title"), StyleOf(form), area, &owner,
                  0))
        return false;
    ShowWindow(SW_SHOWNOACTIVATE);
    return true;
}

// The text follows the screen's resolution as far as two lines of it find room on a button.
int ControlPanel::TextSize(CSize client) const
{
    constexpr int linesOfThreeRows = 10; // with the space round them
    const int most = client.cy / linesOfThreeRows;
    const int dpi = GetSafeHwnd() ? DpiOf(GetSafeHwnd()) : USER_DEFAULT_SCREEN_DPI;
    return std::min(most, MulDiv(ScopedFont::textSize - 2, dpi, USER_DEFAULT_SCREEN_DPI));
}

CSize ControlPanel::Client() const
{
    if (!GetSafeHwnd()) return PanelGrid::consoleSize;
    CRect client;
    GetClientRect(&client);
    return client.Size();
}

void ControlPanel::Reload()
{
    DerivedState::LoadAll();
    m_press.reset();
    m_pushedOnce.clear();
    m_buttons.clear(); // they point into the repository
    ActionRepository::DestroyInstance();
    m_layout = PanelLayout();
    m_layout.Load(PanelFileInForce());
    Arrange();
    m_lamps = std::make_unique<Lamps>([this] { Repaint(); });
    for (const PanelButton& button : m_buttons)
        m_lamps->Follow(*button.action);
    m_listener.broadcast();
    if (const std::wstring file = UnreadablePanelFile(); !file.empty())
        m_listener.tell(GetStr("exam.panel.unreadable", file.c_str()));
}

void ControlPanel::Reset()
{
    DeleteFileW(PanelSaveFile().c_str());
    Reload();
}

// Works out which buttons stand where. Everything that depends on the places of buttons, such as
// tips, is set here.
void ControlPanel::Arrange()
{
    m_buttons.clear();
    const CSize client = Client();
    const std::vector<ButtonPlacement>& placements = m_layout.Placements();
    for (std::size_t i = 0; i < placements.size(); ++i) {
        const ButtonPlacement& placement = placements[i];
        const ButtonAction* const action =
            ActionRepository::GetInstance()->GetAction(placement.name.c_str());
        if (!action || !PanelGrid::Holds(placement.grid)) continue;
        m_buttons.push_back({i, action, LabelOf(placement.name),
                             PanelGrid::AreaOf(placement.grid, client), PanelGrid::ScaleOf(client),
                             TextSize(client)});
    }
    Repaint();
}

const PanelButton* ControlPanel::Find(const std::wstring& name) const
{
    const auto found =
        std::find_if(m_buttons.begin(), m_buttons.end(),
                     [&](const PanelButton& each) { return each.action->name == name; });
    return found == m_buttons.end() ? nullptr : &*found;
}

void ControlPanel::OnStateChange(StateChangeType type, unsigned int, long)
{
    if (type != stateLanguageChanged || m_press) return;
    if (GetSafeHwnd()) SetWindowText(GetStr("exam.panel.title"));
    Arrange();
}

void ControlPanel::Repaint()
{
    if (GetSafeHwnd()) Invalidate(FALSE);
}

BOOL ControlPanel::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything
}

void ControlPanel::OnPaint()
{
    BufferedPaint paint(*this);
    Draw(paint.Context());
}

void ControlPanel::OnSize(UINT, int, int)
{
    m_press.reset();
    GetWindowRect(&m_lastPlace);
    Arrange();
}

void ControlPanel::OnMove(int, int)
{
    GetWindowRect(&m_lastPlace);
}

void ControlPanel::Draw(CDC& dc) const
{
    dc.FillSolidRect(0, 0, Client().cx, Client().cy, palette::panel);
    for (const PanelButton& button : m_buttons)
        DrawPanelButton(dc, button, LookOf(button));
    if (!m_press || !m_press->isDrag) return;
    PanelButton dragged = m_buttons[m_press->button];
    dragged.area.OffsetRect(m_press->now - m_press->at);
    DrawPanelButton(dc, dragged, LookOf(dragged));
}

PanelButtonLook ControlPanel::LookOf(const PanelButton& button) const
{
    PanelButtonLook look;
    look.lit = !button.IsRotary() && m_lamps->IsLit(*button.action);
    look.pressed = m_press && m_buttons[m_press->button].action == button.action;
    look.checked = m_layout.Placements()[button.placement].check;
    if (const auto value = m_lamps->ValueOf(*button.action); value && button.IsRotary())
        look.value.Format(L"%d", *value);
    return look;
}

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

LRESULT ControlPanel::OnMinMaxInfo(WPARAM, LPARAM info)
{
    const int dpi = DpiOf(GetSafeHwnd());
    reinterpret_cast<MINMAXINFO*>(info)->ptMinTrackSize = {
        MulDiv(leastFloating.cx, dpi, USER_DEFAULT_SCREEN_DPI),
        MulDiv(leastFloating.cy, dpi, USER_DEFAULT_SCREEN_DPI)};
    return 0;
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
