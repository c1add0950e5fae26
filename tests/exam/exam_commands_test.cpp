// The table of commands, and what comes of them. No window is needed.
#include "base/ScreenLayout.h"
#include "commands/CommandDesk.h"
#include "commands/Commands.h"
#include "record/MovieSettings.h"
#include "record/PixelCanvas.h"
#include "screen/RecordingText.h"
#include "screen/Timeline.h"
#include "service/PatientForm.h"
#include "service/RecentFiles.h"
#include "service/StatusSettings.h"
#include "service/StudyArchive.h"
#include "study/StudyTexts.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/NotifiedConsumer.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

// Counts what is asked of the window.
class CountingWindow : public ExamWindow
{
public:
    CWnd& Owner() override { return m_owner; }
    bool SavePicture(const std::wstring& path) override
    {
        m_picture = path;
        return m_canSave;
    }
    void PaintMovie(CDC&) override { ++m_painted; }
    void TogglePanel() override { ++m_toggled; }
    void FloatPanel() override { ++m_floated; }
    void ToggleKeys() override { ++m_keysToggled; }
    void TogglePanelLock() override { ++m_lockToggled; }
    void ResetPanel() override { ++m_reset; }
    bool Ask(const CString& question) override
    {
        m_questions.push_back(question);
        return m_answer;
    }
    bool Offer(const CString& question) override
    {
        m_questions.push_back(question);
        return m_answer;
    }
    void Tell(const CString& text) override { m_told.push_back(text); }
    void ShowFile(const std::wstring& path) override { m_shown = path; }
    bool Fill(const CString&, std::vector<FormField>& fields, const FormCheck& check) override
    {
        if (m_edit) m_edit(fields);
        if (!m_text && !m_edit) return false;
        if (m_text) fields.front().value = *m_text;
        m_problem = check(fields);
        return m_problem.IsEmpty();
    }
    std::wstring ChooseImage() override { return m_chosen; }
    std::wstring ChooseOneOf(const std::vector<std::wstring>& texts) override
    {
        m_offered = texts;
        return m_chosen;
    }
    void ShowRecent() override { ++m_recentShown; }
    void ToggleImages() override { ++m_imagesToggled; }
    void Close() override { ++m_closed; }

    CWnd m_owner;
    std::wstring m_picture;
    bool m_canSave = true;
    int m_painted = 0;
    int m_toggled = 0;
    int m_floated = 0;
    int m_keysToggled = 0;
    int m_lockToggled = 0;
    int m_reset = 0;
    std::vector<CString> m_questions;
    bool m_answer = false;
    std::wstring m_shown;
    std::vector<CString> m_told;
    std::optional<CString> m_text;
    std::function<void(std::vector<FormField>&)> m_edit;
    CString m_problem; // of the last form
    std::wstring m_chosen;
    std::vector<std::wstring> m_offered;
    int m_recentShown = 0;
    int m_imagesToggled = 0;
    int m_closed = 0;
};

// Keeps the states and actions that it is told.
class Listener : public pro_actions::NotifiedConsumer
{
public:
    explicit Listener(const std::vector<ActionStateInfo>& states)
    {
        for (const ActionStateInfo& state : states)
            RegisterActionSignal(state);
        RegisterActionNotification();
    }
    void ActionStateChanged(const ActionStateInfo&, int value) override
    {
        m_values.push_back(value);
    }
    void ActionNotification(ActionType, int, int param) override { m_params.push_back(param); }

    std::vector<int> m_values;
    std::vector<int> m_params;
};

ActionInfo Action(const wchar_t* type, const wchar_t* action, int param = 0)
{
    const ActionType number = CProActionCollection::MapActionType(type);
    return {number, CProActionCollection::MapAction(number, action), param, L""};
}

ActionStateInfo StateOf(const wchar_t* type, const wchar_t* action, int param = 0)
{
    const ActionInfo info = Action(type, action);
    return {info.type, info.action, param};
}

class CommandsTest : public testing::Test
{
protected:
    CommandsTest()
    {
        UseProfile(m_folder / L"exam.ini");
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        EXPECT_TRUE(
            pro_actions::LoadVocabulary(test_support::BesideProgram(L"sample\\actions.xml")));
        qor_utils::SetStoreFolder(qor_utils::imagesStore,
                                  test_support::BesideProgram(L"sample\\images"));
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"})
            EXPECT_EQ(m_state.AddRecording(name), L"");
        Settings settings;
        settings.recordings = m_folder.Path();
        m_exam.Settings().Use(settings);
    }
    ~CommandsTest() override
    {
        MouseCapture::Unlock();
        ShowLengthsIn(LengthUnit::millimetre);
        utilsExam::SetConsoleType(eConsolePemmit);
        pro_actions::ClearVocabulary();
        zel_string_convert::ClearTable();
    }

    static void UseProfile(const std::wstring& file)
    {
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup(file.c_str());
    }

    // Fills the form of the settings: the texts of fields by their place.
    bool EditSettings(std::initializer_list<std::pair<std::size_t, CString>> values)
    {
        m_window.m_edit = [&](std::vector<FormField>& fields) {
            for (const auto& [place, value] : values)
                fields.at(place).value = value;
        };
        Press(VK_F12);
        m_window.m_edit = nullptr;
        return m_window.m_problem.IsEmpty();
    }

