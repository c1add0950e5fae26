#include "screen/Screen.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "measure/SpectralStrip.h"
#include "screen/InfoPanel.h"
#include "screen/RecordingText.h"
#include "screen/Timeline.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;
constexpr int longTick = 10;
constexpr int shortTick = 5;
constexpr int tickGap = 4;
constexpr CSize labelSize(48, 16);

// The number stands level with its tick, or as near as it stays within the image's height.
void DrawLabel(CDC& dc, const ScreenLayout& layout, CPoint at, int centimetres)
{
    const MarkValue shown = AsShown({"", "study.unit.mm", 10.0 * centimetres, 0});
    std::wstring text = NumberText(shown.value, 0);
    if (centimetres == 0) text += L" " + TextOf(shown.unitKey);
    const int height = dc.GetTextExtent(text.c_str()).cy;
    const int lowest = std::max<int>(0, layout.image.Height() - height);
    CRect box(CPoint(at.x, std::clamp<int>(at.y - height / 2, 0, lowest)),
              CSize(layout.Scaled(labelSize.cx), height));
    dc.DrawText(text.c_str(), &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
}

// The whole centimetres from one number of the scale to the next, so that the numbers stand apart.
int LabelStep(const ScreenLayout& layout, const ImagingParameters& image)
{
    for (const int step : {1, 2, 5})
        if (step * 2 * micronsPerHalfCentimetre / image.micronsPerPixel.y >
            layout.Scaled(labelSize.cy))
            return step;
    return 10;
}

// Draws the depth scale beside the image: a tick every half centimetre from the probe's face down.
// The ticks of whole centimetres are longer and numbered. `x` is the column of the scale in pixels
// of the image.
void DrawRuler(CDC& dc, const ScreenLayout& layout, const ImagingParameters& image, int x)
{
    if (image.micronsPerPixel.y <= 0 || image.lines < 1) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const int middle = image.lines / 2;
    const int top = image.Pixel(middle, 0).y;
    const int bottom = image.Pixel(middle, image.samples - 1).y;
    const int labelStep = 2 * LabelStep(layout, image);
    DrawLines(dc, {CPoint(x, top), CPoint(x, bottom)});
    for (int half = 0;; ++half) {
        const int y = top + half * micronsPerHalfCentimetre / image.micronsPerPixel.y;
        if (y > std::min<int>(bottom, layout.image.Height())) break;
        const int tick = half % 2 == 0 ? longTick : shortTick;
        DrawLines(dc, {CPoint(x, y), CPoint(x + layout.Scaled(tick), y)});
        if (half % labelStep == 0 && y >= 0)
            DrawLabel(dc, layout, {x + layout.Scaled(longTick + tickGap), y}, half / 2);
    }
}

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

constexpr int titleSize = 18;
constexpr int barMargin = 16;
constexpr int dotSize = 14;
constexpr int gap = 8;

void DrawDot(CDC& dc, const CRect& area)
{
    CBrush brush(palette::recording);
    CPen pen(PS_SOLID, 1, palette::recording);
    const base::Selection fill(dc.GetSafeHdc(), brush.GetSafeHandle());
    const base::Selection edge(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.Ellipse(&area);
}

// Draws a red dot and the time of the recording.
void DrawRecordingMark(CDC& dc, const ScreenLayout& layout, const RunningRecording& recording)
{
    CRect box = layout.recordingMark;
    const int size = layout.Scaled(dotSize);
    DrawDot(dc, CRect(CPoint(box.left, box.CenterPoint().y - size / 2), CSize(size, size)));
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
    DrawRuler(dc, layout, image, layout.image.Width());
    if (state.IsStripShown() && state.Strip().HasFlow()) DrawGate(dc, image, state.Strip().Flow());
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
