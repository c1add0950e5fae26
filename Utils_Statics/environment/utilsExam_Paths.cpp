// utilsExam: the places of the application's own files, patients, studies, images and layout
// resources.
#include "Utils_Statics/utilsExam.h"

#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"
#include "text/TextView.h"

#include <qor_utils/Profile.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

#include <cstdint>

using namespace utils_statics;

namespace {

// The program's file name as the platform reports it, or `fallbackName` in the application folder.
PathBuffer ProgramFile(const wchar_t* fallbackName)
{
    PathBuffer buffer(std::wstring{});
    const DWORD count = GetModuleFileNameW(nullptr, buffer.data(), MAX_PATH);
    // Deliberate: the sign decides, not the 0 of a failure. A failure yields an empty text.
    if (static_cast<std::int32_t>(count) < 0)
        return PathBuffer(zelPath::getPath(qor_utils::applicationStore, fallbackName));
    // The platform cuts a name of 260 characters or more, on old systems without the final zero.
    buffer.data()[MAX_PATH - 1] = L'\0';
    return buffer;
}

} // namespace

CString utilsExam::GetApplicationFilePath()
{
    return ToCString(ProgramFile(L"exam.exe").Text());
}

CString utilsExam::GetApplicationPath()
{
    PathBuffer buffer = ProgramFile(L"");
    PathRemoveFileSpecW(buffer.data());
    PathAddBackslashW(buffer.data());
    return ToCString(buffer.Text());
}

CString utilsExam::GetRegistryPath(const wchar_t* key, const wchar_t* defaultPath)
{
    // The setting is read without a default, so that a stored value that equals the default differs
    // from a missing one. Only a stored value gets the backslash.
    std::wstring stored = qor_utils::ReadProfileString(L"System\\Path", OrEmpty(key), L"");
    if (stored.empty()) return CString(OrEmpty(defaultPath));
    EnsureTrailingBackslash(stored);
    return ToCString(stored);
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
