#include "screen/Screen.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "base/ScreenLayout.h"
#include "measure/RotatedOutline.h"
#include "measure/SpectralStrip.h"

#include <base/GdiHandles.h>
#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;
constexpr int longTick = 10;
constexpr int shortTick = 5;

void DrawLabel(CDC& dc, int x, int y, int centimetres)
{
    CString text;
    text.Format(centimetres == 0 ? L"%d cm" : L"%d", centimetres);
    CRect box(x, y - 8, x + 48, y + 8);
    dc.DrawText(text, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
}

// Draws the depth scale beside the image: a tick every half centimetre from the probe's face down.
// The ticks of whole centimetres are longer and numbered. `x` is the column of the scale in pixels
// of the image.
void DrawRuler(CDC& dc, const ImagingParameters& image, int x)
{
    if (image.micronsPerPixel.y <= 0 || image.lines < 1) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const int middle = image.lines / 2;
    const int top = image.Pixel(middle, 0).y;
    const int bottom = image.Pixel(middle, image.samples - 1).y;
    DrawLines(dc, {CPoint(x, top), CPoint(x, bottom)});
    for (int half = 0;; ++half) {
        const int y = top + half * micronsPerHalfCentimetre / image.micronsPerPixel.y;
        if (y > bottom) break;
        const bool whole = half % 2 == 0;
        DrawLines(dc, {CPoint(x, y), CPoint(x + (whole ? longTick : shortTick), y)});
        if (whole) DrawLabel(dc, x + longTick + 4, y, half / 2);
    }
}

constexpr int dotSize = 14;
constexpr int gap = 8;

void DrawDot(CDC& dc, int x, int y)
{
    CBrush brush(palette::recording);
    CPen pen(PS_SOLID, 1, palette::recording);
    const base::Selection fill(dc.GetSafeHdc(), brush.GetSafeHandle());
    const base::Selection edge(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.Ellipse(x, y, x + dotSize, y + dotSize);
}

// Draws a red dot and the number of recorded frames.
void DrawRecordingMark(CDC& dc, const CRect& area, int frames)
{
    DrawDot(dc, area.left, area.top + (area.Height() - dotSize) / 2);
    CRect box = area;
    box.left += dotSize + gap;
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::text);
    dc.DrawText(GetStr("exam.record.mark", frames), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

constexpr int rowHeight = 44;
constexpr int valueBelowLabel = 18;

const char* ProbeKey(int type)
{
    switch (type) {
    case qor_utils::curvedProbe: return "exam.probe.curved";
    case qor_utils::linearProbe: return "exam.probe.linear";
    case qor_utils::phasedProbe: return "exam.probe.phased";
    default: return "exam.probe.unknown";
    }
}

// Writes rows from the top of an area down. Each row is a label with its value below.
class Rows
{
public:
    Rows(CDC& dc, const CRect& area) : m_dc(dc), m_row(area)
    {
        m_row.bottom = m_row.top + rowHeight;
    }

    void Add(const char* labelKey, const CString& value)
    {
        Write(GetStr(labelKey), palette::label, 0);
        Write(value, palette::text, valueBelowLabel);
        m_row.OffsetRect(0, rowHeight);
    }

private:
    void Write(const CString& text, COLORREF colour, int down)
    {
        CRect box = m_row;
        box.top += down;
        m_dc.SetTextColor(colour);
        m_dc.DrawText(text, &box, DT_LEFT | DT_TOP | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
    }

    CDC& m_dc;
    CRect m_row;
};

// Draws the column of facts beside the image in the current language: console, modes, probe, depth
// and the results of the tools.
void DrawInfoPanel(CDC& dc, const CRect& area, const ExamState& state)
{
    dc.FillSolidRect(&area, palette::panel);
    dc.SetBkMode(TRANSPARENT);
    CRect box = area;
    box.DeflateRect(18, 16);
    Rows rows(dc, box);
    rows.Add("exam.label.console", utilsExam::MapConsoleName(utilsExam::GetConsoleType()));
    rows.Add("exam.label.mode",
             GetStr(utilsExam::ResearchMode ? "exam.mode.research" : "exam.mode.clinical"));
    if (!state.HasRecording()) return;
    const ImagingParameters& image = state.View().Parameters();
    rows.Add("exam.label.probe", GetStr(ProbeKey(image.probe.type)));
    rows.Add("exam.label.lines", GetStr("exam.value.lines", image.lines, image.samples));
    rows.Add("exam.label.depth", GetStr("exam.value.depth", image.DepthMillimetres()));
    rows.Add("exam.label.scale",
             GetStr("exam.value.scale", static_cast<int>(image.micronsPerPixel.x)));
    rows.Add("exam.label.frame",
             GetStr("exam.value.frame", state.Frame() + 1, state.Cine().Frames()));
    for (const ImageTool* const tool : state.Tools().All())
        if (tool->IsVisible()) rows.Add(tool->NameKey(), tool->Readout());
}

void DrawBar(CDC& dc, const CRect& bar, const CString& left, const CString& right)
{
    dc.FillSolidRect(&bar, palette::header);
    dc.SetBkMode(TRANSPARENT);
    CRect box = bar;
    box.DeflateRect(16, 0);
    dc.SetTextColor(palette::text);
    dc.DrawText(left, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_PATH_ELLIPSIS);
    constexpr int between = 24;
    if (dc.GetTextExtent(left).cx + between + dc.GetTextExtent(right).cx > box.Width())
        return; // there is no room for both, and the left one is more important
    dc.SetTextColor(palette::label);
    dc.DrawText(right, &box, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawImageArea(CDC& dc, const ExamState& state)
{
    const CRect area = ScreenLayout::ImageArea();
    dc.FillSolidRect(&area, palette::background);
    if (!state.HasRecording()) return;
    state.View().Paint(dc, area.TopLeft());
    // Scale and tools draw in pixels of the image.
    dc.SetViewportOrg(area.left, area.top);
    DrawRuler(dc, state.View().Parameters(), ScreenLayout::Image().Width());
    state.Tools().Draw(dc);
    dc.SetViewportOrg(0, 0);
}

void DrawPanel(CDC& dc, const ExamState& state)
{
    DrawInfoPanel(dc, ScreenLayout::Panel(), state);
    if (state.Rotation() == 0) return;
    const CSize size(state.View().Parameters().width, state.View().Parameters().height);
    DrawRotatedOutline(dc, ScreenLayout::Outline(), RotateImageOutline(size, state.Rotation()));
}

} // namespace

void DrawScreen(CDC& dc, const ExamState& state, ScreenUse use)
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
    DrawImageArea(dc, state);
    DrawPanel(dc, state);
    if (state.IsStripShown()) DrawSpectralStrip(dc, ScreenLayout::Strip(), state.Flow().Traces());
    if (use == ScreenUse::movie) return DrawBar(dc, ScreenLayout::Status(), L"", L"");
    if (state.Recording())
        DrawRecordingMark(dc, ScreenLayout::RecordingMark(), state.Recording()->frames);
    DrawBar(dc, ScreenLayout::Status(), state.Status(), GetStr("exam.keys"));
}

} // namespace exam
