// utilsExam: the places of the application's own files, patients, studies and images, of files
// named in layout documents and of protocol files.
#include "Utils_Statics/utilsExam.h"

#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"

#include <base/FilePath.h>
#include <qor_utils/Profile.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>

using namespace utils_statics;

namespace {

// The program's file name as the platform reports it, or `fallbackName` in the application folder.
std::wstring ProgramFile(const wchar_t* fallbackName)
{
    wchar_t name[MAX_PATH] = {};
    const DWORD count = GetModuleFileNameW(nullptr, name, MAX_PATH);
    // Deliberate: the sign decides, not the 0 of a failure. A failure yields an empty text.
    if (static_cast<std::int32_t>(count) < 0)
        return zelPath::getPath(qor_utils::applicationStore, fallbackName);
    // The platform cuts a name of 260 characters or more, on old systems without the final zero.
    name[MAX_PATH - 1] = L'\0';
    return name;
}

// `path`, of any length, without its last component.
std::wstring WithoutLastComponent(std::wstring path)
{
    // The platform only shortens the text, so any length is safe. After a final colon it may read
    // one character past the end, which must be a second zero.
    path.push_back(L'\0');
    PathRemoveFileSpecW(path.data());
    path.resize(std::wcslen(path.c_str()));
    return path;
}

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
    std::replace(text.begin(), text.end(), L'\\', L'/');
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

// Protocols need not have these files, so a missing one is not logged.
bool IsOptional(const wchar_t* file)
{
    return _wcsicmp(file, L"worksheet.xml") == 0 || _wcsicmp(file, L"measurements-custom.xml") == 0;
}

// The name of the current protocol: saved files lie in a folder named like the factory folder.
std::wstring CurrentProtocolFolder()
{
    const std::wstring factory =
        base::WithoutTrailingSeparators(zelPath::getPath(qor_utils::currentFactoryStore, L""));
    return PathFindFileNameW(factory.c_str());
}

} // namespace

CString utilsExam::GetApplicationFilePath()
{
    return ToCString(ProgramFile(L"exam.exe"));
}

CString utilsExam::GetApplicationPath()
{
    return ToCString(base::WithTrailingBackslash(WithoutLastComponent(ProgramFile(L""))));
}

CString utilsExam::GetRegistryPath(const wchar_t* key, const wchar_t* defaultPath)
{
    // The setting is read without a default, so that a stored value that equals the default differs
    // from a missing one. Only a stored value gets the backslash.
    const std::wstring stored = qor_utils::ReadProfileString(L"System\\Path", OrEmpty(key), L"");
    if (stored.empty()) return CString(OrEmpty(defaultPath));
    return ToCString(base::WithTrailingBackslash(stored));
}

CString utilsExam::GetPatientRootPath()
{
    return ToCString(zelPath::getPath(qor_utils::patientDatabaseStore, L""));
}

CString utilsExam::GetObjectPath(const wchar_t* objectPath)
{
    return ToCString(NormalisedPath(objectPath, 1) + L".xml");
}

CString utilsExam::GetStudyPath(const wchar_t* objectPath)
{
    const std::wstring study = WithoutLastComponent(NormalisedPath(objectPath, 1));
    zelLogger::checkPath(environmentSource, messageStudyPathFault, study.c_str());
    return ToCString(study + L"\\study.xml");
}

CString utilsExam::GetPatientPath(const wchar_t* objectPath)
{
    const std::wstring study = WithoutLastComponent(NormalisedPath(objectPath, 1));
    return ToCString(WithoutLastComponent(study) + L"\\patient.xml");
}

std::wstring utilsExam::GetImage(const wchar_t* name)
{
    return zelPath::getPath(qor_utils::imagesStore, OrEmpty(name));
}

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

    std::replace(trimmed.begin(), trimmed.end(), L'\\', L'/');
    std::wstring candidate;
    if (FindLayoutFile(AsPlainAddress(folder), trimmed, candidate)) return ToCString(candidate);
    EnvironmentLog(messageLayoutFileMissing, 2)(L"Layout File - File %s not found.",
                                                candidate.c_str());
    return CString();
}

CString utilsExam::GetProtocolFile(const wchar_t* file)
{
    const CString saved = GetProtocolSavePath(file, nullptr);
    return PathFileExistsW(saved) ? saved : GetFactoryProtocolFile(file);
}

CString utilsExam::GetFactoryProtocolFile(const wchar_t* file)
{
    const std::wstring factory = zelPath::getPath(qor_utils::currentFactoryStore, OrEmpty(file));
    return PathExists(factory) ? ToCString(factory) : GetBaseProtocolFile(file);
}

CString utilsExam::GetBaseProtocolFile(const wchar_t* file)
{
    const std::wstring name = OrEmpty(file);
    std::wstring candidate;
    for (const qor_utils::Store store :
         {qor_utils::baseSuiteStore, qor_utils::secondBaseStore, qor_utils::fallbackFactoryStore}) {
        candidate = zelPath::getPath(store, name);
        if (PathExists(candidate)) return ToCString(candidate);
    }
    if (!IsOptional(name.c_str()))
        EnvironmentLog(messageProtocolFileMissing, 1)(
            L"Neither the Base Protocol Suite (%s) nor Factory Settings Folder (%s) contain %s.",
            zelPath::getPath(qor_utils::baseSuiteStore, L"").c_str(),
            zelPath::getPath(qor_utils::fallbackFactoryStore, L"").c_str(), name.c_str());
    return ToCString(candidate); // the last one tried: callers test for existence themselves
}

CString utilsExam::GetProtocolSavePath(const wchar_t* file, const wchar_t* folder)
{
    const std::wstring saved =
        zelPath::getPath(qor_utils::savedProtocolsStore, folder ? folder : CurrentProtocolFolder());
    if (!PathExists(saved)) CreateDirectoryW(saved.c_str());
    return ToCString(base::WithoutTrailingSeparators(saved) + L"\\" + OrEmpty(file));
}
