// Every kind of file that the application opens, finds or is given, in every state that a file may
// be in: a sentence names it, nothing is lost, and nothing crashes.
#include "app/ProfileFile.h"
#include "protocol/ProtocolCheck.h"
#include "record/MovieFile.h"
#include "record/Repair.h"
#include "service/StudyArchive.h"
#include "window/MainWindow.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/ProtocolFolders.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <vector>

using namespace exam;
using test_support::BesideProgram;
using test_support::FileExists;
using test_support::ReadFile;
using test_support::WriteFile;

namespace {

namespace fs = std::filesystem;

CWinApp s_app; // the settings are read through it

// The application without a window, in folders of its own.
class Place
{
public:
    Place()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(BesideProgram(L"sample\\strings")));
        EXPECT_TRUE(pro_actions::LoadVocabulary(BesideProgram(L"sample\\actions.xml")));
        qor_utils::SetStoreFolder(qor_utils::imagesStore, BesideProgram(L"sample\\images"));
        qor_utils::SetStoreFolder(qor_utils::patientDatabaseStore, m_folder.Path());
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
        fs::create_directories(Study());
        m_window.emplace(m_state, m_folder.Path());
    }
    ~Place() { m_window.reset(); }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    std::wstring operator/(const std::wstring& name) const { return m_folder / name; }
    std::wstring Study() const { return m_folder / L"P1\\S1"; }
    Examination& Exam() { return m_window->Exam(); }
    MainWindow& Window() { return *m_window; }
    ExamState& State() { return m_state; }
    std::wstring Said() const { return m_state.Status().GetString(); }

    // A study of one recording with a mark.
    void WriteStudy()
    {
        fs::copy_file(BesideProgram(L"sample\\images\\linear.cine"), Study() + L"\\own.cine");
        Exam().OpenStudy(Study());
        StudyObject object;
        object.image = L"own.cine";
        m_state.Document().SetPatient(NamedPatient(L"Ada Sample"));
        Mark mark;
        mark.object = m_state.Document().AddObject(std::move(object));
        mark.points = {{1, 2}, {30, 40}};
        m_state.Document().AddMark(std::move(mark));
        EXPECT_TRUE(Exam().SaveStudy()) << fs::path(Said());
        Restart();
    }

    // Opens the study, changes it and keeps it; what was said when it was opened.
    std::wstring UseStudy()
    {
        Exam().OpenStudy(Study());
        const std::wstring said = Said();
        m_state.Document().SetPatient(NamedPatient(L"Another"));
        Exam().SaveStudy();
        return said;
    }

    void Restart()
    {
        m_window.reset();
        m_state.OpenStudy({}, L"");
        m_state.SetStatus(L"");
        m_window.emplace(m_state, m_folder.Path());
    }

private:
    static Patient NamedPatient(const std::wstring& name)
    {
        Patient patient;
        patient.name = name;
        return patient;
    }

    test_support::ProtocolFolders m_protocols;
    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    std::optional<MainWindow> m_window;
};

enum class Harm
{
    missing,
    folder,
    device,
    empty,
    oneByte,
    otherKind,
    locked,
    cut,
    random
};

struct Kind
{
    const char* name;
    std::wstring file; // below the folder
    std::function<void(Place&)> write;
    std::function<std::wstring(Place&, const std::wstring& path)> use; // the sentence
    std::vector<Harm> harmless = {};                                   // that need no sentence
    bool isRepaired = false; // the file may be whole afterwards
};

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

