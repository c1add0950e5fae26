// Folders, files, settings, protocols and archives.
#include "Script.h"

#include "FaultPoints.h"

#include <base/InFolder.h>
#include <qor_utils/HostProfile.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_xml/zelXMLFile.h>

#include <filesystem>

namespace faults {

namespace {

using test_support::TemporaryFolder;
using test_support::WriteFile;

bool Exists(const std::wstring& path)
{
    return test_support::FileExists(path);
}

std::vector<Step> FolderSteps(const TemporaryFolder& folder)
{
    const std::wstring deep = folder / L"new\\deep";
    const std::wstring full = folder / L"full";
    const std::wstring file = folder / L"file.txt";
    const std::wstring copy = folder / L"copy.txt";
    return {
        {"CreateDirectoryW",
         [=](Outcome& outcome) {
             std::filesystem::remove_all(std::filesystem::path(deep).parent_path());
             outcome.Result(utilsExam::CreateDirectoryW(deep.c_str()) != 0);
             outcome.Sees(Exists(deep));
         }},
        {"RemoveDirectoryW",
         [=](Outcome& outcome) {
             std::filesystem::create_directories(full);
             WriteFile(full + L"\\file", "content");
             utilsExam::RemoveDirectoryW(full.c_str(), TRUE);
             outcome.Sees(Exists(full));
         },
         false},
        {"GetDirectorySize",
         [=](Outcome& outcome) {
             std::filesystem::create_directories(full + L"\\below");
             WriteFile(full + L"\\file", "content");
             WriteFile(full + L"\\below\\file", "content");
             const auto size = utilsExam::GetDirectorySize(full.c_str());
             outcome.Result(size == 14); // what cannot be enumerated counts as nothing
             outcome.Sees(size <= 14);
         }},
        {"GetFileData",
         [=](Outcome& outcome) {
             WIN32_FIND_DATAW data = {};
             WriteFile(file, "content");
             const bool found = utilsExam::GetFileData(file.c_str(), &data) != 0;
             outcome.Result(found);
             if (found) outcome.Sees(data.cFileName);
         }},
        {"SHFileOperationW",
         [=](Outcome& outcome) {
             DeleteFileW(copy.c_str());
             WriteFile(file, "content");
             outcome.Result(utilsExam::SHFileOperationW(FO_COPY, file.c_str(), copy.c_str(), 1, 0,
                                                        nullptr, nullptr, nullptr) != 0);
             outcome.Sees(Content(copy));
         }},
        {"CheckFileIsWritable",
         [=](Outcome& outcome) {
             WriteFile(file, "content");
             SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
             outcome.Result(utilsExam::CheckFileIsWritable(file.c_str()));
             outcome.Sees(GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_READONLY);
             SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
         }},
        {"FindFirstRemovableDrive",
         [](Outcome& outcome) {
             CString drive;
             outcome.Result(utilsExam::FindFirstRemovableDrive(drive));
             outcome.Sees(drive.GetString());
         }},
    };
}

std::vector<Step> PathSteps(const TemporaryFolder& folder)
{
    const std::wstring document = folder / L"layout.xml";
    const auto text = [](const char* name, CString (*get)()) {
        return Step{name, [=](Outcome& outcome) { outcome.Text(get().GetString()); }};
    };
    return {
        text("GetApplicationFilePath", utilsExam::GetApplicationFilePath),
        text("GetApplicationPath", utilsExam::GetApplicationPath),
        text("GetPatientRootPath", utilsExam::GetPatientRootPath),
        text("GetStudyPath", [] { return utilsExam::GetStudyPath(L"D:/db/P1/S1/O1"); }),
        text("GetObjectPath", [] { return utilsExam::GetObjectPath(L"D:/db/P1/S1/O1"); }),
        text("GetPatientPath", [] { return utilsExam::GetPatientPath(L"D:/db/P1/S1/O1"); }),
        text("GetImage", [] { return CString(utilsExam::GetImage(L"a.png").c_str()); }),
        {"GetRegistryPath",
         [](Outcome& outcome) {
             outcome.Value(utilsExam::GetRegistryPath(L"Export", L"default\\").GetString(),
                           L"default\\");
         }},
        {"ParsePath",
         [=, &folder](Outcome& outcome) {
             WriteFile(folder / L"found.png", "content");
             outcome.Text(utilsExam::ParsePath(document.c_str(), L"found.png").GetString());
         }},
    };
}

std::vector<Step> ProtocolSteps(const TemporaryFolder& folder)
{
    const std::wstring node = folder / L"node.xml";
    const auto text = [](const char* name, CString (*get)()) {
        return Step{name, [=](Outcome& outcome) { outcome.Text(get().GetString()); }};
    };
    return {
        text("GetProtocolFile", [] { return utilsExam::GetProtocolFile(L"ButtonActions.xml"); }),
        text("GetProtocolFile, none", [] { return utilsExam::GetProtocolFile(L"no.xml"); }),
        text("GetProtocolSavePath",
             [] { return utilsExam::GetProtocolSavePath(L"saved.xml", L"mine"); }),
        {"ActionRepository",
         [](Outcome& outcome) {
             ActionRepository::DestroyInstance();
             outcome.Result(ActionRepository::GetInstance()->GetAction(L"b") != nullptr);
         }},
        {"DerivedState",
         [](Outcome& outcome) {
             outcome.Result(DerivedState::LoadAll());
             DerivedState::DestroyAll();
         }},
        {"zelXMLFile",
         [=](Outcome& outcome) {
             WriteFile(node, "<b name='a button'><Push1 name='long enough'/></b>");
             zelXMLFile file;
             outcome.Result(file.open(node.c_str(), true));
             outcome.Result(ButtonAction().Load(file.getRootElement()));
         }},
        {"GetPrintButtonAction",
         [](Outcome& outcome) {
             outcome.Value(std::to_wstring(utilsExam::GetPrintButtonAction(1)), L"18");
         }},
        {"CMiniVersion",
         [](Outcome& outcome) {
             unsigned short number[4] = {};
             CMiniVersion version(L"Utils_Statics.dll");
             version.GetFileVersion(number);
             outcome.Result(number[0] != 0);
             version.Release();
         }},
        {"GetStringTableEntry",
         [](Outcome& outcome) {
             outcome.Text(utilsExam::GetStringTableEntry(L"ProductName").GetString());
         }},
    };
}

// Packs two files; the truth is what another reader finds in the archive.
void Pack(const TemporaryFolder& folder, Outcome& outcome)
{
    const std::wstring archive = folder / L"packed.zip";
    WriteFile(folder / L"one", std::string(5000, 'a'));
    WriteFile(folder / L"two", "content");
    DeleteFileW(archive.c_str());
    ZipCompress zip;
    zip.SetBasePath(folder / L"");
    outcome.Result(zip.Create(archive.c_str()));
    for (const wchar_t* const name : {L"one", L"two"})
        outcome.Result(zip.AddFile((folder / name).c_str()));
    zip.Close();
    const Rest rest;
    const std::wstring target = folder / L"unpacked";
    std::filesystem::remove_all(target);
    std::filesystem::create_directories(target);
    const base::InFolder inside(target);
    ZipExtract reader;
    if (!reader.Open(archive.c_str())) return;
    while (reader.ExtractNext(nullptr)) {
    }
    outcome.Sees(Content(target + L"\\one") + L" " + Content(target + L"\\two"));
}

// Extracts two files and a third. The result at the last one tells nothing. An entry without a file
// is skipped by contract.
void Extract(const TemporaryFolder& folder, Outcome& outcome)
{
    const std::wstring target = folder / L"extracted";
    std::filesystem::remove_all(target);
    std::filesystem::create_directories(target);
    const base::InFolder inside(target);
    ZipExtract reader;
    outcome.Result(reader.Open((folder / L"sample.zip").c_str()));
    for (const wchar_t* const name : {L"\\sub\\one", L"\\two"}) {
        outcome.Result(reader.ExtractNext(nullptr) && Exists(target + name));
        outcome.Sees(Content(target + name));
    }
    reader.ExtractNext(nullptr);
    reader.Close();
}

void MakeSample(const TemporaryFolder& folder)
{
    std::filesystem::create_directories(folder / L"sub");
    WriteFile(folder / L"sub\\one", std::string(5000, 'a'));
    ZipCompress zip;
    zip.SetBasePath(folder / L"");
    zip.Create((folder / L"sample.zip").c_str());
    for (const wchar_t* const name : {L"sub\\one", L"two", L"last"}) {
        if (name[0] != L's') WriteFile(folder / name, name[0] == L't' ? "content" : "");
        zip.AddFile((folder / name).c_str());
    }
}

} // namespace

std::vector<Step> FileSteps(const TemporaryFolder& folder)
{
    MakeSample(folder);
    std::vector<Step> steps = FolderSteps(folder);
    for (const auto& more : {PathSteps(folder), ProtocolSteps(folder)})
        steps.insert(steps.end(), more.begin(), more.end());
    steps.push_back({"ZipCompress", [&folder](Outcome& outcome) { Pack(folder, outcome); }});
    steps.push_back({"ZipExtract", [&folder](Outcome& outcome) { Extract(folder, outcome); }});
    return steps;
}

} // namespace faults
