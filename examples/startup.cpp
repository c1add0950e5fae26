// Start-up: an application says where its folders, its log and its settings are, and on which
// console it runs. Everything that the library does later rests on these.
#include <qor_utils/HostProfile.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <Utils_Statics/utilsExam.h>

#include <cstdio>

int main()
{
    qor_utils::SetLogDirectory(L"log"); // below the current folder; made with the first message
    qor_utils::SetStoreFolder(qor_utils::patientDatabaseStore, L"D:\\patients");
    qor_utils::SetStoreFolder(qor_utils::imagesStore, L"D:\\exam\\images");
    qor_utils::SetProfileRoot(L"Software\\Utils_Statics example");
    utilsExam::SetConsoleType(utilsExam::MapConsoleType(L"Tavren"));

    std::printf("console  %ls\n", utilsExam::MapConsoleName(utilsExam::GetConsoleType()));
    std::printf("patients %ls\n", utilsExam::GetPatientRootPath().GetString());
    std::printf("study    %ls\n", utilsExam::GetStudyPath(L"D:/patients/P1/S1/O1").GetString());
    std::printf("image    %ls\n", utilsExam::GetImage(L"status/network.png").c_str());
    std::printf("exports  %ls\n", utilsExam::GetRegistryPath(L"Export", L"D:\\export").GetString());

    // The folders of a study are made with their parents, and removed with all they hold.
    std::printf("made     %d\n", utilsExam::CreateDirectoryW(L".\\patients\\P1\\S1"));
    utilsExam::RemoveDirectoryW(L"patients", 0);
}