    // Makes a distance in the middle of the image.
    void Measure()
    {
        m_state.Marks().ChooseNothing();
        m_state.Marks().Choose(MarkKind::distance);
        m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
        MouseCapture::Unlock();
    }
    void Press(UINT key) { m_desk.CarryOut(*CommandOfKey(key)); }
    void CarryOut(const wchar_t* type, const wchar_t* action, int param = 0)
    {
        m_desk.CarryOut(Action(type, action, param));
    }
    bool IsOn(UINT key) const { return exam::IsOn(*CommandOfKey(key), m_state); }
    bool IsPossible(UINT key) const { return exam::IsPossible(*CommandOfKey(key), m_state); }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    CountingWindow m_window;
    Examination m_exam{m_state, m_window, m_folder.Path()};
    CommandDesk m_desk{m_exam};
};

} // namespace

TEST_F(CommandsTest, EachKeyAndEachActionBelongToOneCommand)
{
    std::set<std::pair<UINT, bool>> keys;
    std::set<std::pair<ActionType, int>> actions;
    for (const Command& command : Commands()) {
        if (command.key.code != 0) {
            EXPECT_TRUE(keys.insert({command.key.code, command.key.withControl}).second)
                << command.key.code;
            EXPECT_EQ(CommandOfKey(command.key.code, command.key.withControl), &command);
        }
        if (!command.action.type) continue;
        const ActionInfo action = Action(command.action.type, command.action.name);
        EXPECT_TRUE(actions.insert({action.type, action.action}).second) << command.action.name;
        EXPECT_EQ(CommandOfAction(action), &command);
    }
    EXPECT_EQ(CommandOfKey(0), nullptr);
    EXPECT_EQ(CommandOfKey('X'), nullptr);
    EXPECT_EQ(CommandOfKey('Q'), nullptr);
    EXPECT_EQ(CommandOfKey('C', true), nullptr);
    EXPECT_EQ(CommandOfAction(ActionInfo()), nullptr);
}

TEST_F(CommandsTest, TheVocabularyKnowsEachAction)
{
    for (const Command& command : Commands()) {
        EXPECT_EQ(command.action.type == nullptr, command.action.name == nullptr);
        if (!command.action.type) continue;
        const ActionInfo action = Action(command.action.type, command.action.name);
        EXPECT_NE(action.type, actionTypeNone) << command.action.type;
        EXPECT_NE(action.action, -1) << command.action.name;
    }
}

TEST_F(CommandsTest, EachHasAKeyAMenuAndTextsInBothLanguages)
{
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        for (const Command& command : Commands()) {
            const bool isMet = command.carryOut != nullptr;
            EXPECT_EQ(command.text.name != nullptr, isMet);
            EXPECT_EQ(command.text.tip != nullptr, isMet);
            if (!isMet) continue;
            EXPECT_NE(command.key.code, 0u) << command.text.name;
            EXPECT_NE(command.menu, Menu::none) << command.text.name;
            for (const char* const key : {command.text.name, command.text.tip}) {
                EXPECT_FALSE(GetStr(key).IsEmpty()) << key;
                EXPECT_NE(GetStr(key), CString(key)) << key;
            }
        }
    }
}

TEST_F(CommandsTest, PicturesAreInTheSample)
{
    int pictures = 0;
    for (const Command& command : Commands()) {
        if (!command.picture) continue;
        ++pictures;
        EXPECT_NE(command.key.code, 0u); // the tip names it
        EXPECT_TRUE(std::filesystem::exists(
            test_support::BesideProgram(L"sample\\images\\buttons\\") + command.picture));
    }
    EXPECT_EQ(pictures, 5);
}

TEST_F(CommandsTest, TheHelpHasOneLineForEachKey)
{
    const std::wstring help = KeyHelp();
    for (const wchar_t* const line : {L"  1               the next drag measures a distance\n",
                                      L"  Space           shows the next recording\n",
                                      L"  Ctrl++          shows a part of the image larger\n",
                                      L"  Ctrl+Q          leaves the exam\n"})
        EXPECT_NE(help.find(line), std::wstring::npos) << line;
    const auto keys = std::count_if(Commands().begin(), Commands().end(),
                                    [](const Command& command) { return command.key.code != 0; });
    EXPECT_EQ(std::count(help.begin(), help.end(), L'\n'), keys);
}

// The status line's text is written by hand: "1 2 3: tools   Tab: next point ...".
TEST_F(CommandsTest, TheStatusLineNamesKeysOfTheTable)
{
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        std::set<std::wstring> known;
        std::wistringstream help(KeyHelp());
        for (std::wstring line; std::getline(help, line);)
            known.insert(line.substr(2, line.find(L' ', 2) - 2));
        std::wstring text = GetStr("exam.keys").GetString();
        int named = 0;
        for (std::size_t end = text.find(L':'); end != std::wstring::npos; end = text.find(L':')) {
            const std::size_t gap = text.rfind(L"   ", end);
            const std::size_t begin = gap == std::wstring::npos ? 0 : gap;
            std::wistringstream keys(text.substr(begin, end - begin));
            for (std::wstring key; keys >> key; ++named)
                EXPECT_TRUE(known.contains(key)) << key;
            text.erase(0, end + 1);
        }
        EXPECT_EQ(named, 10);
    }
}

