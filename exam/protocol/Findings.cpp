#include "protocol/Findings.h"

#include <zel_xml/XMLDiagnosis.h>

#include <utility>

namespace exam {

std::wstring Finding::ToLine() const
{
    return path + (line > 0 ? L":" + std::to_wstring(line) : L"") + L": " + text;
}

Findings::Findings(std::wstring path, std::vector<Finding>& all)
    : m_path(std::move(path)), m_all(all)
{
}

void Findings::Add(const zelXMLNode& at, const std::wstring& text)
{
    AddAt(zel_xml::LineOf(at), text);
}

void Findings::AddAt(int line, const std::wstring& text)
{
    m_all.push_back({m_path, line, text});
}

} // namespace exam
