#include "screen/Screen.h"

#include "measure/RotatedOutline.h"
#include "measure/SpectralStrip.h"
#include "screen/InfoPanel.h"
#include "screen/Palette.h"
#include "screen/Ruler.h"
#include "screen/ScreenLayout.h"

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
                          CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Arial");
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

void DrawImageArea(CDC& dc, const ScreenContent& content)
{
    const CRect area = ScreenLayout::imageArea();
    dc.FillSolidRect(&area, palette::background);
    if (content.session.empty()) return;
    content.view.Paint(dc, area.TopLeft());
    // Scale and tools draw in pixels of the image.
    dc.SetViewportOrg(area.left, area.top);
    DrawRuler(dc, content.view.parameters(), ScreenLayout::image().Width());
    content.tools.Draw(dc);
    dc.SetViewportOrg(0, 0);
}

void DrawPanel(CDC& dc, const ScreenContent& content)
{
    DrawInfoPanel(dc, ScreenLayout::panel(), content);
    if (content.rotation == 0) return;
    const CSize size(content.view.parameters().width, content.view.parameters().height);
    DrawRotatedOutline(dc, ScreenLayout::outline(), RotateImageOutline(size, content.rotation));
}

} // namespace

void DrawScreen(CDC& dc, const ScreenContent& content)
{
    {
        const ScopedFont font(dc, 18, FW_SEMIBOLD);
        DrawBar(dc, ScreenLayout::header(), GetStr("exam.title"),
                utilsExam::GetProductName() + L" " + utilsExam::GetProductVersion());
    }
    const ScopedFont font(dc, 15, FW_NORMAL);
    DrawImageArea(dc, content);
    DrawPanel(dc, content);
    if (content.stripShown)
    {
        spectralTraceData traces = content.flow.traces();
        DrawSpectralStrip(dc, ScreenLayout::strip(), traces);
    }
    DrawBar(dc, ScreenLayout::status(), content.status, GetStr("exam.keys"));
}

} // namespace exam