TEST_F(CommandsTest, TipsNameTheKey)
{
    EXPECT_EQ(TipOf(*CommandOfKey('1')), L"Key 1: the next drag measures a distance");
    zel_string_convert::SetLanguage(L"de");
    EXPECT_EQ(TipOf(*CommandOfKey(VK_SPACE)), L"Taste Leertaste: zeigt die nächste Aufzeichnung");
}

TEST_F(CommandsTest, AKeySwitchesItsStateOnAndOff)
{
    for (const UINT key : {UINT{'1'}, UINT{'2'}, UINT{'3'}, UINT{'S'}, UINT{'P'}}) {
        EXPECT_FALSE(IsOn(key)) << key;
        Press(key);
        EXPECT_TRUE(IsOn(key)) << key;
        Press(key);
        EXPECT_FALSE(IsOn(key)) << key;
    }
    Press('R');
    EXPECT_EQ(m_state.Rotation(), 150);
    Press('F');
    EXPECT_EQ(m_state.Frame(), 0); // the curved recording has one frame
    Press(VK_SPACE);
    Press('F');
    EXPECT_EQ(m_state.Frame(), 1);
    EXPECT_FALSE(IsOn('F')); // it has no state
}

TEST_F(CommandsTest, AskTheWindowForWhatOnlyAWindowCanDo)
{
    Press('K');
    m_desk.Press({.key = 'K', .control = true});
    m_desk.Press({.key = 'R', .control = true});
    m_desk.Press({.key = 'Q', .control = true});
    EXPECT_EQ(m_window.m_toggled, 1);
    EXPECT_EQ(m_window.m_lockToggled, 1);
    EXPECT_EQ(m_window.m_reset, 1);
    EXPECT_EQ(m_window.m_closed, 1);
    CarryOut(L"Document", L"SaveImage");
    EXPECT_EQ(m_window.m_picture, m_folder / L"picture-1.png");
    EXPECT_EQ(m_state.Status(), GetStr("exam.picture.saved", m_window.m_picture.c_str()));
    m_window.m_canSave = false;
    CarryOut(L"Document", L"SaveImage");
    EXPECT_EQ(m_state.Status(), GetStr("exam.picture.notsaved", m_window.m_picture.c_str()));
}

TEST_F(CommandsTest, ActionsTakeTheParameterOfTheProtocolFile)
{
    CarryOut(L"Imaging", L"Gain", 4);
    EXPECT_EQ(m_state.Gain(), 4);
    CarryOut(L"Probe", L"Select", 1);
    EXPECT_EQ(m_state.Current(), 1u);
    CarryOut(L"Cine", L"Step", -1);
    EXPECT_EQ(m_state.Frame(), 3);
    CarryOut(L"Imaging", L"Gain", INT_MAX);
    EXPECT_EQ(m_state.Gain(), 20);
    CarryOut(L"Imaging", L"Rotate", INT_MIN);
    EXPECT_EQ(m_state.Rotation(), 800); // -10,000 degrees
    CarryOut(L"Probe", L"Select", INT_MIN);
    EXPECT_EQ(m_state.Current(), 1u);
}

TEST_F(CommandsTest, ClearRemovesWhatIsOnDisplayInOneStep)
{
    Measure();
    Measure();
    CarryOut(L"Measurement", L"Clear");
    EXPECT_TRUE(m_state.Content().marks.empty());
    CarryOut(L"Measurement", L"Undo");
    EXPECT_EQ(m_state.Content().marks.size(), 2u);
}

TEST_F(CommandsTest, UndoAndRedoAreThereWhenThereIsSomethingToTakeBack)
{
    const Command& undo = *CommandOfKey('Z', true);
    const Command& redo = *CommandOfKey('Y', true);
    EXPECT_FALSE(exam::IsPossible(undo, m_state) || exam::IsPossible(redo, m_state));
    Measure();
    EXPECT_TRUE(exam::IsPossible(undo, m_state));
    m_desk.CarryOut(undo);
    EXPECT_FALSE(exam::IsPossible(undo, m_state));
    EXPECT_TRUE(m_state.Content().marks.empty());
    m_desk.CarryOut(redo);
    EXPECT_EQ(m_state.Content().marks.size(), 1u);
}

TEST_F(CommandsTest, WithTheTrackballTheLastPointOfAFrozenImageLetsGo)
{
    m_state.SetInput(InputTrackball);
    Press('1');
    ASSERT_TRUE(MouseCapture::IsLocked());
    for (int points = 3; points > 0; --points) { // the third moves the mark as a whole
        EXPECT_TRUE(MouseCapture::IsLocked()) << points;
        Press(VK_TAB);
    }
    EXPECT_FALSE(MouseCapture::IsLocked());
    m_state.SetInput(InputPointer);
}

