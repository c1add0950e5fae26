#pragma once

#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/zelXMLNode.h>

#include <string>
#include <utility>
#include <vector>

namespace exam {

/// Something in a protocol file that will be ignored.
struct Finding
{
    std::wstring path;
    int line; ///< 0: the finding is about the whole file
    std::wstring text;

    /// "path:line: text", the form that compilers and editors use.
    std::wstring ToLine() const
    {
        return path + (line > 0 ? L":" + std::to_wstring(line) : L"") + L": " + text;
    }
};

/// Collects the findings of one file.
class Findings
{
public:
    Findings(std::wstring path, std::vector<Finding>& all) : m_path(std::move(path)), m_all(all) {}

    /// Adds a finding on a line.
    void Add(int line, const std::wstring& text) { m_all.push_back({m_path, line, text}); }

    /// Adds a finding on the line that an element begins on.
    void Add(const zelXMLNode& at, const std::wstring& text) { Add(zel_xml::LineOf(at), text); }

private:
    std::wstring m_path;
    std::vector<Finding>& m_all;
};

} // namespace exam
