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

constexpr float cornerPart = 7 / 40.0F; // of a picture's width
constexpr int framePart = 10;           // the part of a button's width that a frame takes
constexpr int ownAlpha = -1;

constexpr const wchar_t* sizeFolders[] = {L"", L"144\\", L"192\\"};

// The places run from the edge to the middle. A plate begins with a soft edge; a frame lies about a
// seventh of the way in.
constexpr float edgeFactors[] = {0, 1, 1};
constexpr float edgePlaces[] = {0, 0.12F, 1};
constexpr float frameFactors[] = {0, 0.2F, 1, 1};
constexpr float framePlaces[] = {0, 0.15F, 0.3F, 1};

// The parts of a button's size.
constexpr double gapShare = 0.2;
constexpr double cornerShare = 0.35; // diameter

std::unique_ptr<Gdiplus::Bitmap> Grey(Gdiplus::Bitmap& image)
{
    std::unique_ptr<Gdiplus::Bitmap> grey(image.Clone(0, 0, static_cast<int>(image.GetWidth()),
                                                      static_cast<int>(image.GetHeight()),
                                                      PixelFormat32bppARGB));
    GrayScaleBitmap(grey.get(), ownAlpha);
    return grey;
}

int GapOf(int size)
{
    return static_cast<int>(size * gapShare);
}

} // namespace

ButtonPicture::ButtonPicture(const wchar_t* name)
{
    for (const wchar_t* const folder : sizeFolders)
        m_sizes.push_back(Load(folder, name));
}

ButtonPicture::Parts ButtonPicture::Load(const std::wstring& folder, const wchar_t* name)
{
    Parts parts;
    const Image ground(LoadImageFromIconStore((folder + L"buttons\\plate.png").c_str()));
    parts.symbol.reset(LoadImageFromIconStore((folder + L"buttons\\" + name).c_str()));
    if (!ground || !parts.symbol) return {};
    parts.plate.reset(
        CreateRoundedBitmap(ground.get(), cornerPart * static_cast<float>(ground->GetWidth()),
                            edgeFactors, edgePlaces, static_cast<int>(std::size(edgeFactors))));
    if (!parts.plate) return {};
    parts.frame.reset(CreateBorderedBitmap(parts.plate.get(), frameFactors, framePlaces,
                                           static_cast<int>(std::size(frameFactors)),
                                           palette::accent));
    parts.greyPlate = Grey(*parts.plate);
    parts.greySymbol = Grey(*parts.symbol);
    return parts;
}

const ButtonPicture::Parts& ButtonPicture::InSize(int width) const
{
    const auto found = std::ranges::find_if(m_sizes, [width](const Parts& parts) {
        return parts.symbol && static_cast<int>(parts.symbol->GetWidth()) >= width;
    });
    return found == m_sizes.end() ? m_sizes.back() : *found;
}

void ButtonPicture::Draw(CDC& dc, const CRect& area, ButtonForm form) const
{
    const Parts& parts = InSize(area.Width());
    const bool isDisabled = form == ButtonForm::disabled;
    Gdiplus::Graphics graphics(dc.GetSafeHdc());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    const auto draw = [&](const Image& image, const CRect& to) {
        if (image) graphics.DrawImage(image.get(), to.left, to.top, to.Width(), to.Height());
    };
    CRect inner = area;
    if (form == ButtonForm::framed) {
        draw(parts.frame, area);
        inner.DeflateRect(area.Width() / framePart, area.Width() / framePart);
    }
    draw(isDisabled ? parts.greyPlate : parts.plate, inner);
    draw(isDisabled ? parts.greySymbol : parts.symbol, area);
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