std::string RandomBytes(unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(seed % 2 == 0 ? 5000 : 200'000, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

class BadInput : public testing::TestWithParam<Kind>
{
protected:
    ~BadInput() override
    {
        zel_string_convert::ClearTable();
        pro_actions::ClearVocabulary();
    }

    bool NeedsSentence(Harm harm) const
    {
        const auto& harmless = GetParam().harmless;
        return std::ranges::find(harmless, harm) == harmless.end();
    }

    // Brings about one harm and holds what is said and left. `change` makes bytes of the sound
    // ones.
    void Try(Harm harm, const std::function<std::string(const std::string&)>& change)
    {
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        std::string bytes;
        if (change) {
            bytes = change(ReadFile(path));
            WriteFile(path, bytes);
        }
        const std::wstring said = GetParam().use(place, path);
        if (change) ExpectKept(path, bytes);
        const bool isWhole = GetParam().isRepaired && RepairRecording(path).problem.empty();
        if (NeedsSentence(harm) && !isWhole) ExpectNamed(said, path);
    }

    static std::wstring PathIn(const Place& place)
    {
        if (GetParam().file.starts_with(L"saved\\"))
            return utilsExam::GetProtocolSavePath(GetParam().file.substr(6).c_str(), nullptr)
                .GetString();
        return place / GetParam().file;
    }

    static void ExpectNamed(const std::wstring& said, const std::wstring& path)
    {
        EXPECT_NE(said.find(fs::path(path).filename().wstring()), std::wstring::npos)
            << "said: " << fs::path(said);
    }

    static void ExpectKept(const std::wstring& path, const std::string& bytes)
    {
        if (GetParam().isRepaired && ReadFile(path) != bytes)
            EXPECT_EQ(RepairRecording(path).problem, L"") << "it was changed and is not whole";
        else
            EXPECT_TRUE(ReadFile(path) == bytes) << "its bytes are others";
    }
};

TEST_P(BadInput, IsNamedInASentenceAndKept)
{
    SCOPED_TRACE("a file that is");
    {
        SCOPED_TRACE("empty");
        Try(Harm::empty, [](const std::string&) { return std::string(); });
    }
    {
        SCOPED_TRACE("one byte");
        Try(Harm::oneByte, [](const std::string& sound) { return sound.substr(0, 1); });
    }
    {
        SCOPED_TRACE("of another kind");
        Try(Harm::otherKind, [](const std::string&) { return std::string("<html/>\n"); });
    }
    for (std::size_t part = 1; part < 16; ++part) {
        SCOPED_TRACE("cut after sixteenths: " + std::to_string(part));
        Try(Harm::cut,
            [&](const std::string& sound) { return sound.substr(0, sound.size() * part / 16); });
    }
    for (unsigned seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE("random, seed " + std::to_string(seed));
        Try(Harm::random, [&](const std::string&) { return RandomBytes(seed); });
    }
}

TEST_P(BadInput, ThatCannotBeOpenedIsNamed)
{
    {
        SCOPED_TRACE("missing");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        fs::remove(path);
        const std::wstring said = GetParam().use(place, path);
        if (NeedsSentence(Harm::missing)) ExpectNamed(said, path);
    }
    {
        SCOPED_TRACE("a folder");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        fs::remove(path);
        fs::create_directory(path);
        const std::wstring said = GetParam().use(place, path);
        if (NeedsSentence(Harm::folder)) ExpectNamed(said, path);
        EXPECT_TRUE(fs::is_directory(path));
    }
    {
        SCOPED_TRACE("locked");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        const std::string sound = ReadFile(path);
        {
            const base::File lock(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                              nullptr, OPEN_EXISTING, 0, nullptr));
            ASSERT_TRUE(lock);
            ExpectNamed(GetParam().use(place, path), path);
        }
        EXPECT_TRUE(ReadFile(path) == sound);
    }
}

// The application does not choose the names of these kinds itself.
class BadDevice : public BadInput
{
};

TEST_P(BadDevice, IsNamedInASentence)
{
    Place place;
    GetParam().write(place);
    for (const std::wstring device : {L"NUL", L"CON", L"\\\\.\\NUL", L"COM1"}) {
        const std::wstring said = GetParam().use(place, device);
        EXPECT_NE(said.find(device), std::wstring::npos)
            << fs::path(device) << ": " << fs::path(said);
    }
}

std::vector<Kind> KindsOfAnyName()
{
    std::vector<Kind> kinds = Kinds();
    std::erase_if(kinds, [](const Kind& kind) {
        return std::ranges::find(kind.harmless, Harm::device) != kind.harmless.end();
    });
    return kinds;
}

std::string NameOf(const testing::TestParamInfo<Kind>& kind)
{
    return kind.param.name;
}

INSTANTIATE_TEST_SUITE_P(AllKinds, BadInput, testing::ValuesIn(Kinds()), NameOf);
INSTANTIATE_TEST_SUITE_P(AllKinds, BadDevice, testing::ValuesIn(KindsOfAnyName()), NameOf);

} // namespace