TEST_F(CommandsTest, TheSelectedMarkIsRenamedAndDeleted)
{
    EXPECT_FALSE(IsPossible(VK_F2) || IsPossible(VK_DELETE));
    Measure();
    Press(VK_F2); // the user cancels
    EXPECT_EQ(m_state.Content().marks.front()->text, L"");
    m_window.m_text = L"Liver";
    Press(VK_F2);
    EXPECT_EQ(m_state.Content().marks.front()->text, L"Liver");
    Press(VK_DELETE);
    EXPECT_TRUE(m_state.Content().marks.empty());
}

TEST_F(CommandsTest, ATextIsAskedForAndPlaced)
{
    Press('T'); // the user cancels
    EXPECT_FALSE(m_state.Marks().Chosen());
    m_window.m_text = L"Gallbladder";
    Press('T');
    m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
    MouseCapture::Unlock();
    ASSERT_EQ(m_state.Content().marks.size(), 1u);
    EXPECT_EQ(m_state.Content().marks.front()->text, L"Gallbladder");
    EXPECT_EQ(m_state.Content().marks.front()->kind, MarkKind::text);
    Measure();
    EXPECT_EQ(m_state.Content().marks.back()->text, L"");
}

TEST_F(CommandsTest, ATermOfTheProtocolIsChosenInTheUsersLanguage)
{
    qor_utils::SetStoreFolder(qor_utils::baseSuiteStore, m_folder.Path());
    const std::wstring file = m_folder / L"annotations.xml";
    test_support::WriteFile(file, "<annotations><term text=\"Liver\"/><other text=\"x\"/><term/>"
                                  "<term text=\"Spleen\"/></annotations>");
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    CarryOut(L"Annotation", L"Text");
    EXPECT_EQ(m_window.m_offered, (std::vector<std::wstring>{L"Leber", L"Milz"}));
    EXPECT_FALSE(m_state.Marks().Chosen()); // the user cancels
    m_window.m_chosen = L"Milz";
    CarryOut(L"Annotation", L"Text");
    m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
    MouseCapture::Unlock();
    ASSERT_EQ(m_state.Content().marks.size(), 1u);
    EXPECT_EQ(m_state.Content().marks.front()->kind, MarkKind::term);
    EXPECT_EQ(m_state.Content().marks.front()->text, L"Spleen");
    test_support::WriteFile(file, "<annotations>");
    CarryOut(L"Annotation", L"Text");
    EXPECT_EQ(m_state.Status(), GetStr("exam.terms.none"));
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"en"));
}

TEST_F(CommandsTest, ThePatientIsEditedAndCanBeTakenBack)
{
    m_window.m_text = L"Ada Sample";
    Press(VK_F4);
    EXPECT_EQ(m_state.Content().patient.name, L"Ada Sample");
    CarryOut(L"Measurement", L"Undo");
    EXPECT_EQ(m_state.Content().patient.name, L"");
}

TEST_F(CommandsTest, AFormKeepsAPatientAndRefusesAWrongDate)
{
    const Patient patient{L"Ada", L"4711", L"1969-07-20", L"female", L"two\nlines"};
    std::vector<FormField> fields = PatientFields(patient);
    EXPECT_EQ(PatientOf(fields), patient);
    EXPECT_TRUE(FindPatientProblem(fields).IsEmpty());
    fields[2].value = L"20.7.1969";
    EXPECT_FALSE(FindPatientProblem(fields).IsEmpty());
    EXPECT_EQ(PatientOf(PatientFields({{}, {}, {}, L"unknown", {}})).sex, L"unknown");
    EXPECT_EQ(PatientOf(PatientFields({})), Patient());
}

TEST_F(CommandsTest, TellsWhatCannotBeOpenedAndRemembersWhatCan)
{
    m_desk.CarryOut(*CommandOfKey('O', true)); // the user cancels
    const std::wstring recording = test_support::BesideProgram(L"sample\\images\\linear.cine");
    m_exam.OpenImage(recording);
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.opened", recording.c_str()));
    m_window.m_chosen = m_folder / L"none.cine";
    m_desk.CarryOut(*CommandOfKey('O', true));
    EXPECT_NE(std::wstring(m_state.Status()).find(L"none.cine"), std::wstring::npos);
    Press(VK_F3);
    EXPECT_EQ(m_window.m_recentShown, 1);
    ASSERT_FALSE(RecentFiles().empty());
    EXPECT_EQ(RecentFiles().front(), recording);
    EXPECT_EQ(std::ranges::count(RecentFiles(), m_folder / L"none.cine"), 0);
}

TEST_F(CommandsTest, TheArrowKeysMoveThePointInHand)
{
    Press(VK_RIGHT);
    EXPECT_EQ(m_state.Status(), GetStr("exam.precise.nothing"));
    m_state.SetInput(InputTrackball);
    Press('1');
    const MarkPoint before = m_state.Content().marks.front()->points[0];
    Press(VK_RIGHT);
    Press(VK_DOWN);
    const MarkPoint after = m_state.Content().marks.front()->points[0];
    EXPECT_GT(after.x, before.x);
    EXPECT_GT(after.y, before.y);
    EXPECT_LT(after.x, before.x + 1);
    m_state.SetInput(InputPointer);
}

