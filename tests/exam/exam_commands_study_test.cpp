// Commands work on marks, the patient, images and the study.
#include "commands/Commands.h"
#include "CommandsFixture.h"
#include "image/CineMarks.h"
#include "image/CineProblem.h"
#include "image/OpenFrames.h"
#include "record/Repair.h"
#include "record/StudyArchive.h"
#include "service/PatientForm.h"
#include "service/RecentFiles.h"

#include <base/Handles.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/PrecisionMouse.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using namespace exam;

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

TEST_F(CommandsTest, TabPutsThePointDownThatTheArrowKeysMove)
{
    struct Point : IPrecisionHandler
    {
        void OnPrecisionMove(int, int) override {}
        void OnPrecisionAccept() override { ++accepted; }
        int accepted = 0;
    };
    Point point;
    PrecisionMouse::UpdateHandler(&point);
    Press(VK_TAB);
    PrecisionMouse::ClearPosition();
    Press(VK_TAB);
    EXPECT_EQ(point.accepted, 1);
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

TEST_F(CommandsTest, ClosingKeepsThePatientOrAsks)
{
    m_window.m_text = L"Ada Sample";
    Press(VK_F4);
    m_exam.Leave();
    EXPECT_EQ(m_window.m_questions.size(), 1u); // there is no study open that could keep it
    EXPECT_EQ(m_window.m_closed, 0);
    m_exam.OpenStudy(m_folder / L"P1\\S1");
    Press(VK_F4);
    m_exam.Leave();
    EXPECT_EQ(m_window.m_questions.size(), 1u);
    EXPECT_EQ(m_window.m_closed, 1);
    EXPECT_NE(test_support::ReadFile(m_folder / L"P1\\patient.xml").find("Ada"), std::string::npos);
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

// Everything of a study comes along, and nothing of this machine: two recordings of one name from
// elsewhere, one with a mark only in its own folder, and one that is not marked.
TEST_F(CommandsTest, APackedStudyOpensElsewhere)
{
    namespace fs = std::filesystem;
    const std::wstring sample = test_support::BesideProgram(L"sample\\images\\");
    const std::wstring study = m_folder / L"here\\P1\\S1";
    for (const wchar_t* const folder : {L"here\\P1\\S1", L"one", L"two"})
        fs::create_directories(m_folder / folder);
    fs::copy_file(sample + L"linear.cine", m_folder / L"one\\same.cine");
    fs::copy_file(sample + L"curved.cine", m_folder / L"two\\SAME.cine");
    fs::copy_file(sample + L"curved.cine", study + L"\\own.cine");
    fs::copy_file(sample + L"linear.cine", m_folder / L"recording-001.cine");
    std::ofstream(fs::path(m_folder / L"recording-001.cine.marks")) << "1\n";
    m_exam.OpenStudy(study);
    m_window.m_text = L"Ada Sample";
    Press(VK_F4);
    m_window.m_text.reset();
    for (const std::wstring& path :
         {m_folder / L"one\\same.cine", m_folder / L"two\\SAME.cine", study + L"\\own.cine"}) {
        m_exam.OpenImage(path);
        Measure();
    }
    m_state.SelectImage(0); // of the images store
    Measure();
    const std::vector<Shared<Mark>> marks = m_state.Content().marks;
    ASSERT_EQ(marks.size(), 4u);
    m_exam.Pack();
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.archive.packed", 12, (m_folder / L"study-001.zip").c_str()));
    EXPECT_TRUE(m_window.m_told.empty());
    m_exam.Unpack();
    for (const wchar_t* const folder : {L"here", L"one", L"two", L"recording-001.cine"})
        EXPECT_TRUE(MoveFileW((m_folder / folder).c_str(), (m_folder / folder + L".gone").c_str()));
    const std::wstring unpacked = m_folder / L"study-001\\S1";
    m_exam.OpenStudy(unpacked);
    EXPECT_EQ(m_state.Content().patient.name, L"Ada Sample");
    EXPECT_EQ(m_state.Content().marks, marks);
    std::vector<std::wstring> names;
    for (const auto& object : m_state.Content().objects) {
        names.push_back(object->image);
        ASSERT_TRUE(m_state.SourceNamed(object->image));
        EXPECT_EQ(m_state.ImagePath(object->image), unpacked + L"\\" + object->image);
        EXPECT_EQ(m_state.SourceNamed(object->image)->Description().stream,
                  object->acquisition.stream);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"same.cine", L"SAME-2.cine", L"own.cine",
                                                L"curved.cine"}));
    EXPECT_EQ(ReadMarks(unpacked + L"\\recording-001.cine"), std::vector<int>{0});
    const auto images = m_exam.StudyImages();
    EXPECT_EQ(std::ranges::count(images, unpacked + L"\\recording-001.cine"), 1);
    for (const wchar_t* const file : {L"O1.xml", L"O2.xml", L"O3.xml", L"O4.xml"})
        EXPECT_EQ(test_support::ReadFile(unpacked + L"\\" + file).find(":\\"), std::string::npos)
            << file;
}

