#include "measure/MarkList.h"

#include "base/Palette.h"
#include "study/MarkValues.h"
#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <string>

namespace exam {

namespace {

struct Line
{
    CString text;
    int mark = 0;
    bool isTitle = false;
    int rows = 1;
};

std::vector<Line> LinesOf(const StudyContent& study, const std::vector<int>& numbers)
{
    std::vector<Line> lines;
    for (const int number : numbers) {
        const Mark& mark = *FindMark(study, number);
        const std::wstring text = TextOf(mark);
        const std::wstring name = text.empty() ? TextOf(InfoOf(mark.kind).key) : text;
        lines.push_back({(std::to_wstring(number) + L"  " + name).c_str(), number, true});
        for (const MarkValue& value : ValuesOf(mark, study))
            lines.push_back({ValueText(value).c_str(), number, false});
    }
    return lines;
}

// Leaves the last lines out when there is not room for all. Another one says how many.
void Shorten(std::vector<Line>& lines, int room)
{
    int rows = 0;
    for (const Line& line : lines)
        rows += line.rows;
    if (rows <= room || room == 0) return;
    int missing = 0;
    for (; rows >= room; ++missing) {
        rows -= lines.back().rows;
        lines.pop_back();
    }
    lines.push_back({GetStr("exam.marks.more", missing)});
}

} // namespace

void DrawMarkList(CDC& dc, const CRect& area, const StudyContent& study,
                  const std::vector<int>& numbers, int selected)
{
    const CSize letter = dc.GetTextExtent(L"0"); // lines and indents follow the font
    const int lineHeight = letter.cy + 1;
    const int indent = 2 * letter.cx;
    std::vector<Line> lines = LinesOf(study, numbers);
    for (Line& line : lines) {
        CString text = line.text; // is changed
        line.rows = utilsExam::WrapStr(&dc, text, area.Width() - (line.isTitle ? 0 : indent));
    }
    Shorten(lines, area.Height() / lineHeight);
    CRect box = area;
    dc.SetBkMode(TRANSPARENT);
    for (const Line& line : lines) {
        box.bottom = box.top + line.rows * lineHeight;
        if (box.bottom > area.bottom) return;
        box.left = area.left + (line.isTitle ? 0 : indent);
        const bool isSelected = line.mark != 0 && line.mark == selected;
        dc.SetTextColor(isSelected     ? palette::accent
                        : line.isTitle ? palette::label
                                       : palette::text);
        const UINT rows = line.rows > 1 ? DT_WORDBREAK : DT_VCENTER | DT_SINGLELINE;
        dc.DrawText(line.text, &box, DT_LEFT | rows | DT_END_ELLIPSIS | DT_NOPREFIX);
        box.top = box.bottom;
    }
}

} // namespace exam