TEST_F(CommandsTest, TheStudyIsKeptInItsFolderAndComesBack)
{
    m_exam.OpenStudy(m_folder / L"P1\\S1");
    Measure();
    m_exam.SaveChanges();
    const StudyContent kept = m_state.Content();
    m_state.RemoveShown();
    m_exam.OpenStudy(m_folder / L"P1\\S1");
    EXPECT_EQ(m_state.Content(), kept);
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
    m_exam.Leave();
    EXPECT_TRUE(m_window.m_questions.empty());
    EXPECT_EQ(m_window.m_closed, 1);
}

TEST_F(CommandsTest, MeasurementsLeaveAsATableAndAReport)
{
    Measure();
    m_exam.ExportTable();
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.export.saved", (m_folder / L"measurements-1.csv").c_str()));
    EXPECT_NE(test_support::ReadFile(m_folder / L"measurements-1.csv").find("curved.cine"),
              std::string::npos);
    m_exam.ExportReport();
    const std::string page = test_support::ReadFile(m_folder / L"report-1.html");
    EXPECT_NE(page.find("data:image/png;base64,"), std::string::npos);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), 2);
}

TEST_F(CommandsTest, AnActionIsToldWhenItWasCarriedOutAndNoOther)
{
    Listener listener({});
    CarryOut(L"Imaging", L"Gain", 2);
    EXPECT_EQ(listener.m_params, std::vector<int>{2});
    CarryOut(L"Document", L"Burn");
    EXPECT_EQ(m_state.Status(), GetStr("exam.action.noeffect", L"Document", L"Burn"));
    CarryOut(L"Measurement", L"Measure"); // has a state and no effect
    EXPECT_EQ(m_state.Status(), GetStr("exam.action.noeffect", L"Measurement", L"Measure"));
    EXPECT_EQ(listener.m_params.size(), 1u);
}

TEST_F(CommandsTest, BroadcastsAStateWhenItHasChanged)
{
    m_desk.BroadcastAll();
    Listener listener({StateOf(L"Imaging", L"Freeze"), StateOf(L"Probe", L"Select", 0),
                       StateOf(L"Probe", L"Select", 1), StateOf(L"Measurement", L"Measure")});
    CarryOut(L"Imaging", L"Freeze");
    EXPECT_EQ(std::exchange(listener.m_values, {}), std::vector<int>{0});
    m_state.SetStatus(L"nothing of theirs");
    EXPECT_TRUE(listener.m_values.empty());
    CarryOut(L"Probe", L"Select", 1);
    EXPECT_EQ(std::exchange(listener.m_values, {}), (std::vector<int>{0, 1}));
    Press('2'); // lets the frames stand, too
    EXPECT_EQ(std::exchange(listener.m_values, {}), (std::vector<int>{1, 1}));
    m_desk.BroadcastAll();
    EXPECT_EQ(listener.m_values, (std::vector<int>{1, 0, 1, 1}));
}

TEST_F(CommandsTest, OnlyOneRecordingRunsAtATime)
{
    EXPECT_TRUE(IsPossible('C') && IsPossible('V'));
    Press('C');
    EXPECT_TRUE(IsOn('C'));
    EXPECT_FALSE(IsPossible('V'));
    Press('V');
    CarryOut(L"Document", L"RecordMovie");
    EXPECT_TRUE(m_state.Recording() && !m_state.Recording()->isMovie);
    m_exam.Advance();
    EXPECT_EQ(m_state.Recording()->frames, 1);
    Press('C');
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.record.finished", 1, (m_folder / L"recording-001.cine").c_str()));
    EXPECT_TRUE(IsPossible('V'));
}

TEST_F(CommandsTest, MarksStayWithTheRecordingThatOneKeyOpens)
{
    const std::wstring path = m_folder / L"recording-001.cine";
    m_state.SelectImage(1);
    EXPECT_FALSE(IsPossible(VK_F8));
    Press(VK_F9);
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.none"));
    Press('C');
    for (int frame = 1; frame <= 4; ++frame) {
        m_exam.Advance();
        if (frame % 2 == 0) Press(VK_F8);
    }
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.marked", 4, path.c_str()));
    Press('C');
    m_state.SetStatus(L"something else");
    m_exam.FollowStatus();
    EXPECT_EQ(m_state.Current(), 1u);
    Press(VK_F9);
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.opened", path.c_str()));
    EXPECT_EQ(m_state.Source().Frames(), 4);
    EXPECT_TRUE(std::ranges::equal(m_state.Source().Marks(), std::vector<int>{1, 3}));
}

// A limit on the size of files, which check-disk-full sets, stands for the disk.
TEST_F(CommandsTest, AFullDiskIsToldWithTheFileAndWhatCanBeDone)
{
    const std::wstring limit = test_support::EnvironmentVariable(L"EXAM_FILE_LIMIT");
    if (limit.empty())
        GTEST_SKIP() << "needs a limit on the size of files; check-disk-full sets one";
    constexpr int frameSize = 128 * 1536;
    const int frames = (std::stoi(limit) - 76) / frameSize;
    const std::wstring path = m_folder / L"recording-001.cine";
    m_state.SelectImage(1);
    Press('C');
    for (int i = 0; i <= frames; ++i)
        m_exam.Advance();
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(), frames == 0 ? GetStr("exam.record.unwritable", path.c_str())
                                            : GetStr("exam.record.broken", path.c_str(), frames));
    EXPECT_EQ(std::filesystem::exists(path), frames > 0);
}

