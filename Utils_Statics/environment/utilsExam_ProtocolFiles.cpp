// utilsExam: the copy of a protocol file that is in force, and the place to save a changed copy.
#include "Utils_Statics/utilsExam.h"

#include "environment/EnvironmentLog.h"
#include "environment/PathText.h"
#include "text/TextView.h"

#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

#include <cwchar>

using namespace utils_statics;

namespace {

// Protocols need not have these files, so a missing one is not logged.
bool IsOptional(const wchar_t* file)
{
    return _wcsicmp(file, L"worksheet.xml") == 0 || _wcsicmp(file, L"measurements-custom.xml") == 0;
}

// The name of the current protocol: saved files lie in a folder named like the factory folder.
std::wstring CurrentProtocolFolder()
{
    std::wstring factory = zelPath::getPath(qor_utils::currentFactoryStore, L"");
    StripTrailingSeparators(factory);
    return PathFindFileNameW(factory.c_str());
}

} // namespace

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
    std::wstring saved =
        zelPath::getPath(qor_utils::savedProtocolsStore, folder ? folder : CurrentProtocolFolder());
    if (!PathExists(saved)) CreateDirectoryW(saved.c_str());
    StripTrailingSeparators(saved);
    return ToCString(saved + L"\\" + OrEmpty(file));
}
