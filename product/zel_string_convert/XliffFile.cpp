#include "XliffFile.h"

#include <base/Encoding.h>
#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <algorithm>
#include <string_view>

namespace zel_string_convert {
namespace {

// Thrown and caught in this file only.
struct NotATable
{
    std::wstring reason;
};

void OpenDocument(const std::wstring& path, zelXMLFile& file)
{
    if (file.open(path, true)) return;
    const int line = zel_xml::FaultLineOf(path.c_str());
    if (line > 0) throw NotATable{L"is not well-formed XML on line " + std::to_wstring(line)};
    throw NotATable{L"cannot be read as XML"};
}

std::wstring LocalName(const zelXMLNode& element)
{
    const std::wstring name = zel_xml::NameOf(element);
    return name.substr(name.find(L':') + 1); // without a prefix, npos + 1 is 0
}

zelXMLNode ChildNamed(const zelXMLNode& parent, std::wstring_view name)
{
    zelXMLNode child = parent.getFirstChild();
    while (child.isValid() && LocalName(child) != name)
        ++child;
    return child;
}

// The text includes that of all nested elements, because inline elements mark or protect parts of
// it.
std::optional<std::wstring> TargetOf(const zelXMLNode& unit)
{
    const zelXMLNode target = ChildNamed(unit, L"target");
    const std::wstring state = target.getAttribute(L"state");
    if (state == L"new" || state == L"needs-translation") return std::nullopt;
    std::wstring text = zel_xml::AllTextOf(target);
    if (text.empty()) return std::nullopt; // translators' tools leave an untranslated text empty
    return text;
}

XliffUnit ReadUnit(const zelXMLNode& element)
{
    const zelXMLNode source = ChildNamed(element, L"source");
    XliffUnit unit{base::Utf8FromWide(element.getAttribute(L"id")), zel_xml::AllTextOf(source),
                   TargetOf(element)};
    if (unit.key.empty()) throw NotATable{L"has a trans-unit without an id"};
    if (!source.isValid()) throw NotATable{L"has a trans-unit without a source"};
    return unit;
}

// Reads the units in an element and in its bodies and groups. It skips headers, whose skeleton may
// be any XML, bin-units, and the alt-trans of a unit.
void ReadUnits(const zelXMLNode& parent, std::vector<XliffUnit>& units)
{
    for (zelXMLNode child = parent.getFirstChild(); child.isValid(); ++child) {
        const std::wstring name = LocalName(child);
        if (name == L"trans-unit") units.push_back(ReadUnit(child));
        if (name == L"body" || name == L"group") ReadUnits(child, units);
    }
}

XliffSection ReadSection(const zelXMLNode& file)
{
    XliffSection section{
        file.getAttribute(L"source-language"), file.getAttribute(L"target-language"), {}};
    if (section.sourceLanguage.empty())
        throw NotATable{L"has a file element without a source-language"};
    ReadUnits(file, section.units);
    const bool hasTarget = std::any_of(section.units.begin(), section.units.end(),
                                       [](const XliffUnit& unit) { return unit.target; });
    if (hasTarget && section.targetLanguage.empty())
        throw NotATable{L"has a target in a file element without a target-language"};
    return section;
}

std::vector<XliffSection> ReadDocument(const std::wstring& path)
{
    zelXMLFile document;
    OpenDocument(path, document);
    const zelXMLNode root = document.getRootElement();
    if (LocalName(root) != L"xliff" || root.getAttribute(L"version") != L"1.2")
        throw NotATable{L"is not XLIFF 1.2"};
    std::vector<XliffSection> sections;
    for (zelXMLNode child = root.getFirstChild(); child.isValid(); ++child)
        if (LocalName(child) == L"file") sections.push_back(ReadSection(child));
    if (sections.empty()) throw NotATable{L"has no file element"};
    return sections;
}

} // namespace

std::optional<std::vector<XliffSection>> ReadXliffFile(const std::wstring& path,
                                                       std::wstring& error)
try {
    return ReadDocument(path);
} catch (const NotATable& fault) {
    error = path + L" " + fault.reason;
    return std::nullopt;
}

} // namespace zel_string_convert
