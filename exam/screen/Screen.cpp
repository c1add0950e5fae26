#include "screen/Screen.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "measure/SpectralStrip.h"
#include "screen/InfoPanel.h"
#include "screen/RecordingText.h"
#include "screen/Ruler.h"
#include "screen/Timeline.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int titleSize = 18;
constexpr int barMargin = 16;
constexpr int dotSize = 14;
constexpr int gap = 8;

// Draws the sample volume of the flow on the strip, with the beam that comes from the probe.
void DrawGate(CDC& dc, const ImagingParameters& image, const FlowSpectrum& flow)
{
    constexpr int tick = 3; // scan lines on each side
    CPen beam(PS_DOT, 1, palette::scale);
    CPen gate(PS_SOLID, 1, palette::accent);
    const CPoint begin = image.Pixel(flow.gateBegin.x, flow.gateBegin.y);
    dc.SetBkMode(TRANSPARENT);
    {
        const base::Selection selection(dc.GetSafeHdc(), beam.GetSafeHandle());
        DrawLines(dc, {image.EntryOfBeam(flow.gateBegin, flow.gateEnd), begin});
    }
    const base::Selection selection(dc.GetSafeHdc(), gate.GetSafeHandle());
    DrawLines(dc, {begin, image.Pixel(flow.gateEnd.x, flow.gateEnd.y)});
    for (const UPoint& end : {flow.gateBegin, flow.gateEnd})
        image.DrawDepthLine(dc, end.y, end.x - tick, end.x + tick);
}

void DrawDot(CDC& dc, const CRect& area, COLORREF colour)
{
    CBrush brush(colour);
    CPen pen(PS_SOLID, 1, colour);
    const base::Selection fill(dc.GetSafeHdc(), brush.GetSafeHandle());
    const base::Selection edge(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.Ellipse(&area);
}

// Marks the probe's side at which the lines begin with a dot beside its face, away from the image.
void DrawSideMark(CDC& dc, const ScreenLayout& layout, const ImagingParameters& image)
{
    constexpr int distance = 7;
    constexpr int radius = 4;
    const int sample = image.samples / 2; // the lines of a sector have one face
    const CSize across = image.Pixel(0, sample) - image.Pixel(image.lines - 1, sample);
    const double length = std::max(1.0, std::hypot(across.cx, across.cy));
    const double way = layout.Scaled(distance) / length;
    CRect dot(image.Pixel(0, 0), CSize(0, 0));
    dot.OffsetRect(std::lround(across.cx * way), std::lround(across.cy * way));
    dot.InflateRect(layout.Scaled(radius), layout.Scaled(radius));
    DrawDot(dc, dot, palette::accent);
}

// Draws a red dot and the time of the recording.
void DrawRecordingMark(CDC& dc, const ScreenLayout& layout, const RunningRecording& recording)
{
    CRect box = layout.recordingMark;
    const int size = layout.Scaled(dotSize);
    DrawDot(dc, CRect(CPoint(box.left, box.CenterPoint().y - size / 2), CSize(size, size)),
            palette::recording);
    box.left += size + layout.Scaled(gap);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::text);
    dc.DrawText(RecordingTimeText(recording), &box,
                DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawBar(CDC& dc, const ScreenLayout& layout, const CRect& bar, const CString& left,
             const CString& right)
{
    dc.SetBkMode(TRANSPARENT);
    CRect box = bar;
    box.DeflateRect(layout.Scaled(barMargin), 0);
    dc.SetTextColor(palette::text);
    dc.DrawText(left, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_PATH_ELLIPSIS);
    if (dc.GetTextExtent(left).cx + 3 * layout.Scaled(gap) + dc.GetTextExtent(right).cx >
        box.Width())
        return; // there is no room for both, and the left one is more important
    dc.SetTextColor(palette::label);
    dc.DrawText(right, &box, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

// The patient and the study on display; a simulated patient has no name.
CString TitleOf(const ExamState& state)
{
    if (state.HasSource() && state.Source().IsSimulated()) return GetStr("exam.title.simulated");
    const StudyContent& study = state.Content();
    if (study.patient.name.empty()) return GetStr("exam.title");
    CString title = study.patient.name.c_str();
    const std::wstring age = AgeText(study.patient, study.date);
    if (!age.empty()) title += CString(L", ") + age.c_str();
    if (!study.description.empty()) title += CString(L", ") + study.description.c_str();
    return title;
}

void DrawImageArea(CDC& dc, const ExamState& state)
{
    const ScreenLayout& layout = state.Layout();
    dc.FillSolidRect(&layout.imageArea, palette::background);
    if (!state.HasSource()) return;
    state.View().Paint(dc, layout.image.TopLeft());
    const SavedState saved(dc);
    dc.IntersectClipRect(&layout.imageArea);
    state.Marks().Draw(dc, MarkPlace::frame, layout.scale);
    if (state.Source().IsPicture()) return; // it has no scale
    // Scale and sample volume draw in pixels of the image.
    dc.SetViewportOrg(layout.image.left, layout.image.top);
    const ImagingParameters& image = state.View().Parameters();
    DrawRuler(dc, layout, image);
    DrawSideMark(dc, layout, image);
    if (state.IsFlowShown()) DrawGate(dc, image, state.Strip().Flow());
}

// The parts of the window that movies leave out.
void DrawControls(CDC& dc, const ExamState& state)
{
    const ScreenLayout& layout = state.Layout();
    DrawTimeline(dc, state);
    const auto& recording = state.Recording();
    if (recording) DrawRecordingMark(dc, layout, *recording);
    DrawBar(dc, layout, layout.status, state.Status(),
            recording ? RecordingRoomText(*recording) : GetStr("exam.keys"));
}

} // namespace

BarTexts TextsOfBars(const ExamState& state)
{
    return {TitleOf(state), state.Status()};
}

void DrawScreen(CDC& dc, const ExamState& state, ScreenUse use)
{
    const ScreenLayout& layout = state.Layout();
    dc.FillSolidRect(0, 0, layout.client.cx, layout.client.cy, palette::header);
    {
        const ScopedFont font(dc, layout.Scaled(titleSize), FW_SEMIBOLD);
        DrawBar(dc, layout, layout.header, TitleOf(state),
                utilsExam::GetProductName() + L" " + utilsExam::GetProductVersion());
    }
    const ScopedFont font(dc, layout.Scaled(ScopedFont::textSize), FW_NORMAL);
    DrawImageArea(dc, state);
    DrawInfoPanel(dc, state);
    state.Strip().Draw(dc);
    state.Marks().Draw(dc, MarkPlace::strip, layout.scale);
    if (use == ScreenUse::display) DrawControls(dc, state);
}

} // namespace exam
