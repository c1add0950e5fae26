#include "study/MeasurementTable.h"

#include "study/StudyTexts.h"

#include <base/Encoding.h>

#include <iterator>
#include <vector>

namespace exam {

namespace {

constexpr const char* byteOrderMark = "\xEF\xBB\xBF";

// One decimal more than readers are shown, because tables are computed with.
constexpr int furtherDecimals = 1;

constexpr const char* columns[] = {
    "study.column.patient", "study.column.number", "study.column.kind",
    "study.column.name",    "study.column.object", "study.column.frame",
    "study.column.value",   "study.column.amount", "study.column.unit"};

// Writes rows of fields.
class Table
{
public:
    void AddRow(const std::vector<std::wstring>& fields)
    {
        for (std::size_t i = 0; i < fields.size(); ++i)
            m_text += (i > 0 ? m_separator : L"") + Quoted(fields[i]);
        m_text += L"\r\n";
    }

    const std::wstring& Text() const { return m_text; }

private:
    std::wstring Quoted(const std::wstring& field) const
    {
        if (field.find_first_of(L"\"\r\n" + m_separator) == std::wstring::npos) return field;
        std::wstring quoted = L"\"";
        for (const wchar_t character : field)
            quoted.append(character == L'"' ? 2 : 1, character);
        return quoted + L"\"";
    }

    std::wstring m_separator = TextOf("study.number.separator");
    std::wstring m_text;
};

void AddMeasurement(Table& table, const Mark& mark, const StudyContent& study)
{
    const std::vector<std::wstring> head = {
        study.patient.id, std::to_wstring(mark.number), TextOf(InfoOf(mark.kind).key),
        mark.text,        ObjectNameOf(mark, study),    FrameText(mark)};
    const std::vector<MarkValue> values = ValuesOf(mark, study);
    for (const MarkValue& each : values) {
        const MarkValue value = AsShown(each);
        std::vector<std::wstring> row = head;
        row.push_back(TextOf(value.nameKey));
        row.push_back(NumberText(value.value, value.decimals + furtherDecimals));
        row.push_back(TextOf(value.unitKey));
        table.AddRow(row);
    }
    if (!values.empty()) return;
    std::vector<std::wstring> row = head;
    row.resize(std::size(columns));
    table.AddRow(row);
}

} // namespace

std::string MeasurementTable(const StudyContent& study)
{
    Table table;
    std::vector<std::wstring> heads;
    for (const char* const column : columns)
        heads.push_back(TextOf(column));
    table.AddRow(heads);
    for (const Shared<Mark>& mark : study.marks)
        if (InfoOf(mark->kind).isMeasurement) AddMeasurement(table, *mark, study);
    return byteOrderMark + base::Utf8FromWide(table.Text());
}

} // namespace exam
