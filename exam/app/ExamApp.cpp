#include "app/ExamApp.h"

#include "app/ProfileFile.h"
#include "app/SampleTree.h"
#include "base/Console.h"
#include "commands/Commands.h"
#include "protocol/ProtocolCheck.h"
#include "record/CineCommands.h"
#include "record/Repair.h"
#include "record/StudyArchive.h"
#include "service/CrashOnPurpose.h"
#include "service/ModuleVersions.h"
#include "tour/Tour.h"

#include <base/FilePath.h>
#include <base/Owner.h>
#include <base/ProgramVersion.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/MiniDumper.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <shellapi.h>

#include <cstdlib>

namespace exam {

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr char logSource[] = "exam/ExamApp";

struct ArgumentListTraits
{
    using Handle = wchar_t**;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle list) noexcept { LocalFree(list); }
};

std::vector<std::wstring> Arguments()
{
    int count = 0;
    const base::Owner<ArgumentListTraits> list(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::wstring> arguments;
    for (int i = 1; list && i < count; ++i)
        arguments.emplace_back(list.get()[i]);
    return arguments;
}

} // namespace

BOOL ExamApp::InitInstance()
{
    utilsExam::EnableLowFragmentationHeap();
    if (!ReadCommandLine() || !ChooseProfile()) return FALSE;
    m_settings = m_options.Over(m_options.IsTour() ? Settings() : ReadSettings());
    SetLogFolder();
    LogStart();
    const MiniDumper crashHandler; // its filter stays
    if (m_options.IsCommand()) {
        m_exitCode = RunCommand() ? 0 : exitFailure;
        return FALSE;
    }
    utilsExam::ServiceMode = m_options.service;
    m_userFolder =
        base::FullPath((m_options.IsTour() ? m_options.tourFolder : DefaultUserFolder()).c_str());
    InstallStores(m_userFolder);
    if (m_options.IsTour()) // it begins with the sample patient alone
        utilsExam::RemoveDirectoryW((m_userFolder + L"\\patients").c_str(), TRUE);
    m_studyFolder = PreparePatients(m_userFolder);
    if (!LoadTexts() || !LoadVocabulary() || !LoadImages()) return FALSE;
    if (!OpenMainWindow() || !OpenStatusRow()) return FALSE;
    utilsExam::AppInitDone = true;
    if (!m_options.IsTour()) {
        m_window->Exam().OfferRecovery();
        return TRUE;
    }
    m_exitCode = RunTour();
    m_window->DestroyWindow();
    return FALSE;
}

int ExamApp::ExitInstance()
{
    m_status.reset();
    m_window.reset();
    m_state.reset();
    if (m_isLogged)
        zelLogger::zelLogHelper(logSource, __LINE__, qor_utils::informationLevel)(
            L"The exam ends with exit code %d.", m_exitCode);
    return m_exitCode;
}

bool ExamApp::ReadCommandLine()
{
    m_options = ParseCommandLine(Arguments());
    if (m_options.help) {
        WriteOut(UsageText());
        m_settings = m_options.Over({});
        if (LoadTexts()) WriteOut(KeyHelp());
        return false;
    }
    if (m_options.version) {
        WriteOut(L"exam " + base::ProgramVersion() + L"\n");
        return false;
    }
    if (m_options.error.empty()) return true;
    Fail(m_options.error + L"; see --help");
    m_exitCode = exitUsage;
    return false;
}

// Sets where settings are kept. A tour keeps its own and neither reads nor changes the user's.
// False, with a sentence on standard error, when the user's file cannot be used.
bool ExamApp::ChooseProfile()
{
    std::wstring profile = m_options.profile;
    if (!profile.empty()) {
        const std::wstring problem = FindProfileProblem(profile);
        if (!problem.empty()) return Fail(L"the profile " + profile + L": " + problem);
    } else if (m_options.IsTour()) {
        profile = m_options.tourFolder + L"\\exam.ini";
    } else {
        SetRegistryKey(L"Kestrow");
        return true;
    }
    // The profile functions look for a name without a folder in the Windows folder.
    const std::wstring file = base::FullPath(profile.c_str());
    std::free(const_cast<wchar_t*>(m_pszProfileName));
    m_pszProfileName = _wcsdup(file.empty() ? profile.c_str() : file.c_str());
    return true;
}

