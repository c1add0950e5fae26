#include "app/SampleTree.h"

#include <Utils_Statics/MfcConversions.h>
#include <Utils_Statics/utilsExam.h>
#include <qor_utils/zelPath.h>

#include <cstdlib>

namespace exam {

namespace {

// The store numbers that the libraries ask for.
enum Store
{
    storeApplication = 0,
    storeBaseProtocol = 1,
    storeImages = 2,
    storeLayout = 9,
    storeLayoutFallBack = 21,
    storeSavedProtocols = 22,
    storePatients = 34,
    storeFactory = 37,
    storeSuite = 38,
    storeSuiteSecond = 39
};

std::wstring ApplicationFolder()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetApplicationPath());
}

} // namespace

void InstallStores(const std::wstring& userFolder)
{
    const std::wstring sample = ApplicationFolder() + L"sample\\";
    zelPath::setPath(storeApplication, ApplicationFolder());
    zelPath::setPath(storeImages, sample + L"images");
    zelPath::setPath(storePatients, sample + L"patients");
    zelPath::setPath(storeLayout, sample + L"layout");
    zelPath::setPath(storeLayoutFallBack, sample + L"layout-fallback");
    zelPath::setPath(storeSuite, sample + L"protocols\\suite");
    zelPath::setPath(storeSuiteSecond, sample + L"protocols\\second");
    zelPath::setPath(storeBaseProtocol, sample + L"protocols\\base");
    zelPath::setPath(storeFactory, sample + L"protocols\\factory\\Abdomen");
    zelPath::setPath(storeSavedProtocols, userFolder + L"\\protocols");
}

std::wstring StringTableFolder()
{
    return ApplicationFolder() + L"sample\\strings";
}

std::wstring DefaultUserFolder()
{
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return std::wstring(local ? local : L".") + L"\\Kestrow\\Exam";
}

} // namespace exam
