#include "BadInputKinds.h"

#include "app/ProfileFile.h"
#include "protocol/ProtocolCheck.h"
#include "record/Repair.h"
#include "record/StudyArchive.h"

#include <test_support/Files.h>
#include <Utils_Statics/utilsExam.h>

#include <filesystem>
#include <utility>

namespace exam::bad_input {

namespace {

namespace fs = std::filesystem;

using test_support::BesideProgram;
using test_support::WriteFile;

std::wstring Opened(Place& place, const std::wstring& path)
{
    place.Exam().OpenImage(path);
    return place.Said();
}

std::wstring Repaired(Place&, const std::wstring& path)
{
    const exam::Repaired repaired = RepairRecording(path);
    return repaired.problem.empty() ? L"" : path + L": " + repaired.problem;
}

std::wstring Unpacked(Place& place, const std::wstring& path)
{
    return UnpackArchive(path, place / L"unpacked", "", Existing::replace,
                         [](std::size_t, std::size_t, const std::wstring&) { return true; })
        .problem;
}

std::wstring Checked(Place&, const std::wstring& path)
{
    const ProtocolCheck check = FindIgnored(fs::path(path).parent_path().wstring());
    if (!check.problem.empty()) return path + L": " + check.problem;
    return check.findings.empty() ? L"" : check.findings.front().ToLine();
}

std::wstring Table(Place&, const std::wstring& path)
{
    std::wstring error;
    const bool isLoaded = zel_string_convert::LoadTable(path, &error);
    EXPECT_EQ(isLoaded, error.empty());
    return error;
}

void CopyTo(const std::wstring& from, const std::wstring& to)
{
    fs::create_directories(fs::path(to).parent_path());
    fs::copy_file(BesideProgram(L"sample\\" + from), to);
}

std::wstring Panel(Place& place, const std::wstring&)
{
    place.Window().Panel().Reload();
    return place.Said();
}

Kind StudyFileKind(const char* name, const std::wstring& file, std::vector<Harm> harmless)
{
    harmless.push_back(Harm::device); // its name is the application's own
    return {name, file, [](Place& place) { place.WriteStudy(); },
            [](Place& place, const std::wstring&) { return place.UseStudy(); }, harmless};
}

Kind CopiedKind(const char* name, const std::wstring& file, const std::wstring& from,
                std::function<std::wstring(Place&, const std::wstring&)> use,
                std::vector<Harm> harmless = {})
{
    return {name, file, [=](Place& place) { CopyTo(from, place / file); }, std::move(use),
            std::move(harmless)};
}

// A file of the panel that the user has a copy of.
Kind PanelKind(const char* name, const std::wstring& file)
{
    return {name,
            L"saved\\" + file,
            [=](Place&) {
                const CString path = utilsExam::GetProtocolSavePath(file.c_str(), nullptr);
                CopyTo(L"protocols\\suite\\" + file, path.GetString());
            },
            Panel,
            {Harm::missing, Harm::device, Harm::folder, Harm::otherKind}};
}

} // namespace

std::vector<Kind> Kinds()
{
    Kind movie = {"Movie", L"movie-001.avi",
                  [](Place& place) {
                      place.State().AddRecording(L"linear.cine");
                      place.Exam().ToggleRecording(true);
                      place.Exam().Advance();
                      place.Exam().Advance();
                      place.Exam().EndRecording();
                  },
                  Repaired};
    movie.isRepaired = true;
    Kind cut = CopiedKind("CutRecording", L"one.cine", L"images\\linear.cine", Repaired);
    cut.isRepaired = true;
    Kind archive = {"Archive", L"study-001.zip",
                    [](Place& place) {
                        place.WriteStudy();
                        PackFolder(
                            place / L"study-001.zip", place.Study(),
                            [](std::size_t, std::size_t, const std::wstring&) { return true; });
                    },
                    Unpacked};
    return {
        CopiedKind("RawCine", L"one.cine", L"images\\linear.cine", Opened),
        CopiedKind("PictureAsCine", L"angle.png", L"images\\buttons\\angle.png", Opened),
        movie,
        cut,
        archive,
        StudyFileKind("Study", L"P1\\S1\\study.xml", {Harm::missing}),
        StudyFileKind("Patient", L"P1\\patient.xml", {Harm::missing}),
        StudyFileKind("Object", L"P1\\S1\\O1.xml", {}),
        StudyFileKind("RecordingOfAStudy", L"P1\\S1\\own.cine", {}),
        CopiedKind("Actions", L"protocol\\ButtonActions.xml",
                   L"protocols\\suite\\ButtonActions.xml", Checked,
                   {Harm::device, Harm::otherKind}),
        CopiedKind("States", L"protocol\\button_states.xml", L"protocols\\base\\button_states.xml",
                   Checked, {Harm::device, Harm::otherKind}),
        PanelKind("PanelInForce", L"panel.xml"),
        PanelKind("ActionsInForce", L"ButtonActions.xml"),
        CopiedKind("StringTable", L"exam.xlf", L"strings\\exam.xlf", Table, {Harm::device}),
        {"Profile",
         L"other.ini",
         [](Place& place) { WriteFile(place / L"other.ini", "[Settings]\r\nGain=3\r\n"); },
         [](Place&, const std::wstring& path) {
             const std::wstring problem = FindProfileProblem(path);
             return problem.empty() ? problem : path + L": " + problem;
         },
         {Harm::missing, Harm::empty, Harm::oneByte, Harm::otherKind, Harm::cut}},
    };
}

} // namespace exam::bad_input
