#include "screen/InfoPanel.h"

#include "base/Palette.h"
#include "screen/ScreenContent.h"

#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

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

} // namespace

void DrawInfoPanel(CDC& dc, const CRect& area, const ScreenContent& content)
{
    dc.FillSolidRect(&area, palette::panel);
    dc.SetBkMode(TRANSPARENT);
    CRect box = area;
    box.DeflateRect(18, 16);
    Rows rows(dc, box);
    rows.Add("exam.label.console", utilsExam::MapConsoleName(utilsExam::GetConsoleType()));
    rows.Add("exam.label.mode",
             GetStr(utilsExam::ResearchMode ? "exam.mode.research" : "exam.mode.clinical"));
    if (content.session.IsEmpty()) return;
    const ImagingParameters& image = content.view.Parameters();
    const Session& session = content.session;
    rows.Add("exam.label.probe", GetStr(ProbeKey(image.probe.type)));
    rows.Add("exam.label.lines", GetStr("exam.value.lines", image.lines, image.samples));
    rows.Add("exam.label.depth", GetStr("exam.value.depth", image.DepthMillimetres()));
    rows.Add("exam.label.scale",
             GetStr("exam.value.scale", static_cast<int>(image.micronsPerPixel.x)));
    rows.Add("exam.label.frame",
             GetStr("exam.value.frame", session.Frame() + 1, session.Cine().Frames()));
    for (const ImageTool* const tool : content.tools.All())
        if (tool->IsVisible()) rows.Add(tool->NameKey(), tool->Readout());
}

} // namespace exam
