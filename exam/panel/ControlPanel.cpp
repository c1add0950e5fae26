#include "panel/ControlPanel.h"

#include "base/DarkControls.h"
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
#include <utility>

namespace exam {

namespace {

constexpr CSize leastFloating(560, 140); // pixels at 96 dpi

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
    DarkenFrame(GetSafeHwnd());
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

LRESULT ControlPanel::OnMinMaxInfo(WPARAM, LPARAM info)
{
    const int dpi = DpiOf(GetSafeHwnd());
    reinterpret_cast<MINMAXINFO*>(info)->ptMinTrackSize = {
        MulDiv(leastFloating.cx, dpi, USER_DEFAULT_SCREEN_DPI),
        MulDiv(leastFloating.cy, dpi, USER_DEFAULT_SCREEN_DPI)};
    return 0;
}

} // namespace exam
