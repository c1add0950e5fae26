#include "screen/Screen.h"

#include "base/Palette.h"
#include "base/ScopedFont.h"
#include "base/ScreenLayout.h"
#include "measure/RotatedOutline.h"
#include "measure/SpectralStrip.h"
#include "screen/InfoPanel.h"
#include "screen/RecordingMark.h"
#include "screen/Ruler.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

void DrawBar(CDC& dc, const CRect& bar, const CString& left, const CString& right)
{
    dc.FillSolidRect(&bar, palette::header);
    dc.SetBkMode(TRANSPARENT);
    CRect box = bar;
    box.DeflateRect(16, 0);
    dc.SetTextColor(palette::text);
    dc.DrawText(left, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_PATH_ELLIPSIS);
    constexpr int gap = 24;
    if (dc.GetTextExtent(left).cx + gap + dc.GetTextExtent(right).cx > box.Width())
        return; // there is no room for both, and the left one is more important
    dc.SetTextColor(palette::label);
    dc.DrawText(right, &box, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawImageArea(CDC& dc, const ScreenContent& content)
{
    const CRect area = ScreenLayout::ImageArea();
    dc.FillSolidRect(&area, palette::background);
    if (content.session.IsEmpty()) return;
    content.view.Paint(dc, area.TopLeft());
    // Scale and tools draw in pixels of the image.
    dc.SetViewportOrg(area.left, area.top);
    DrawRuler(dc, content.view.Parameters(), ScreenLayout::Image().Width());
    content.tools.Draw(dc);
    dc.SetViewportOrg(0, 0);
}

void DrawPanel(CDC& dc, const ScreenContent& content)
{
    DrawInfoPanel(dc, ScreenLayout::Panel(), content);
    if (content.rotation == 0) return;
    const CSize size(content.view.Parameters().width, content.view.Parameters().height);
    DrawRotatedOutline(dc, ScreenLayout::Outline(), RotateImageOutline(size, content.rotation));
}

} // namespace

void DrawScreen(CDC& dc, const ScreenContent& content)
{
    {
        const ScopedFont font(dc, 18, FW_SEMIBOLD);
        DrawBar(dc, ScreenLayout::Header(), GetStr("exam.title"),
                utilsExam::GetProductName() + L" " + utilsExam::GetProductVersion());
    }
    // The row is a window of its own; movies, which have none, show its place empty.
    const CRect row = ScreenLayout::StatusRow();
    dc.FillSolidRect(&row, palette::header);
    const ScopedFont font(dc, ScopedFont::textSize, FW_NORMAL);
    DrawImageArea(dc, content);
    DrawPanel(dc, content);
    if (content.stripShown) {
        spectralTraceData traces = content.flow.Traces();
        DrawSpectralStrip(dc, ScreenLayout::Strip(), traces);
    }
    if (content.recordedFrames)
        DrawRecordingMark(dc, ScreenLayout::RecordingMark(), *content.recordedFrames);
    DrawBar(dc, ScreenLayout::Status(), content.status,
            content.keysShown ? GetStr("exam.keys") : CString());
}

} // namespace exam
