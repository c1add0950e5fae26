// utilsExam: files named in layout documents.
#include "Utils_Statics/utilsExam.h"

#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"
#include "text/TextView.h"

#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

using namespace utils_statics;

namespace {

// The text before the first occurrence of the file's name. Deliberate: a folder whose name contains
// the file's name cuts early.
std::wstring FolderOfReference(const wchar_t* referenceFile)
{
    const std::wstring reference = OrEmpty(referenceFile);
    return reference.substr(0, reference.find(PathFindFileNameW(reference.c_str())));
}

// Writes the text like an address: with forward slashes only and without the scheme.
std::wstring AsPlainAddress(std::wstring text)
{
    ReplaceAll(text, L'\\', L'/');
    RemoveAll(text, L"file:///");
    return text;
}

// Finds the first candidate that exists. False with the last candidate when none does.
bool FindLayoutFile(const std::wstring& folder, const std::wstring& path, std::wstring& candidate)
{
    candidate = folder + path;
    if (PathExists(candidate)) return true;
    candidate = folder + L"res/" + path;
    if (PathExists(candidate)) return true;
    candidate = zelPath::getPath(qor_utils::layoutStore, path);
    if (PathExists(candidate)) return true;
    candidate = zelPath::getPath(qor_utils::layoutStore, L"res/" + path);
    if (PathExists(candidate)) return true;
    candidate = zelPath::getPath(qor_utils::fallbackLayoutStore, path);
    return PathExists(candidate);
}

} // namespace

CString utilsExam::ParsePath(const wchar_t* referenceFile, const wchar_t* path)
{
    CString trimmedText(OrEmpty(path));
    trimmedText.Trim();
    std::wstring trimmed = trimmedText.GetString();
    if (trimmed.empty() || !PathIsRelativeW(trimmed.c_str())) return trimmedText;

    const std::wstring folder = FolderOfReference(referenceFile);
    // This is meant for "..", but only the second character counts, so "a.png" matches too.
    if (trimmed.size() > 1 && trimmed[1] == L'.')
        return ToCString(AsPlainAddress(folder + trimmed));

    ReplaceAll(trimmed, L'\\', L'/');
    std::wstring candidate;
    if (FindLayoutFile(AsPlainAddress(folder), trimmed, candidate)) return ToCString(candidate);
    EnvironmentLog(messageLayoutFileMissing, 2)(L"Layout File - File %s not found.",
                                                candidate.c_str());
    return CString();
}
