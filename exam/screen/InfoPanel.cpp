#include "screen/InfoPanel.h"

#include "base/Palette.h"
#include "measure/MarkList.h"
#include "study/StudyTexts.h"

#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <vector>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int rowHeight = 44;
constexpr int valueBelowLabel = 18;
constexpr int lowRowHeight = 21;
constexpr int leastList = 90; // for some marks and their values
constexpr CSize margin(18, 16);
constexpr CSize lowMargin(12, 8);
constexpr int lowGap = 6;

struct Fact
{
    CString label;
    CString value;
};

const char* ProbeKey(int type)
{
    switch (type) {
    case qor_utils::curvedProbe: return "exam.probe.curved";
    case qor_utils::linearProbe: return "exam.probe.linear";
    case qor_utils::phasedProbe: return "exam.probe.phased";
    default: return "exam.probe.unknown";
    }
}

// The signs of the ways in which the image is mirrored.
CString FlipText(const Orientation& orientation)
{
    CString text;
    if (orientation.flipsSides) text += L"  \u2194";
    if (orientation.flipsDepth) text += L"  \u2195";
    return text;
}

void Add(std::vector<Fact>& facts, const char* labelKey, const CString& value)
{
    facts.push_back({GetStr(labelKey), value});
}

void AddImage(std::vector<Fact>& facts, const FrameSource& source, const ImagingParameters& image)
{
    const CString lines = GetStr("exam.value.lines", image.lines, image.samples);
    if (source.IsSimulated()) Add(facts, "exam.label.source", GetStr("exam.source.simulated"));
    if (source.IsPicture()) return Add(facts, "exam.label.pixels", lines);
    Add(facts, "exam.label.probe", GetStr(ProbeKey(image.probe.type)));
    Add(facts, "exam.label.lines", lines);
    Add(facts, "exam.label.depth", LengthText(image.DepthMillimetres()).c_str());
    Add(facts, "exam.label.scale",
        GetStr("exam.value.scale", static_cast<int>(image.micronsPerPixel.x)));
}

// Adds what the user has changed about the way in which frames are shown.
void AddDisplay(std::vector<Fact>& facts, const ExamState& state)
{
    const Orientation& lies = state.ImageOrientation();
    if (lies != Orientation())
        Add(facts, "exam.label.orientation",
            GetStr("exam.value.orientation", lies.quarters * 90) + FlipText(lies));
    const GreyWindow& window = state.Levels();
    if (window != GreyWindow())
        Add(facts, "exam.label.window", GetStr("exam.value.window", window.level, window.width));
    const auto [first, last] = state.Loop();
    const bool isWhole = first == 1 && last == state.Source().Frames();
    if (!state.Source().IsLive() && (!isWhole || state.Speed() != 1))
        Add(facts, "exam.label.play",
            GetStr("exam.value.play", NumberText(state.Speed(), 2).c_str(), first, last));
}

std::vector<Fact> FactsOf(const ExamState& state)
{
    std::vector<Fact> facts;
    Add(facts, "exam.label.console", utilsExam::MapConsoleName(utilsExam::GetConsoleType()));
    Add(facts, "exam.label.mode",
        GetStr(utilsExam::ResearchMode ? "exam.mode.research" : "exam.mode.clinical"));
    if (!state.HasSource()) return facts;
    AddImage(facts, state.Source(), state.View().Parameters());
    Add(facts, "exam.label.frame",
        GetStr("exam.value.frame", state.FramePosition(), state.Source().Frames()));
    AddDisplay(facts, state);
    return facts;
}

void Write(CDC& dc, const CString& text, CRect box, COLORREF colour, UINT side)
{
    dc.SetTextColor(colour);
    dc.DrawText(text, &box, side | DT_TOP | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
}

// Both return the part of the box that is left.
CRect DrawHighRows(CDC& dc, const ScreenLayout& layout, CRect box, const std::vector<Fact>& facts)
{
    for (const Fact& fact : facts) {
        Write(dc, fact.label, box, palette::label, DT_LEFT);
        CRect below = box;
        below.top += layout.Scaled(valueBelowLabel);
        Write(dc, fact.value, below, palette::text, DT_LEFT);
        box.top += layout.Scaled(rowHeight);
    }
    return box;
}

CRect DrawLowRows(CDC& dc, const ScreenLayout& layout, CRect box, const std::vector<Fact>& facts)
{
    for (const Fact& fact : facts) {
        Write(dc, fact.value, box, palette::text, DT_RIGHT);
        CRect before = box; // the value is more important
        before.right -= dc.GetTextExtent(fact.value).cx + layout.Scaled(lowGap);
        Write(dc, fact.label, before, palette::label, DT_LEFT);
        box.top += layout.Scaled(lowRowHeight);
    }
    return box;
}

} // namespace

void DrawInfoPanel(CDC& dc, const ExamState& state)
{
    const ScreenLayout& layout = state.Layout();
    dc.FillSolidRect(&layout.panel, palette::panel);
    dc.SetBkMode(TRANSPARENT);
    const std::vector<Fact> facts = FactsOf(state);
    CRect box = layout.panel;
    const auto rows = static_cast<int>(facts.size());
    const std::vector<int> marks = state.Marks().Shown();
    const int list = marks.empty() ? 0 : leastList;
    const bool isHigh = layout.Scaled(2 * margin.cy + rowHeight * rows + list) <= box.Height();
    const CSize& around = isHigh ? margin : lowMargin;
    box.DeflateRect(layout.Scaled(around.cx), layout.Scaled(around.cy));
    const CRect rest =
        isHigh ? DrawHighRows(dc, layout, box, facts) : DrawLowRows(dc, layout, box, facts);
    DrawMarkList(dc, rest, state.Content(), marks, state.Marks().Selected());
}

} // namespace exam
