// Station 2: paths, directories and the layers of protocol files.
#include "tour/Tour.h"

#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <Utils_Statics/utilsExam.h>

#include <filesystem>
#include <fstream>

namespace exam {

namespace {

namespace fs = std::filesystem;

bool Exists(const CString& path)
{
    return fs::exists(fs::path(path.GetString()));
}

void PatientDatabase(TourReport& report)
{
    const CString object = utilsExam::GetPatientRootPath() + L"P1\\S1\\O1";
    report.Step(Exists(utilsExam::GetObjectPath(object)) &&
                    Exists(utilsExam::GetStudyPath(object)) &&
                    Exists(utilsExam::GetPatientPath(object)),
                L"object, study and patient files of the sample study are found");
}

void Layout(TourReport& report)
{
    const std::wstring document =
        L"file:///" + zelPath::getPath(qor_utils::layoutStore, L"main.xml");
    report.Step(
        Exists(utilsExam::ParsePath(document.c_str(), L"mark.txt")) &&
            Exists(utilsExam::ParsePath(document.c_str(), L"caption.txt")) &&
            Exists(utilsExam::ParsePath(document.c_str(), L"fallback.txt")),
        L"layout files are found beside the document, in its resources and in the fall-back store");
}

void ProtocolLayers(TourReport& report)
{
    report.Step(utilsExam::GetProtocolFile(L"measurements.xml") ==
                    zelPath::getPath(qor_utils::currentFactoryStore, L"measurements.xml").c_str(),
                L"a protocol file comes from the factory settings");
    const CString saved = utilsExam::GetProtocolSavePath(L"measurements.xml", nullptr);
    std::ofstream(fs::path(saved.GetString())) << "<measurements layer=\"saved\"/>\n";
    report.Step(utilsExam::GetProtocolFile(L"measurements.xml") == saved,
                L"the user's copy comes before it");
    fs::remove(fs::path(saved.GetString()));
    report.Step(utilsExam::GetProtocolFile(L"annotations.xml") ==
                        zelPath::getPath(qor_utils::baseSuiteStore, L"annotations.xml").c_str() &&
                    utilsExam::GetProtocolFile(L"bodymarks.xml") ==
                        zelPath::getPath(qor_utils::secondBaseStore, L"bodymarks.xml").c_str(),
                L"files that it lacks come from the two base folders");
}

void Directories(TourContext& context)
{
    const std::wstring root = context.folder + L"\\directories";
    const bool made = utilsExam::CreateDirectoryW((root + L"/a//b").c_str()) != 0;
    std::ofstream(fs::path(root) / L"a" / L"b" / L"data.bin") << std::string(1000, 'x');
    const bool measured = utilsExam::GetDirectorySize(root.c_str()) == 1000;
    utilsExam::RemoveDirectoryW(root.c_str(), TRUE);
    context.report.Step(made && measured && !fs::exists(root),
                        L"a tree is made, measured and removed");
}

} // namespace

void TourPaths(TourContext& context)
{
    PatientDatabase(context.report);
    Layout(context.report);
    ProtocolLayers(context.report);
    Directories(context);
}

} // namespace exam
