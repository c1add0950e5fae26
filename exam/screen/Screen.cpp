#include "screen/Screen.h"

#include "screen/InfoPanel.h"
#include "screen/Palette.h"
#include "screen/Ruler.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

namespace exam
{

namespace
{

// Selects a font for the length of a scope.
class ScopedFont
{
public:
    ScopedFont(CDC& dc, int pixels, int weight) : m_dc(dc)
    {
        m_font.CreateFont(-pixels, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                          CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Arial");
        m_old = dc.SelectObject(&m_font);
    }
    ~ScopedFont() { m_dc.SelectObject(m_old); }
    ScopedFont(const ScopedFont&) = delete;
    ScopedFont& operator=(const ScopedFont&) = delete;

private:
    CDC& m_dc;
    CFont m_font;
    CFont* m_old = nullptr;
};

void DrawBar(CDC& dc, const CRect& bar, const CString& left, const CString& right)
{
    dc.FillSolidRect(&bar, palette::header);
    dc.SetBkMode(TRANSPARENT);
    CRect box = bar;
    box.DeflateRect(16, 0);
    dc.SetTextColor(palette::text);
    dc.DrawText(left, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    dc.SetTextColor(palette::label);
    dc.DrawText(right, &box, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawImageArea(CDC& dc, const Session& session, const ImageView& view)
{
    const CRect area = ScreenLayout::image();
    dc.FillSolidRect(&area, palette::background);
    if (session.empty()) return;
    view.Paint(dc, area.TopLeft());
    dc.SetViewportOrg(area.left, area.top);
    DrawRuler(dc, view.parameters(), ScreenLayout::imageSize().cx);
    dc.SetViewportOrg(0, 0);
}

} // namespace

void DrawScreen(CDC& dc, const Session& session, const ImageView& view, const CString& status)
{
    {
        const ScopedFont font(dc, 18, FW_SEMIBOLD);
        DrawBar(dc, ScreenLayout::header(), GetStr("exam.title"),
                utilsExam::GetProductName() + L" " + utilsExam::GetProductVersion());
    }
    const ScopedFont font(dc, 14, FW_NORMAL);
    DrawImageArea(dc, session, view);
    DrawInfoPanel(dc, ScreenLayout::panel(), session, view.parameters());
    DrawBar(dc, ScreenLayout::status(), status, GetStr("exam.keys"));
}

} // namespace exam