// Says what went wrong; the program ends with a failure.
bool ExamApp::Fail(const std::wstring& problem)
{
    m_exitCode = exitFailure;
    return exam::Fail(problem);
}

void ExamApp::SetLogFolder()
{
    if (!m_settings.log.empty()) qor_utils::SetLogDirectory(m_settings.log);
}

void ExamApp::LogStart()
{
    m_isLogged = true;
    zelLogger::zelLogHelper(logSource, __LINE__, qor_utils::informationLevel)(
        L"%s %s starts.", utilsExam::GetProductName().GetString(),
        utilsExam::GetProductVersion().GetString());
}

bool ExamApp::RunCommand()
{
    const CommandLine& o = m_options;
    if (!o.protocolToCheck.empty()) return LoadVocabulary() && CheckProtocol(o.protocolToCheck);
    if (!o.crashKind.empty()) CrashOnPurpose(o.crashKind);
    if (!o.versionFile.empty()) return PrintFileVersion(o.versionFile);
    if (!o.folderToPack.empty()) return PackCommand(o.archive, o.folderToPack, o.overwrite);
    if (!o.folderToFill.empty())
        return UnpackCommand(o.archive, o.folderToFill, o.password, o.overwrite);
    if (!o.recordingToRepair.empty()) return RepairCommand(o.recordingToRepair);
    return o.cineInfo.empty() ? ReplayCine(o.cineToPlay, o.movie, o.overwrite)
                              : PrintCineInfo(o.cineInfo);
}

bool ExamApp::LoadTexts()
{
    std::wstring problem;
    if (zel_string_convert::LoadTable(StringTableFolder(), &problem) &&
        zel_string_convert::SetLanguage(m_settings.language))
        return true;
    if (!problem.empty()) problem = L": " + problem;
    return Fail(L"the string tables in " + StringTableFolder() + L" cannot be used" + problem);
}

bool ExamApp::LoadVocabulary()
{
    if (pro_actions::LoadVocabulary(VocabularyFile())) return true;
    return Fail(L"the action vocabulary " + VocabularyFile() + L" cannot be used");
}

bool ExamApp::LoadImages()
{
    m_state = std::make_unique<ExamState>();
    for (const wchar_t* const name : {L"curved.cine", L"linear.cine"}) {
        const std::wstring problem = m_state->AddRecording(name);
        if (!problem.empty()) return Fail(problem);
    }
    for (const auto probe : {simulation::ProbeShape::curved, simulation::ProbeShape::linear,
                             simulation::ProbeShape::phased})
        m_state->AddSimulation(probe);
    return true;
}

bool ExamApp::OpenMainWindow()
{
    m_window =
        std::make_unique<MainWindow>(*m_state, base::FullPath(m_settings.recordings.c_str()));
    m_pMainWnd = m_window.get();
    const bool isFixed = m_options.fixed || m_options.IsTour();
    if (!m_window->Open(isFixed ? WindowForm::console : WindowForm::window))
        return Fail(L"the main window cannot be created; is there a screen?");
    m_window->Exam().Settings().Use(m_settings);
    if (m_options.IsTour())
        m_window->Exam().OpenStudy(m_studyFolder);
    else
        m_window->Exam().BeginSession(m_userFolder, m_studyFolder);
    if (!m_options.image.empty())
        m_window->Exam().OpenImage(base::FullPath(m_options.image.c_str()));
    return m_window->OpenPanel() || Fail(L"the control panel cannot be created");
}

bool ExamApp::OpenStatusRow()
{
    m_status = std::make_unique<StatusDisplay>(*m_window, m_window->Exam());
    return m_status->Open() || Fail(L"the status row cannot be created");
}

int ExamApp::RunTour()
{
    TourReport report;
    TourContext context{report, *m_state, *m_window, *m_status, m_options.tourFolder};
    TakeTour(context);
    return report.Close() ? 0 : exitFailure;
}

} // namespace exam
