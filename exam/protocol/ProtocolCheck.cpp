#include "protocol/ProtocolCheck.h"

#include "base/Console.h"
#include "base/FileReader.h"
#include "panel/PanelLayout.h"
#include "protocol/FileChecks.h"

#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/zelXMLFile.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <set>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* actionsName = L"ButtonActions.xml";
constexpr const wchar_t* statesName = L"button_states.xml";

// File names are compared without case, as the file system does.
bool IsNamed(const std::wstring& path, const wchar_t* name)
{
    return _wcsicmp(fs::path(path).filename().c_str(), name) == 0;
}

bool IsProtocolFile(const std::wstring& path)
{
    return IsNamed(path, actionsName) || IsNamed(path, statesName) || IsNamed(path, panelFileName);
}

// Lists all protocol files in a folder and below it, ordered by path. False when a folder cannot be
// read.
bool ListFiles(const std::wstring& folder, std::vector<std::wstring>& files)
{
    std::error_code error;
    fs::recursive_directory_iterator entry(fs::path(folder), error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
        if (IsProtocolFile(entry->path().wstring())) files.push_back(entry->path().wstring());
    std::sort(files.begin(), files.end());
    return !error;
}

std::wstring FaultOf(int line)
{
    if (line > 0) return L"the whole file is ignored: it is not well-formed here";
    return L"the whole file is ignored: it cannot be read as XML";
}

// Checks all files of a name.
template <class Check>
void CheckFiles(ProtocolCheck& result, const wchar_t* name, const Check& check)
{
    for (const std::wstring& path : result.files) {
        if (!IsNamed(path, name)) continue;
        Findings findings(path, result.findings);
        zelXMLFile file;
        if (file.open(path, true)) {
            check(file.getRootElement(), findings);
            continue;
        }
        const int line = zel_xml::FaultLineOf(path.c_str());
        findings.Add(line, FaultOf(line));
    }
}

std::wstring Count(std::size_t number, const wchar_t* one, const wchar_t* several)
{
    return std::to_wstring(number) + L" " + (number == 1 ? one : several);
}

// Orders by file, and within a file by line.
bool IsBefore(const Finding& a, const Finding& b)
{
    return a.path != b.path ? a.path < b.path : a.line < b.line;
}

} // namespace

ProtocolCheck FindIgnored(const std::wstring& folder)
{
    ProtocolCheck result;
    if (KindOfFile(folder) != FileKind::folder)
        result.problem = L"there is no such folder";
    else if (!ListFiles(folder, result.files))
        result.problem = L"the folder cannot be read";
    else if (result.files.empty())
        result.problem = L"there are no protocol files";
    if (!result.problem.empty()) return result;
    std::set<std::wstring> buttons;
    CheckFiles(result, actionsName, [&](const zelXMLNode& root, Findings& findings) {
        CheckButtonActions(root, buttons, findings);
    });
    CheckFiles(result, statesName, [](const zelXMLNode& root, Findings& findings) {
        CheckButtonStates(root, findings);
    });
    CheckFiles(result, panelFileName, [&](const zelXMLNode& root, Findings& findings) {
        CheckPanel(root, buttons, findings);
    });
    std::stable_sort(result.findings.begin(), result.findings.end(), IsBefore);
    return result;
}

bool CheckProtocol(const std::wstring& folder)
{
    const ProtocolCheck check = FindIgnored(folder);
    if (!check.problem.empty()) return Fail(folder + L": " + check.problem);
    for (const Finding& finding : check.findings)
        WriteOut(finding.ToLine() + L"\n");
    WriteOut(Count(check.files.size(), L"file", L"files") + L", " +
             Count(check.findings.size(), L"finding", L"findings") + L"\n");
    return check.findings.empty();
}

} // namespace exam