TEST_F(CommandsTest, PackingTellsOfImagesThatAreGoneAndLeavesNothingBesides)
{
    namespace fs = std::filesystem;
    fs::create_directories(m_folder / L"P1\\S1");
    m_exam.OpenStudy(m_folder / L"P1\\S1");
    m_state.SelectImage(0);
    Measure();
    std::ofstream(fs::path(m_folder / L"P1\\S1\\study.xml")) << ""; // is written anew
    qor_utils::SetStoreFolder(qor_utils::imagesStore, m_folder / L"nowhere");
    m_exam.Pack();
    ASSERT_EQ(m_window.m_told.size(), 1u);
    EXPECT_GE(m_window.m_told[0].Find(L"curved.cine - there is no such file"), 0);
    std::vector<std::wstring> left;
    for (const auto& entry : fs::directory_iterator(m_folder.Path()))
        left.push_back(entry.path().filename().wstring());
    std::ranges::sort(left);
    EXPECT_EQ(left, (std::vector<std::wstring>{L"P1", L"study-001.zip"}));
}

TEST_F(CommandsTest, ARecordingGoesToTheRecycleBinWithItsMarksWhenTheUserWantsThat)
{
    namespace fs = std::filesystem;
    const std::wstring path = m_folder / L"recording-001.cine";
    fs::copy_file(test_support::BesideProgram(L"sample\\images\\linear.cine"), path);
    std::ofstream(fs::path(MarksPath(path))) << "1\n";
    m_exam.OpenStudy(m_folder / L"P1\\S1");
    m_exam.OpenImage(path);
    Measure();
    const auto remove = [this] { m_desk.CarryOut(*CommandOfKey('B', true)); };
    remove(); // the user says no
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(m_state.Content().marks.size(), 1u);
    m_window.m_answer = true;
    remove();
    ASSERT_EQ(m_window.m_questions.size(), 2u);
    EXPECT_EQ(m_window.m_questions[1], GetStr("exam.remove.file", L"recording-001.cine", 1));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(fs::exists(MarksPath(path)));
    EXPECT_TRUE(m_state.Content().objects.empty());
    EXPECT_FALSE(m_state.SourceNamed(path));
    EXPECT_EQ(m_state.Status(), GetStr("exam.remove.done", L"recording-001.cine"));
}

TEST_F(CommandsTest, AnImageFromElsewhereLeavesTheStudyAndKeepsItsFile)
{
    m_window.m_answer = true;
    m_state.SelectImage(0);
    EXPECT_FALSE(m_exam.RemoveStudyImage(L"curved.cine"));
    EXPECT_EQ(m_state.Status(), GetStr("exam.remove.nothing"));
    Measure();
    EXPECT_TRUE(m_exam.RemoveStudyImage(L"curved.cine"));
    EXPECT_TRUE(m_state.Content().marks.empty());
    EXPECT_TRUE(m_state.SourceNamed(L"curved.cine"));
    EXPECT_TRUE(std::filesystem::exists(m_state.ImagePath(L"curved.cine")));
    CarryOut(L"Measurement", L"Undo");
    EXPECT_EQ(m_state.Content().marks.size(), 1u);
}

TEST_F(CommandsTest, AFileThatCannotBeRemovedStaysOpen)
{
    const std::wstring path = m_folder / L"recording-001.cine";
    std::filesystem::copy_file(test_support::BesideProgram(L"sample\\images\\linear.cine"), path);
    m_exam.OpenImage(path);
    Measure();
    const base::File held(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
    m_window.m_answer = true;
    EXPECT_FALSE(m_exam.RemoveStudyImage(path));
    EXPECT_EQ(m_state.Status(), GetStr("exam.remove.failed", path.c_str()));
    EXPECT_TRUE(m_state.SourceNamed(path));
    EXPECT_EQ(m_state.Marks().Shown().size(), 1u);
}

TEST_F(CommandsTest, WhyAMovieCannotBeRepairedIsSaidInTheUsersLanguage)
{
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    const std::string frame("00db\4\0\0\0abcd", 12);
    test_support::WriteFile(m_folder / L"cut.avi", frame);
    const std::wstring problem = RepairRecording(m_folder / L"cut.avi").problem;
    EXPECT_NE(InUsersLanguage(problem).find(L"sagen nicht, wie gro\u00DF"), std::wstring::npos);
}

TEST_F(CommandsTest, WhatIsWrongWithARawCineIsSaidInTheUsersLanguage)
{
    const std::string whole =
        test_support::ReadFile(test_support::BesideProgram(L"sample\\images\\linear.cine"));
    const auto said = [this](const std::string& bytes) {
        test_support::WriteFile(m_folder / L"one.cine", bytes);
        return OpenFrames(m_folder / L"one.cine").problem;
    };
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    EXPECT_NE(said(whole.substr(0, 40)).find(L"k\u00FCrzer als die 76 Bytes"), std::wstring::npos);
    std::string other = whole;
    other[0] = 4;
    EXPECT_NE(said(other).find(L"die Datei enth\u00E4lt keine B-Bilder"), std::wstring::npos);
    test_support::WriteFile(m_folder / L"cut.cine", whole.substr(0, whole.size() - 1));
    m_exam.OpenImage(m_folder / L"cut.cine");
    const std::wstring status(m_state.Status());
    EXPECT_NE(status.find(L"der Kopf z\u00E4hlt 4 Bilder zu "), std::wstring::npos)
        << status.c_str();
    EXPECT_NE(status.find(L"(3 ganze Bilder)"), std::wstring::npos) << status.c_str();
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"en"));
    EXPECT_NE(said(other).find(L"the file does not hold B-mode frames"), std::wstring::npos);
}
