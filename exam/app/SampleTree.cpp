#include "app/SampleTree.h"

#include "base/FileReader.h"

#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <Utils_Statics/MfcConversions.h>
#include <Utils_Statics/utilsExam.h>

#include <shellapi.h>

#include <cstdlib>

namespace exam {

namespace {

std::wstring ApplicationFolder()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetApplicationPath());
}

} // namespace

void InstallStores(const std::wstring& userFolder)
{
    const std::wstring sample = ApplicationFolder() + L"sample\\";
    qor_utils::SetStoreFolder(qor_utils::applicationStore, ApplicationFolder());
    qor_utils::SetStoreFolder(qor_utils::imagesStore, sample + L"images");
    qor_utils::SetStoreFolder(qor_utils::patientDatabaseStore, userFolder + L"\\patients");
    qor_utils::SetStoreFolder(qor_utils::layoutStore, sample + L"layout");
    qor_utils::SetStoreFolder(qor_utils::fallbackLayoutStore, sample + L"layout-fallback");
    qor_utils::SetStoreFolder(qor_utils::baseSuiteStore, sample + L"protocols\\suite");
    qor_utils::SetStoreFolder(qor_utils::secondBaseStore, sample + L"protocols\\second");
    qor_utils::SetStoreFolder(qor_utils::fallbackFactoryStore, sample + L"protocols\\base");
    qor_utils::SetStoreFolder(qor_utils::currentFactoryStore,
                              sample + L"protocols\\factory\\Abdomen");
    qor_utils::SetStoreFolder(qor_utils::savedProtocolsStore, userFolder + L"\\protocols");
}

std::wstring PreparePatients(const std::wstring& userFolder)
{
    const std::wstring patients = userFolder + L"\\patients";
    if (KindOfFile(patients) == FileKind::missing) // a failure shows when the study is opened
        utilsExam::SHFileOperationW(FO_COPY, (ApplicationFolder() + L"sample\\patients").c_str(),
                                    patients.c_str(), TRUE, 0, nullptr, nullptr, nullptr);
    return patients + L"\\P1\\S1";
}

std::wstring StringTableFolder()
{
    return ApplicationFolder() + L"sample\\strings";
}

std::wstring VocabularyFile()
{
    return ApplicationFolder() + L"sample\\actions.xml";
}

std::wstring DefaultUserFolder()
{
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return std::wstring(local ? local : L".") + L"\\Kestrow\\Exam";
}

} // namespace exam
