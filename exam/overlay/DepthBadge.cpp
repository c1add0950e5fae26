#include "overlay/DepthBadge.h"

#include "base/Palette.h"
#include "base/ScopedFont.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

namespace {

constexpr int width = 120;
constexpr int height = 26;
constexpr int marginRight = 16; // from the image's corner
constexpr int marginTop = 84;

} // namespace

CRect DepthBadge::AreaOver(const CRect& image) const
{
    const CPoint corner(image.right - marginRight - width, image.top + marginTop);
    return {corner, CSize(width, height)};
}

void DepthBadge::Draw(CDC* dc)
{
    CRect area = Client();
    dc->FillSolidRect(&area, palette::header);
    CBrush edge(palette::line);
    dc->FrameRect(&area, &edge);
    if (m_session.IsEmpty()) return;
    const ScopedFont font(*dc, ScopedFont::textSize, FW_NORMAL);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(palette::text);
    dc->DrawText(GetStr("exam.value.depth", m_view.Parameters().DepthMillimetres()), &area,
                 DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

} // namespace exam
