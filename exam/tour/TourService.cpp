// Station 11: the settings are asked for, the study is written as a table and a report, packed and
// unpacked, the program lists its modules, and a crash of another exam is reported.
#include "record/StudyArchive.h"
#include "service/ServiceWindows.h"
#include "tour/Tour.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/Handles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr DWORD patience = 60'000; // milliseconds; more than enough

void ProgressBar(TourContext& context)
{
    ProgressWindow bar;
    const bool isOpen = bar.Open(context.window, GetStr("exam.archive.packing"), true);
    bar.Step(2, 3, L"P1\\S1\\study.xml");
    context.report.Step(isOpen, L"the bar of packing is shown");
    context.PictureOf(bar.GetSafeHwnd(), L"packing");
}

void SettingsForm(TourContext& context)
{
    const auto here = TourContext::Place::Current();
    context.WorkForm(
        "exam.command.settings", [&] { context.Key(VK_F12); },
        [&](HWND form) {
            context.PictureOf(form, L"settings-form", here);
            SendMessageW(form, WM_COMMAND, IDCANCEL, 0);
        });
}

void Exported(TourContext& context)
{
    context.window.Exam().ExportTable();
    context.window.Exam().ExportReport();
    const fs::path folder = context.folder + L"\\recordings";
    std::error_code error;
    context.report.Step(fs::file_size(folder / L"measurements-1.csv", error) > 300,
                        L"the measurements are written as a table");
    context.report.Step(fs::file_size(folder / L"report-1.html", error) > 20000,
                        L"and as a report with pictures");
    context.state.SetStatus(L"");
}

// Leaves the names of the archive's files, for the page about the tour.
void ListArchive(const TourContext& context, const std::vector<std::wstring>& names)
{
    std::ofstream list(fs::path(context.folder) / L"archive.txt", std::ios::binary);
    for (const std::wstring& name : names)
        list << base::Utf8FromWide(name) << '\n';
}

void StudyThereAndBack(TourContext& context)
{
    const std::wstring folder = context.folder + L"\\recordings\\study-001";
    context.Key('Z');
    const auto names = ReadEntryNames(folder + L".zip").value_or(std::vector<std::wstring>());
    const auto files = static_cast<int>(names.size());
    const auto hasOne = [&names](const wchar_t* name) {
        return std::ranges::find(names, name) != names.end();
    };
    context.report.Step(hasOne(L"patient.xml") && hasOne(L"S1\\study.xml") &&
                            hasOne(L"S1\\recording-001.cine") && hasOne(L"S1\\movie-001.avi"),
                        L"the archive holds patient, study and recordings");
    context.report.Step(context.state.Status() ==
                            GetStr("exam.archive.packed", files, (folder + L".zip").c_str()),
                        L"all files of the study are packed");
    ListArchive(context, names);
    context.Picture(L"packed");
    context.Key('U');
    context.report.Step(context.state.Status() ==
                            GetStr("exam.archive.unpacked", files, folder.c_str()),
                        L"and unpacked");
    const CString object = utilsExam::GetPatientRootPath() + L"P1\\S1\\O1";
    const fs::path study = utilsExam::GetStudyPath(object).GetString();
    context.report.Step(
        HoldSameBytes((fs::path(folder) / L"S1" / study.filename()).wstring(), study.wstring()),
        L"the unpacked study file is the original byte for byte");
}

void About(TourContext& context)
{
    context.Key('A');
    const AboutBox& about = context.window.Exam().Service().About();
    context.report.Step(about.IsShown(), L"the about box lists the modules");
    const HWND picture = FindWindowExW(about.GetSafeHwnd(), nullptr, L"STATIC", nullptr);
    context.report.Step(picture && SendMessageW(picture, STM_GETIMAGE, IMAGE_BITMAP, 0) != 0,
                        L"it shows the program's picture");
    context.PictureOf(about.GetSafeHwnd(), L"about");
    context.Key('A');
    context.report.Step(!about.IsShown(), L"the same key closes it");
}

// The findings of the timer below about the open menu.
struct MenuSeen
{
    TourContext* context = nullptr;
    bool isSeen = false;
};
MenuSeen s_menu;