TEST_F(CommandsTest, AMissingCodecIsToldWithTheFileAndWhatCanBeDone)
{
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"none such");
    Press('V');
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.record.nocodec", (m_folder / L"movie-001.avi").c_str(), L"none such"));
    EXPECT_GE(m_state.Status().Find(KeyName(*CommandOfKey(VK_F12))), 0); // opens the settings
}

TEST_F(CommandsTest, TheTimelineShowsTheMarks)
{
    const std::wstring path = m_folder / L"marked.cine";
    std::filesystem::copy_file(test_support::BesideProgram(L"sample\\images\\linear.cine"), path);
    for (const char* const marks : {"", "2\nnonsense\n99\n-1\n"}) {
        std::ofstream(std::filesystem::path(path + L".marks")) << marks;
        ExamState state;
        state.SetLayout(WindowLayout({.client = {1280, 800}}), {0, 0});
        EXPECT_EQ(state.OpenImage(path), L"");
        PixelCanvas picture(state.Layout().client);
        DrawTimeline(picture.Context(), state);
        std::vector<unsigned int> pixels;
        picture.Cut(state.Layout().timeline, pixels);
        const bool isMarked = std::ranges::count(pixels, 0xFFAAB8C8u) > 0; // palette::scale
        EXPECT_EQ(isMarked, *marks != 0);
    }
}

TEST_F(CommandsTest, TheScreenTellsTheTimeOfARecordingAndWhatIsLeft)
{
    RunningRecording recording{false, 12, 65};
    EXPECT_EQ(RecordingTimeText(recording), L"REC 1:05");
    EXPECT_EQ(RecordingRoomText(recording), L"12 frames");
    recording.secondsLeft = 3725;
    recording.bytesLeft = 3'440'000'000;
    EXPECT_EQ(RecordingRoomText(recording), L"12 frames, 1:02:05 left, 3.4 GB free");
    recording.bytesLeft = 999'000'000;
    zel_string_convert::SetLanguage(L"de");
    EXPECT_EQ(RecordingRoomText(recording), L"12 Bilder, noch 1:02:05, 999 MB frei");
}

TEST_F(CommandsTest, SettingsTakeEffectAtOnceAndSurviveARestart)
{
    const std::wstring loops = m_folder / L"loops\\of today";
    EXPECT_EQ(LengthText(12.34), L"12.3 mm");
    ASSERT_TRUE(EditSettings({{0, L"Uncompressed"},
                              {1, L"40"},
                              {2, loops.c_str()},
                              {3, (m_folder / L"log").c_str()},
                              {4, L"in centimetres"},
                              {5, L"Deutsch"},
                              {6, L"large"},
                              {7, L"Tavren"}}));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_EQ(LengthText(12.34), L"1,23 cm");
    EXPECT_EQ(utilsExam::GetConsoleType(), eConsoleTavren);
    Press('V');
    m_exam.Advance();
    Press('V');
    EXPECT_TRUE(std::filesystem::exists(loops + L"\\movie-001.avi"));
    const Settings chosen = m_exam.Settings().InEffect();
    EXPECT_EQ(chosen.icons, L"large");

    EXPECT_EQ(ReadSettings(), chosen);
    zel_string_convert::SetLanguage(L"en");
    ShowLengthsIn(LengthUnit::millimetre);
    Examination restarted(m_state, m_window, m_folder.Path());
    restarted.Settings().Use(ReadSettings());
    EXPECT_EQ(restarted.Settings().InEffect(), chosen);
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_EQ(LengthText(12.34), L"1,23 cm");
    qor_utils::SetLogDirectory({}); // the folder goes
}

TEST_F(CommandsTest, TheFormOfTheSettingsTakesNothingThatCannotBe)
{
    const std::wstring file = m_folder / L"a file";
    std::ofstream(std::filesystem::path(file)) << "x";
    for (const wchar_t* const quality : {L"101", L"-1", L"best", L"", L"1000000000000"})
        EXPECT_FALSE(EditSettings({{1, quality}})) << quality;
    EXPECT_FALSE(EditSettings({{2, L""}}));
    EXPECT_FALSE(EditSettings({{2, file.c_str()}}));
    EXPECT_EQ(m_window.m_problem, GetStr("exam.settings.wrongfolder", file.c_str()));
    EXPECT_FALSE(EditSettings({{3, (file + L"\\log").c_str()}}));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"exam.ini"));
}

