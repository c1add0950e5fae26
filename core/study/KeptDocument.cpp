#include "study/KeptDocument.h"

#include "base/FileReader.h"

#include <Utils_Statics/GetStr.h>
#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>

#include <algorithm>
#include <iterator>

namespace exam {

namespace {

// The elements that the writer makes by itself.
constexpr const wchar_t* knownElements[] = {L"object", L"acquisition", L"mark", L"point"};

bool IsKnown(const std::wstring& name)
{
    return std::ranges::find(knownElements, name) != std::end(knownElements);
}

bool IsBlank(const std::wstring& text)
{
    return text.find_first_not_of(L" \t\r\n") == std::wstring::npos;
}

void CopyAttributes(const zelXMLNode& from, const zelXMLNode& to)
{
    for (const std::wstring& name : zel_xml::AttributeNamesOf(from))
        if (!zel_xml::HasAttribute(to, name.c_str()))
            to.setAttribute(name.c_str(), from.getAttribute(name.c_str()));
}

void CopyChild(const zelXMLNode& child, const zelXMLNode& parent)
{
    CopyElement(child, zel_xml::AppendChild(parent, zel_xml::NameOf(child).c_str()));
}

std::wstring Sentence(const char* key, const std::wstring& path)
{
    return GetStr(key, path.c_str()).GetString();
}

std::wstring UnreadableSentence(const std::wstring& path)
{
    const int line = zel_xml::FaultLineOf(path.c_str());
    if (line == 0) return Sentence("study.problem.unreadable", path);
    return GetStr("study.problem.damaged", path.c_str(), line).GetString();
}

} // namespace

std::wstring KeptDocument::Open(const std::wstring& path, const wchar_t* rootName)
{
    m_path = path;
    m_rootName = rootName;
    zel_xml::CloseDocument(m_read);
    if (KindOfFile(path) == FileKind::missing) return {};
    zelXMLFile file;
    if (!file.open(path, true)) return UnreadableSentence(path);
    const zelXMLNode root = file.getRootElement();
    if (zel_xml::NameOf(root) != rootName) return Sentence("study.problem.foreign", path);
    const int itsFormat = root.getAttributeInt(
        L"format", zel_xml::HasAttribute(root, L"format") ? format + 1 : format);
    if (itsFormat > format) return Sentence("study.problem.newer", path);
    m_read = file;
    return {};
}

std::wstring KeptDocument::Save(const std::function<void(const zelXMLNode&)>& fill) const
{
    zelXMLFile written;
    if (zel_xml::CreateDocument(written, m_path.c_str(), m_rootName.c_str())) {
        const zelXMLNode root = written.getRootElement();
        root.setAttributeInt(L"format", format);
        fill(root);
        CarryOver(Root(), root);
        if (zel_xml::SaveDocument(written)) return {};
    }
    return Sentence("study.problem.unwritable", m_path);
}

void CarryOver(const zelXMLNode& from, const zelXMLNode& to)
{
    CopyAttributes(from, to);
    for (zelXMLNode child = from.getFirstChild(); child.isValid(); ++child)
        if (!IsKnown(zel_xml::NameOf(child))) CopyChild(child, to);
}

void CopyElement(const zelXMLNode& from, const zelXMLNode& to)
{
    CopyAttributes(from, to);
    if (const std::wstring text = zel_xml::TextOf(from); !IsBlank(text)) zel_xml::SetText(to, text);
    for (zelXMLNode child = from.getFirstChild(); child.isValid(); ++child)
        CopyChild(child, to);
}

} // namespace exam