void CALLBACK LookAtMenu(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND menu = FindWindowW(L"#32768", nullptr);
    KillTimer(nullptr, timer);
    s_menu.isSeen = menu && IsWindowVisible(menu);
    if (s_menu.isSeen) s_menu.context->PictureOf(menu, L"service-menu");
    EndMenu();
}

// Presses the key of the menu. The call returns when the timer below closes the menu.
bool OpensMenu(TourContext& context)
{
    s_menu = {&context};
    const UINT_PTR timer = SetTimer(nullptr, 0, 500, LookAtMenu);
    context.Key(VK_F11);
    KillTimer(nullptr, timer);
    context.HandlePending(); // so that what the menu has hidden is seen
    return s_menu.isSeen;
}

void ServiceMenu(TourContext& context)
{
    context.report.Step(!OpensMenu(context), L"there is no service menu outside of service mode");
    utilsExam::ServiceMode = true;
    context.report.Step(OpensMenu(context), L"the service menu opens in service mode");
    utilsExam::ServiceMode = false;
}

// Starts another exam, which crashes; false when it does not end by an access violation.
bool CrashAnother(const std::wstring& log)
{
    const std::wstring program = base::ModuleFile(nullptr);
    std::wstring command = L"\"" + program + L"\" --log \"" + log + L"\" --crash read";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &started))
        return false;
    const base::Thread thread(started.hThread);
    const base::Process process(started.hProcess);
    DWORD code = 0;
    return WaitForSingleObject(process.get(), patience) == WAIT_OBJECT_0 &&
           GetExitCodeProcess(process.get(), &code) && code == STATUS_ACCESS_VIOLATION;
}

// An enumeration callback that stops at the window whose text names the folder.
BOOL CALLBACK NamesFolder(HWND child, LPARAM folder)
{
    wchar_t text[1024] = {};
    GetWindowTextW(child, text, static_cast<int>(std::size(text)));
    return std::wcsstr(text, reinterpret_cast<const wchar_t*>(folder)) == nullptr;
}

// The reporter's message about this folder, because one about an earlier crash may still be open.
HWND FindMessage(const std::wstring& folder)
{
    const auto wanted = reinterpret_cast<LPARAM>(folder.c_str());
    HWND message = nullptr;
    while ((message = FindWindowExW(nullptr, message, nullptr, L"Crash report")) != nullptr)
        if (!EnumChildWindows(message, NamesFolder, wanted)) return message;
    return nullptr;
}

// Waits for the message, which comes when the archive is made; null when it does not come.
HWND AwaitMessage(const std::wstring& folder)
{
    for (DWORD waited = 0; waited < patience; waited += 100) {
        const HWND message = FindMessage(folder);
        if (message && IsWindowVisible(message)) return message;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, 0);
    }
    return nullptr;
}

int FilesWith(const std::wstring& folder, const wchar_t* extension)
{
    std::error_code error;
    int count = 0;
    for (const auto& entry : fs::directory_iterator(folder, error))
        count += entry.path().extension() == extension;
    return count;
}

void Crash(TourContext& context)
{
    const std::wstring log = context.folder + L"\\log";
    std::error_code error;
    if (const HWND old = FindMessage(log)) PostMessageW(old, WM_CLOSE, 0, 0);
    fs::remove_all(log, error); // files of an earlier tour
    context.report.Step(CrashAnother(log), L"another exam crashes");
    const HWND message = AwaitMessage(log);
    context.report.Step(message != nullptr, L"the crash reporter says where the archive is");
    if (message) PostMessageW(message, WM_CLOSE, 0, 0);
    context.report.Step(FilesWith(log, L".txt") == 1 && FilesWith(log, L".dmp") == 1 &&
                            FilesWith(log, L".zip") == 1,
                        L"report, dump and archive are in the log folder");
}

} // namespace

void TourService(TourContext& context)
{
    SettingsForm(context);
    ProgressBar(context);
    Exported(context);
    StudyThereAndBack(context);
    About(context);
    ServiceMenu(context);
    Crash(context);
    context.state.SetStatus(L"");
}

} // namespace exam