TEST_F(CommandsTest, TheFormOfTheSettingsOffersTheInstalledCodecsAndTheOneThatIsSet)
{
    std::vector<CString> choices;
    CString value;
    const auto look = [&](const std::vector<FormField>& fields) {
        choices = fields.front().choices;
        value = fields.front().value;
    };
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"none such");
    m_window.m_edit = look;
    Press(VK_F12);
    EXPECT_EQ(value, L"none such");
    ASSERT_FALSE(choices.empty());
    EXPECT_EQ(choices.back(), L"none such");
    choices.pop_back();
    EXPECT_EQ(choices.front(), L"Uncompressed");
    for (const CString& codec : choices)
        EXPECT_EQ(FindCodec(codec.GetString()), codec.GetString());
}

TEST_F(CommandsTest, ExportedSettingsAreAProfile)
{
    ASSERT_TRUE(EditSettings({{1, L"33"}, {4, L"in centimetres"}, {7, L"Vollet"}}));
    SetWanted(StatusSettings()[2], true);
    SetWanted(DeviceSettings()[0], false);
    const Settings chosen = m_exam.Settings().InEffect();
    m_desk.Press({.key = 'I', .control = true});
    const std::wstring file = chosen.recordings + L"\\settings-1.ini";
    EXPECT_EQ(m_state.Status(), GetStr("exam.export.saved", file.c_str()));
    UseProfile(file);
    EXPECT_EQ(ReadSettings(), chosen);
    EXPECT_TRUE(IsWanted(StatusSettings()[2]));
    EXPECT_FALSE(IsWanted(StatusSettings()[3]));
    EXPECT_FALSE(IsWanted(DeviceSettings()[0]));
    EXPECT_TRUE(IsWanted(DeviceSettings()[1]));
}

TEST_F(CommandsTest, AResetOfTheSettingsAsksAndTakesTheShippedOnes)
{
    ASSERT_TRUE(EditSettings({{4, L"in centimetres"}, {5, L"Deutsch"}}));
    const Settings chosen = m_exam.Settings().InEffect();
    m_window.m_answer = false;
    m_desk.Press({.key = 'W', .control = true});
    EXPECT_EQ(m_window.m_questions.back(), GetStr("exam.settings.ask"));
    EXPECT_EQ(m_exam.Settings().InEffect(), chosen);
    EXPECT_EQ(ReadSettings().units, L"cm");
    m_window.m_answer = true;
    m_desk.Press({.key = 'W', .control = true});
    EXPECT_EQ(ReadSettings(), Settings());
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"en");
    EXPECT_EQ(LengthText(10), L"10.0 mm");
    EXPECT_EQ(m_state.Status(), GetStr("exam.settings.shipped"));
}

TEST_F(CommandsTest, SettingsThatCannotBeKeptHoldAndAreTold)
{
    UseProfile(m_folder / L"no\\such\\exam.ini");
    m_exam.Settings().NextLanguage();
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_EQ(m_state.Status(), GetStr("exam.settings.unkept"));
}

TEST_F(CommandsTest, AClickOnItsSentenceOpensAFinishedMovie)
{
    s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
    Press('V');
    m_exam.Advance();
    Press('V');
    m_exam.FollowStatus();
    EXPECT_EQ(m_state.Status(), GetStr("exam.image.opened", (m_folder / L"movie-001.avi").c_str()));
}

TEST_F(CommandsTest, ARecordingEndsWhenTheImageHasAnotherSize)
{
    for (const auto change : {+[](ExamState& state) { state.NextImage(); },
                              +[](ExamState& state) { state.ChangeDepth(-1); }}) {
        Press('C');
        m_state.StepFrames(1);
        EXPECT_TRUE(m_state.Recording());
        change(m_state);
        EXPECT_FALSE(m_state.Recording());
    }
}

TEST_F(CommandsTest, FramesRunUnlessTheyAreFrozenOrWhileTheyAreRecorded)
{
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
    m_state.SetFrozen(false);
    const std::optional<unsigned> interval = m_exam.PlayInterval();
    ASSERT_TRUE(interval);
    EXPECT_LT(*interval, 1000 / m_state.Source().FramesPerSecond() / 2);
    const int first = m_state.Frame();
    m_exam.Play();
    m_exam.Play(); // before the next frame is due
    EXPECT_EQ(m_state.Frame(), (first + 1) % m_state.Source().Frames());
    m_state.SetFrozen(true);
    Press('C');
    EXPECT_EQ(m_exam.PlayInterval(), interval);
    CarryOut(L"Console", L"Cancel");
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
}

TEST_F(CommandsTest, AKeyNeedsItsModifiersAndNoOther)
{
    m_desk.Press({.key = 'C', .control = true});
    m_desk.Press({.key = 'C', .other = true});
    m_desk.Press({.key = 'Q'});
    m_desk.Press({.key = 'Q', .control = true, .other = true});
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_window.m_closed, 0);
    m_desk.Press({.key = 'C'});
    EXPECT_TRUE(m_state.Recording());
}

TEST_F(CommandsTest, AHeldKeyRepeatsOnlyWhatSteps)
{
    for (const UINT key : {UINT{'C'}, UINT{'Z'}, UINT{'1'}, UINT{VK_SPACE}, UINT{'L'}})
        m_desk.Press({.key = key, .isRepeat = true});
    EXPECT_FALSE(m_state.Recording());
    EXPECT_TRUE(m_state.Status().IsEmpty());
    EXPECT_FALSE(IsOn('1'));
    EXPECT_EQ(m_state.Current(), 0u);
    Press(VK_SPACE);
    for (int i = 0; i < 3; ++i)
        m_desk.Press({.key = 'F', .isRepeat = true});
    EXPECT_EQ(m_state.Frame(), 3);
}

