#include "screen/Screen.h"

#include "base/Painting.h"
#include "base/Palette.h"
#include "measure/MarkShapes.h"
#include "measure/SpectralStrip.h"
#include "screen/InfoPanel.h"
#include "screen/RecordingText.h"
#include "screen/Timeline.h"
#include "study/StudyTexts.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

constexpr int micronsPerHalfCentimetre = 5000;
constexpr int longTick = 10;
constexpr int shortTick = 5;
constexpr int tickGap = 4;
constexpr CSize labelSize(48, 16);

// The depth scale runs beside the image, or below it when the image lies on its side. Its parts are
// given by their place along the depth and across it, in pixels of the image.
class Ruler
{
public:
    Ruler(const ScreenLayout& layout, const ImagingParameters& image)
        : m_layout(layout), m_image(image), m_isOnSide(image.orientation.IsOnSide()),
          m_base(m_isOnSide ? layout.image.Height() : layout.image.Width()),
          m_room(m_isOnSide ? layout.image.Width() : layout.image.Height())
    {
    }

    // The place along the depth of what lies so many microns below the probe's face.
    int At(int microns) const
    {
        const FramePoint face = m_image.InFrame(Exactly(m_image.Pixel(m_image.lines / 2, 0)));
        const CPoint pixel = PixelAt(m_image.PixelOf({face.x, face.y + microns}));
        return m_isOnSide ? pixel.x : pixel.y;
    }
    bool IsShown(int along) const { return along >= 0 && along <= m_room; }

    void DrawLine(CDC& dc, int from, int to, int across) const
    {
        DrawLines(dc, {PointAt(from, 0), PointAt(to, across)});
    }

    // The number stands at its tick, or as near as it stays within the image.
    void DrawLabel(CDC& dc, int along, int centimetres) const
    {
        const MarkValue shown = AsShown({"", "study.unit.mm", 10.0 * centimetres, 0});
        std::wstring text = NumberText(shown.value, 0);
        if (centimetres == 0) text += L" " + TextOf(shown.unitKey);
        const CSize size = dc.GetTextExtent(text.c_str());
        const int length = m_isOnSide ? size.cx : size.cy;
        const int begin = std::clamp(along - length / 2, 0, std::max(0, m_room - length));
        CRect box(PointAt(begin, m_layout.Scaled(longTick + tickGap)), size);
        dc.DrawText(text.c_str(), &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
    }

    // The whole centimetres from one number to the next, so that the numbers stand apart.
    int LabelStep() const
    {
        const int room = m_layout.Scaled(m_isOnSide ? labelSize.cx : labelSize.cy);
        for (const int step : {1, 2, 5})
            if (step * 2 * micronsPerHalfCentimetre / m_image.micronsPerPixel.y > room) return step;
        return 10;
    }

private:
    CPoint PointAt(int along, int across) const
    {
        return m_isOnSide ? CPoint(along, m_base + across) : CPoint(m_base + across, along);
    }

    const ScreenLayout& m_layout;
    const ImagingParameters& m_image;
    bool m_isOnSide;
    int m_base;
    int m_room;
};

// Draws a tick every half centimetre from the probe's face on. The ticks of whole centimetres are
// longer and numbered.
void DrawRuler(CDC& dc, const ScreenLayout& layout, const ImagingParameters& image)
{
    if (image.micronsPerPixel.y <= 0 || image.lines < 1) return;
    CPen pen(PS_SOLID, 1, palette::scale);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    dc.SetTextColor(palette::scale);
    dc.SetBkMode(TRANSPARENT);

    const Ruler ruler(layout, image);
    const int depth = static_cast<int>(image.DepthMillimetres() * 1000);
    const int labelStep = 2 * ruler.LabelStep();
    ruler.DrawLine(dc, ruler.At(0), ruler.At(depth), 0);
    for (int half = 0; half * micronsPerHalfCentimetre <= depth; ++half) {
        const int along = ruler.At(half * micronsPerHalfCentimetre);
        if (!ruler.IsShown(along)) continue;
        ruler.DrawLine(dc, along, along, layout.Scaled(half % 2 == 0 ? longTick : shortTick));
        if (half % labelStep == 0) ruler.DrawLabel(dc, along, half / 2);
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
