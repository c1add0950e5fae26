#include "overlay/ToolBar.h"

#include "base/Palette.h"

#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace exam {

namespace {

constexpr float cornerRadius = 7; // pixels
constexpr int ownAlpha = -1;

// The places run from the edge to the middle. A picture begins with a soft edge; a frame lies about
// a seventh of the way in.
constexpr float edgeFactors[] = {0, 1, 1};
constexpr float edgePlaces[] = {0, 0.12F, 1};
constexpr float frameFactors[] = {0, 0.2F, 1, 1};
constexpr float framePlaces[] = {0, 0.15F, 0.3F, 1};

// The parts of a button's size.
constexpr double gapShare = 0.2;
constexpr double cornerShare = 0.35; // diameter

int GapOf(int size)
{
    return static_cast<int>(size * gapShare);
}

} // namespace

ButtonPicture::ButtonPicture(const wchar_t* name)
{
    const Image loaded(LoadImageFromIconStore((std::wstring(L"buttons\\") + name).c_str()));
    m_normal.reset(CreateRoundedBitmap(loaded.get(), cornerRadius, edgeFactors, edgePlaces,
                                       static_cast<int>(std::size(edgeFactors))));
    if (!m_normal) return;
    m_disabled.reset(m_normal->Clone(0, 0, static_cast<int>(m_normal->GetWidth()),
                                     static_cast<int>(m_normal->GetHeight()),
                                     PixelFormat32bppARGB));
    GrayScaleBitmap(m_disabled.get(), ownAlpha);
    m_framed.reset(CreateBorderedBitmap(m_normal.get(), frameFactors, framePlaces,
                                        static_cast<int>(std::size(frameFactors)),
                                        palette::accent));
}

const ButtonPicture::Image& ButtonPicture::In(ButtonForm form) const
{
    switch (form) {
    case ButtonForm::disabled: return m_disabled;
    case ButtonForm::framed: return m_framed;
    default: return m_normal;
    }
}

void ButtonPicture::Draw(CDC& dc, const CRect& area, ButtonForm form) const
{
    const Image& image = In(form);
    if (!image) return;
    Gdiplus::Graphics graphics(dc.GetSafeHdc());
    graphics.DrawImage(image.get(), area.left, area.top, area.Width(), area.Height());
}

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

CRect ToolBar::AreaOf(std::size_t button) const
{
    const int size = Client().Width();
    const int top = static_cast<int>(button) * (size + GapOf(size));
    return {CPoint(0, top), CSize(size, size)};
}

CRect ToolBar::AreaIn(const CRect& room) const
{
    const auto count = static_cast<int>(m_buttons.size());
    if (count == 0) return {room.TopLeft(), CSize(room.Width(), 0)};
    const int most = static_cast<int>(room.Height() / (count * (1 + gapShare)));
    const int size = std::min<int>(room.Width(), most);
    const CPoint corner(room.left + (room.Width() - size) / 2, room.top);
    return {corner, CSize(size, count * (size + GapOf(size)) - GapOf(size))};
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
        const int corner = static_cast<int>(area.Width() * cornerShare);
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
    m_tip.Press();
    const std::optional<std::size_t> button = ButtonAt(point);
    if (button && m_buttons[*button].form() != ButtonForm::disabled) m_buttons[*button].push();
}

void ToolBar::OnMouseMove(UINT, CPoint point)
{
    const std::optional<std::size_t> button = ButtonAt(point);
    if (!button) return m_tip.Leave();
    m_tip.Follow(*this, AreaOf(*button), GetStr(m_buttons[*button].nameKey),
                 m_buttons[*button].tip());
}

LRESULT ToolBar::OnMouseLeave(WPARAM, LPARAM)
{
    m_tip.Leave();
    return 0;
}

} // namespace exam
