#include "study/ReportPage.h"

#include "study/StudyTexts.h"

#include <base/Encoding.h>
#include <zel_string_convert/TableLoading.h>

#include <utility>

namespace exam {

namespace {

constexpr const char* style = R"(
body { font: 11pt/1.4 "Segoe UI", "Helvetica Neue", Arial, sans-serif; color: #1c2126;
  max-width: 180mm; margin: 12mm auto; padding: 0 4mm; }
h1 { font-size: 18pt; margin: 0 0 4mm; }
h2 { font-size: 13pt; margin: 8mm 0 2mm; border-bottom: 1px solid #8a949e; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; vertical-align: top; padding: 1mm 3mm 1mm 0; white-space: pre-wrap;
  overflow-wrap: anywhere; }
th, td:nth-child(2):not(:last-child) { overflow-wrap: break-word; }
h1 + table th { width: 50mm; }
th { font-weight: 600; }
tr + tr { border-top: 1px solid #d5dade; }
figure { margin: 0 0 5mm; break-inside: avoid; }
img { max-width: 100%; max-height: 110mm; }
figcaption { color: #4a545e; }
@media (max-width: 600px) { body { font-size: 9pt; } h1 + table th { width: 30mm; } }
@page { margin: 15mm; }
@media print { body { margin: 0; padding: 0; max-width: none; } tr { break-inside: avoid; } }
)";

// A text as it may stand between tags and in an attribute.
std::string Escaped(const std::wstring& text)
{
    std::wstring escaped;
    for (const wchar_t character : text) {
        switch (character) {
        case L'&': escaped += L"&amp;"; break;
        case L'<': escaped += L"&lt;"; break;
        case L'>': escaped += L"&gt;"; break;
        case L'"': escaped += L"&quot;"; break;
        case L'\'': escaped += L"&#39;"; break;
        default: escaped += character;
        }
    }
    return base::Utf8FromWide(escaped);
}

std::string Element(const std::string& tag, const std::string& content)
{
    return "<" + tag + ">" + content + "</" + tag + ">\n";
}

std::string TextElement(const std::string& tag, const std::wstring& text)
{
    return Element(tag, Escaped(text));
}

// Writes the three bytes from `at` on in the alphabet of RFC 4648, with zeros behind the end.
void AppendBase64(std::string& text, const std::string& bytes, std::size_t at)
{
    constexpr const char* alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    unsigned int bits = 0;
    for (std::size_t i = at; i < at + 3; ++i)
        bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0);
    for (int shift = 18; shift >= 0; shift -= 6)
        text += alphabet[bits >> shift & 63];
}

std::string Base64(const std::string& bytes)
{
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3)
        AppendBase64(text, bytes, at);
    const std::size_t padding = (3 - bytes.size() % 3) % 3;
    return text.replace(text.size() - padding, padding, padding, '=');
}

std::string Row(const std::string& tag, const std::vector<std::wstring>& cells)
{
    std::string row;
    for (const std::wstring& cell : cells)
        row += TextElement(tag, cell);
    return Element("tr", row);
}

std::string PatientTable(const StudyContent& study)
{
    const Patient& patient = study.patient;
    const std::pair<const char*, std::wstring> lines[] = {
        {"study.patient.name", patient.name},
        {"study.patient.id", patient.id},
        {"study.patient.birth", patient.birth},
        {"study.patient.sex", SexText(patient.sex)},
        {"study.patient.age", AgeText(patient, study.date)},
        {"study.report.date", study.date},
        {"study.report.study", study.description},
        {"study.patient.comment", patient.comment}};
    std::string rows;
    for (const auto& [key, text] : lines)
        if (!text.empty())
            rows += Element("tr", TextElement("th", TextOf(key)) + TextElement("td", text));
    return Element("table", rows);
}

std::string Pictures(const std::vector<ReportPicture>& pictures)
{
    std::string figures;
    for (const ReportPicture& picture : pictures)
        figures += Element("figure", "<img src=\"data:image/png;base64," + Base64(picture.png) +
                                         "\" alt=\"" + Escaped(picture.caption) + "\">" +
                                         TextElement("figcaption", picture.caption));
    return figures;
}

std::wstring ValueLines(const Mark& mark, const StudyContent& study)
{
    std::wstring lines;
    for (const MarkValue& value : ValuesOf(mark, study))
        lines += (lines.empty() ? L"" : L"\n") + ValueText(value);
    return lines;
}

// The measurements or the annotations, with the values that they have; empty when there are none.
std::string MarkTable(const StudyContent& study, bool measurements)
{
    std::string rows;
    for (const Shared<Mark>& mark : study.marks) {
        if (InfoOf(mark->kind).isMeasurement != measurements) continue;
        std::vector<std::wstring> cells = {std::to_wstring(mark->number),
                                           TextOf(InfoOf(mark->kind).key), TextOf(*mark),
                                           ObjectNameOf(*mark, study), FrameText(*mark)};
        if (measurements) cells.push_back(ValueLines(*mark, study));
        rows += Row("td", cells);
    }
    if (rows.empty()) return {};
    std::vector<std::wstring> heads = {TextOf("study.column.number"), TextOf("study.column.kind"),
                                       TextOf("study.column.name"), TextOf("study.column.object"),
                                       TextOf("study.column.frame")};
    if (measurements) heads.push_back(TextOf("study.report.values"));
    return Element("table", Row("th", heads) + rows);
}

std::string Section(const char* titleKey, const std::string& content)
{
    return content.empty() ? std::string() : TextElement("h2", TextOf(titleKey)) + content;
}

} // namespace

std::string ReportPage(const StudyContent& study, const std::vector<ReportPicture>& pictures)
{
    const std::wstring title = TextOf("study.report.title");
    const std::wstring& name = study.patient.name;
    const std::string head = "<meta charset=\"utf-8\">\n" +
                             TextElement("title", name.empty() ? title : title + L" - " + name) +
                             Element("style", style);
    const std::string body = TextElement("h1", title) + PatientTable(study) +
                             Section("study.report.pictures", Pictures(pictures)) +
                             Section("study.report.measurements", MarkTable(study, true)) +
                             Section("study.report.annotations", MarkTable(study, false));
    return "<!DOCTYPE html>\n<html lang=\"" + Escaped(zel_string_convert::CurrentLanguage()) +
           "\">\n" + Element("head", head) + Element("body", body) + "</html>\n";
}

} // namespace exam
