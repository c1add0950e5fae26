#include "measure/MarkList.h"

#include "base/Palette.h"
#include "study/MarkValues.h"
#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>

#include <string>

namespace exam {

namespace {

struct Line
{
    CString text;
    int mark = 0;
    bool isTitle = false;
};

std::vector<Line> LinesOf(const StudyContent& study, const std::vector<int>& numbers)
{
    std::vector<Line> lines;
    for (const int number : numbers) {
        const Mark& mark = *FindMark(study, number);
        const std::wstring name = mark.text.empty() ? TextOf(InfoOf(mark.kind).key) : mark.text;
        lines.push_back({(std::to_wstring(number) + L"  " + name).c_str(), number, true});
        for (const MarkValue& value : ValuesOf(mark, study))
            lines.push_back({ValueText(value).c_str(), number, false});
    }
    return lines;
}

} // namespace

void DrawMarkList(CDC& dc, const CRect& area, const StudyContent& study,
                  const std::vector<int>& numbers, int selected)
{
    const CSize letter = dc.GetTextExtent(L"0"); // lines and indents follow the font
    const int lineHeight = letter.cy + 1;
    const int indent = 2 * letter.cx;
    std::vector<Line> lines = LinesOf(study, numbers);
    const auto room = static_cast<std::size_t>(area.Height() / lineHeight);
    if (room > 0 && lines.size() > room) {
        const int missing = static_cast<int>(lines.size() - room + 1);
        lines.resize(room - 1);
        lines.push_back({GetStr("exam.marks.more", missing), 0, false});
    }
    CRect box = area;
    dc.SetBkMode(TRANSPARENT);
    for (const Line& line : lines) {
        box.bottom = box.top + lineHeight;
        if (box.bottom > area.bottom) return;
        box.left = area.left + (line.isTitle ? 0 : indent);
        const bool isSelected = line.mark != 0 && line.mark == selected;
        dc.SetTextColor(isSelected     ? palette::accent
                        : line.isTitle ? palette::label
                                       : palette::text);
        dc.DrawText(line.text, &box,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
        box.OffsetRect(0, lineHeight);
    }
}

} // namespace exam
