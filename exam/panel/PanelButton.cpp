#include "panel/PanelButton.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>

#include <algorithm>
#include <utility>

namespace exam {

namespace {

constexpr int endWidth = 22; // width of each end of a rotary control
constexpr int lampSize = 6;
constexpr int textMargin = 4;
constexpr int leastTextSize = 9; // pixels, however little room there is
constexpr UINT oneLine = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;

void DrawBody(CDC& dc, const PanelButton& button, const PanelButtonLook& look)
{
    CBrush brush(look.pressed ? palette::line : palette::header);
    CPen pen(PS_SOLID, 1, look.lit ? palette::accent : palette::line);
    const base::Selection fill(dc.GetSafeHdc(), brush.GetSafeHandle());
    const base::Selection edge(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.Rectangle(&button.area);
}

void DrawLamp(CDC& dc, const PanelButton& button, bool lit)
{
    if (button.action->states.empty() || button.IsRotary()) return;
    const CSize size(button.Scaled(4 * lampSize), button.Scaled(lampSize - 1));
    const CPoint at(button.area.CenterPoint().x - size.cx / 2,
                    button.area.top + button.Scaled(lampSize));
    const CRect lamp(at, size);
    dc.FillSolidRect(&lamp, lit ? palette::accent : palette::panel);
}

// Draws a line of text, as large as the button says, or smaller if it would not fit.
void DrawFitted(CDC& dc, const PanelButton& button, const CString& text, CRect box, UINT format)
{
    for (int size = std::max(button.textSize, leastTextSize);; --size) {
        const ScopedFont font(dc, size, FW_NORMAL);
        if (size > leastTextSize && dc.GetTextExtent(text).cx > box.Width()) continue;
        dc.DrawText(text, &box, format | oneLine);
        return;
    }
}

void DrawEnds(CDC& dc, const PanelButton& button)
{
    if (!button.IsRotary()) return;
    dc.SetTextColor(palette::scale);
    const CRect minus = button.DecrementArea();
    const CRect plus = button.IncrementArea();
    DrawFitted(dc, button, L"\u2212", minus, DT_CENTER | DT_VCENTER);
    DrawFitted(dc, button, L"+", plus, DT_CENTER | DT_VCENTER);
}

// A tick in the upper right corner.
void DrawCheck(CDC& dc, const CRect& area)
{
    CPen pen(PS_SOLID, 2, palette::text);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    const CPoint corner(area.right - 16, area.top + 10);
    DrawLines(dc, {corner, corner + CPoint(3, 4), corner + CPoint(10, -5)});
}

void DrawTexts(CDC& dc, const PanelButton& button, const PanelButtonLook& look)
{
    CRect box = button.area;
    box.DeflateRect(button.Scaled(button.IsRotary() ? endWidth : textMargin), button.Scaled(6));
    dc.SetTextColor(palette::text);
    if (look.value.IsEmpty())
        return DrawFitted(dc, button, button.label, box, DT_CENTER | DT_VCENTER);
    DrawFitted(dc, button, button.label, box, DT_CENTER | DT_TOP);
    dc.SetTextColor(palette::accent);
    DrawFitted(dc, button, look.value, box, DT_CENTER | DT_BOTTOM);
}

} // namespace

bool IsAction(const ActionInfo& action)
{
    return action.type != actionTypeNone && action.action != -1;
}

bool PanelButton::IsRotary() const
{
    return IsAction(action->decrement) || IsAction(action->increment);
}

bool PanelButton::IsTurnedAt(CPoint pixel) const
{
    return IsRotary() && (DecrementArea().PtInRect(pixel) || IncrementArea().PtInRect(pixel));
}

const ActionInfo& PanelButton::ActionAt(CPoint pixel, bool isSecond) const
{
    if (IsTurnedAt(pixel))
        return DecrementArea().PtInRect(pixel) ? action->decrement : action->increment;
    return isSecond && IsAction(action->push2) ? action->push2 : action->push1;
}

CRect PanelButton::DecrementArea() const
{
    CRect end = area;
    end.right = end.left + Scaled(endWidth);
    return end;
}

CRect PanelButton::IncrementArea() const
{
    CRect end = area;
    end.left = end.right - Scaled(endWidth);
    return end;
}

void DrawPanelButton(CDC& dc, const PanelButton& button, const PanelButtonLook& look)
{
    DrawBody(dc, button, look);
    dc.SetBkMode(TRANSPARENT);
    DrawLamp(dc, button, look.lit);
    DrawEnds(dc, button);
    DrawTexts(dc, button, look);
    if (look.checked) DrawCheck(dc, button.area);
}

Lamps::Lamps(std::function<void()> changed) : m_changed(std::move(changed)) {}

void Lamps::Follow(const ButtonAction& button)
{
    for (const ActionStateInfo& state : button.states)
        RegisterActionSignal(state);
}

bool Lamps::IsLit(const ButtonAction& button) const
{
    return std::any_of(button.states.begin(), button.states.end(),
                       [this](const ActionStateInfo& state) {
                           const auto found = m_values.find(state);
                           return found != m_values.end() && found->second != 0;
                       });
}

std::optional<int> Lamps::ValueOf(const ButtonAction& button) const
{
    if (button.states.empty()) return std::nullopt;
    const auto found = m_values.find(*button.states.begin());
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void Lamps::ActionStateChanged(const ActionStateInfo& source, int value)
{
    const auto [entry, isNew] = m_values.try_emplace(source, value);
    if (!isNew && std::exchange(entry->second, value) == value) return;
    m_changed();
}

void Lamps::ActionNotification(ActionType, int, int) {}

} // namespace exam