TEST_F(CommandsTest, ClosingAsksWhenMeasurementsWouldBeLost)
{
    Press('1');
    CarryOut(L"Exam", L"End");
    EXPECT_TRUE(m_window.m_questions.empty()); // nobody has measured anything
    EXPECT_EQ(m_window.m_closed, 1);
    Measure();
    Press('C');
    m_exam.Advance();
    m_exam.Leave();
    ASSERT_EQ(m_window.m_questions.size(), 1u); // there is no study open that could keep it
    EXPECT_EQ(m_window.m_closed, 1);
    EXPECT_TRUE(m_state.Recording()); // the exam goes on
    m_window.m_answer = true;
    m_exam.Leave();
    EXPECT_EQ(m_window.m_closed, 2);
    EXPECT_FALSE(m_state.Recording());
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"recording-001.cine"));
}

TEST_F(CommandsTest, EscapeEndsWhatIsUnderWayAndNeverTheExam)
{
    m_state.SetInput(InputTrackball);
    Press('1');
    MouseCapture::Unlock();
    MouseCapture::LockNext();
    Press('C');
    Press(VK_ESCAPE);
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_TRUE(m_state.Recording());
    Press(VK_ESCAPE);
    EXPECT_FALSE(m_state.Recording());
    Press(VK_ESCAPE);
    EXPECT_EQ(m_window.m_closed, 0);
    m_state.SetInput(InputPointer);
}

TEST_F(CommandsTest, ARecordingOfNoFrameSaysSo)
{
    Press('C');
    Press('C');
    EXPECT_EQ(m_state.Status(), GetStr("exam.record.empty"));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"recording-001.cine"));
}

TEST_F(CommandsTest, NothingIsFrozenWhileFramesAreRecorded)
{
    Press('C');
    EXPECT_FALSE(m_state.IsFrozen());
    CarryOut(L"Imaging", L"Freeze"); // the frames stand, and so does the recording
    EXPECT_EQ(m_exam.PlayInterval(), std::nullopt);
    EXPECT_TRUE(m_state.Recording());
    CarryOut(L"Imaging", L"Freeze");
    EXPECT_NE(m_exam.PlayInterval(), std::nullopt);
    Press('C');
    EXPECT_TRUE(m_state.IsFrozen()); // as before the recording
    m_state.SetFrozen(false);
    Press('C');
    Press('C');
    EXPECT_FALSE(m_state.IsFrozen());
}

TEST_F(CommandsTest, TheLampOfTheTrackballShowsTheStyle)
{
    m_desk.BroadcastAll();
    Listener lamp({StateOf(L"Console", L"Pointer")});
    CarryOut(L"Console", L"Pointer");
    EXPECT_EQ(MouseCapture::GetInput(), InputTrackball);
    EXPECT_EQ(std::exchange(lamp.m_values, {}), std::vector<int>{1});
    CarryOut(L"Console", L"Pointer");
    EXPECT_EQ(MouseCapture::GetInput(), InputPointer);
    EXPECT_EQ(lamp.m_values, std::vector<int>{0});
}

TEST_F(CommandsTest, AMeasurementLetsTheFramesStand)
{
    m_state.SetFrozen(false);
    Press('2');
    EXPECT_TRUE(m_state.IsFrozen());
}

TEST_F(CommandsTest, UnpackingAsksBeforeItReplacesFiles)
{
    std::filesystem::create_directories(m_folder / L"study-001");
    std::ofstream(std::filesystem::path(m_folder / L"study-001\\study.xml")) << "mine";
    std::filesystem::create_directories(m_folder / L"study");
    std::ofstream(std::filesystem::path(m_folder / L"study\\study.xml")) << "packed";
    ASSERT_EQ(PackFolder(m_folder / L"study-001.zip", m_folder / L"study",
                         [](std::size_t, std::size_t, const std::wstring&) { return true; })
                  .problem,
              L"");
    m_exam.Unpack();
    EXPECT_EQ(m_window.m_questions.size(), 1u);
    EXPECT_EQ(m_state.Status(), GetStr("exam.archive.kept", (m_folder / L"study-001").c_str()));
    EXPECT_EQ(test_support::ReadFile(m_folder / L"study-001\\study.xml"), "mine");
    m_window.m_answer = true;
    m_exam.Unpack();
    EXPECT_EQ(test_support::ReadFile(m_folder / L"study-001\\study.xml"), "packed");
    EXPECT_TRUE(m_window.m_told.empty());
    const base::File held(CreateFileW((m_folder / L"study-001\\study.xml").c_str(), GENERIC_READ, 0,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    m_exam.Unpack();
    ASSERT_EQ(m_window.m_told.size(), 1u);
    EXPECT_GE(m_window.m_told[0].Find(L"study.xml - the file that is there"), 0);
}
