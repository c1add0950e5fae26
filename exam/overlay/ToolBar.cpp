#include "overlay/ToolBar.h"

#include "base/Palette.h"

#include <Utils_Statics/GetStr.h>

#include <utility>

namespace exam {

namespace {

constexpr int buttonSize = 40;
constexpr int gap = 8;
constexpr int corner = 14; // diameter
constexpr int fromLeft = 12;
constexpr int fromTop = 132; // leaves room for the recording mark and the time of movies

} // namespace

BEGIN_MESSAGE_MAP(ToolBar, Overlay)
    ON_WM_LBUTTONDOWN()
    ON_WM_MOUSEMOVE()
    ON_MESSAGE(WM_MOUSELEAVE, OnMouseLeave)
END_MESSAGE_MAP()

ToolBar::ToolBar(std::vector<ToolButton> buttons) : m_buttons(std::move(buttons))
{
    for (const ToolButton& button : m_buttons)
        m_pictures.emplace_back(button.picture);
}

CRect ToolBar::AreaOf(std::size_t button)
{
    const int top = static_cast<int>(button) * (buttonSize + gap);
    return {CPoint(0, top), CSize(buttonSize, buttonSize)};
}

CRect ToolBar::AreaOver(const CRect& image) const
{
    const int height = m_buttons.empty() ? 0 : AreaOf(m_buttons.size() - 1).bottom;
    return {CPoint(image.left + fromLeft, image.top + fromTop), CSize(buttonSize, height)};
}

void ToolBar::Draw(CDC* dc)
{
    const CRect all = Client();
    dc->FillSolidRect(&all, palette::header);
    for (std::size_t i = 0; i < m_buttons.size(); ++i)
        m_pictures[i].Draw(*dc, AreaOf(i), m_buttons[i].form());
}

void ToolBar::DrawMask(CDC* dc)
{
    const CRect all = Client();
    dc->FillSolidRect(&all, RGB(0, 0, 0));
    dc->SelectStockObject(WHITE_BRUSH);
    dc->SelectStockObject(WHITE_PEN);
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        const CRect area = AreaOf(i);
        RoundRect(*dc, area.left, area.top, area.right, area.bottom, corner, corner);
    }
}

std::optional<std::size_t> ToolBar::ButtonAt(CPoint point) const
{
    for (std::size_t i = 0; i < m_buttons.size(); ++i)
        if (AreaOf(i).PtInRect(point)) return i;
    return std::nullopt;
}

void ToolBar::OnLButtonDown(UINT, CPoint point)
{
    const std::optional<std::size_t> button = ButtonAt(point);
    if (button && m_buttons[*button].form() != ButtonForm::disabled) m_buttons[*button].push();
}

void ToolBar::OnMouseMove(UINT, CPoint point)
{
    const std::optional<std::size_t> button = ButtonAt(point);
    if (!button) return m_tip.Leave();
    m_tip.Follow(*this, AreaOf(*button), GetStr(m_buttons[*button].nameKey),
                 GetStr(m_buttons[*button].tipKey));
}

LRESULT ToolBar::OnMouseLeave(WPARAM, LPARAM)
{
    m_tip.Leave();
    return 0;
}

} // namespace exam
