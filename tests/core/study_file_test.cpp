// The files of a study keep all of it, and lose nothing that is not understood.
#include "study/Study.h"
#include "study/StudyFile.h"
#include "StudySamples.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/Random.h>
#include <test_support/TemporaryFolder.h>
#include <zel_string_convert/TableLoading.h>

#include <windows.h>

#include <limits>

using namespace study_samples;
using test_support::ReadFile;
using test_support::WriteFile;

namespace {

const std::wstring oddText =
    L"<&>\"' \t\r\n ]]> \x00E4\x00DF \x4E2D\x6587 \xD83D\xDE00 %s %n \\ / \xFFFD";

class StudyFileTest : public testing::Test
{
protected:
    StudyFileTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
    }
    ~StudyFileTest() override { zel_string_convert::ClearTable(); }

    std::wstring Folder() const { return m_root / L"P1\\S1"; }
    std::wstring StudyPath() const { return Folder() + L"\\study.xml"; }
    std::wstring PatientPath() const { return m_root / L"P1\\patient.xml"; }
    std::wstring ObjectPath() const { return Folder() + L"\\O1.xml"; }

    // Writes a study of one object and two marks, and reads it into `m_content`.
    void WriteSample()
    {
        Study study;
        study.SetPatient({oddText, L"4711", L"1969-07-20", L"female", oddText});
        study.SetDescription(L"2026-01-15", oddText);
        const std::wstring object = study.AddObject(Recording(L"curved.cine"));
        study.AddMark(On(object, StripMark(MarkKind::distance, {{1.5, 2}, {3, 4}}), oddText));
        study.AddMark(On(object, StripMark(MarkKind::text, {{0.1, 1e-300}}), L"liver"));
        StudyContent empty;
        StudyFile file;
        ASSERT_EQ(file.Open(Folder(), empty), L"");
        ASSERT_EQ(file.Save(study.Content()), L"");
        m_content = study.Content();
    }

    // The files with some text in the place of another, which they must have.
    static void Replace(const std::wstring& path, const std::string& text, const std::string& by)
    {
        std::string bytes = ReadFile(path);
        const std::size_t at = bytes.find(text);
        ASSERT_NE(at, std::string::npos) << text;
        WriteFile(path, bytes.replace(at, text.size(), by));
    }

    // Opening must say one sentence that names the file and must leave all files as they are.
    void ExpectRefused(const std::wstring& path, const std::wstring& word)
    {
        const std::string before = ReadFile(StudyPath()) + ReadFile(PatientPath());
        StudyFile file;
        StudyContent content;
        const std::wstring sentence = file.Open(Folder(), content);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(content, StudyContent());
        EXPECT_NE(sentence.find(path), std::wstring::npos);
        EXPECT_NE(sentence.find(word), std::wstring::npos);
        EXPECT_EQ(sentence.back(), L'.');
        EXPECT_NE(file.Save(m_content), L"");
        EXPECT_EQ(ReadFile(StudyPath()) + ReadFile(PatientPath()), before);
    }

    test_support::TemporaryFolder m_root;
    StudyContent m_content;
};

} // namespace

TEST_F(StudyFileTest, AMissingStudyIsEmpty)
{
    StudyFile file;
    StudyContent content;
    EXPECT_EQ(file.Open(Folder(), content), L"");
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(content, StudyContent());
    EXPECT_FALSE(test_support::FileExists(Folder()));
}

TEST_F(StudyFileTest, EverythingComesBack)
{
    WriteSample();
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    EXPECT_EQ(content, m_content);
    EXPECT_TRUE(file.IsSaved(content));
    content.description += L"!";
    EXPECT_FALSE(file.IsSaved(content));
}

TEST_F(StudyFileTest, EveryKindOfMarkComesBackWithAllDigits)
{
    test_support::Random random(3);
    Study study;
    const std::wstring object = study.AddObject(Recording(L"phased.cine", Phased(10'000)));
    for (int kind = 0; kind <= static_cast<int>(MarkKind::term); ++kind) {
        Mark mark = On(object, StripMark(static_cast<MarkKind>(kind), {}), oddText);
        mark.frame = random.Int(0, 100'000);
        while (mark.points.size() < InfoOf(mark.kind).fewestPoints)
            mark.points.push_back({random.Real(-1e9, 1e9), random.Real(-1e-9, 1e-9)});
        mark.points[0] = {std::numeric_limits<double>::denorm_min(),
                          std::numeric_limits<double>::max()};
        ASSERT_NE(study.AddMark(mark), 0) << kind;
    }
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    ASSERT_EQ(file.Save(study.Content()), L"");
    EXPECT_EQ(StudyFile().Open(Folder(), content), L"");
    EXPECT_EQ(content, study.Content());
}

TEST_F(StudyFileTest, RandomStudiesComeBack)
{
    test_support::Random random(11);
    for (int round = 0; round < 20; ++round) {
        const auto text = [&] {
            std::wstring characters;
            for (int i = random.Int(0, 40); i > 0; --i)
                characters += static_cast<wchar_t>(random.OneIn(2) ? random.Int(0, 0x7F)
                                                                   : random.Int(0, 0xFFFF));
            return characters;
        };
        Study study;
        study.SetPatient({text(), text(), L"", L"", text()});
        const std::wstring object = study.AddObject(Recording(text()));
        study.AddMark(On(object, StripMark(MarkKind::velocity, {{1, random.Real(-9, 9)}}), text()));
        const std::wstring folder = m_root / (L"P\\S" + std::to_wstring(round));
        StudyContent content;
        StudyFile file;
        ASSERT_EQ(file.Open(folder, content), L"");
        ASSERT_EQ(file.Save(study.Content()), L"");
        ASSERT_EQ(StudyFile().Open(folder, content), L"");
        EXPECT_EQ(content, study.Content()) << "round " << round;
    }
}

TEST_F(StudyFileTest, WhatIsNotKnownSurvives)
{
    WriteSample();
    Replace(StudyPath(), "<study ", "<study x:seen=\"1\" xmlns:x=\"urn:x\" ");
    Replace(StudyPath(), "<object ",
            "<x:plan step=\"2\">first<x:note>a &amp; b</x:note></x:plan>"
            "<object x:shown=\"no\" ");
    Replace(StudyPath(), "<mark ", "<mark colour=\"red\" ");
    Replace(StudyPath(), "<point ", "<style width=\"2\"/><point ");
    Replace(PatientPath(), "<patient ", "<patient insurance=\"A1\" ");
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    EXPECT_EQ(content, m_content);
    for (int i = 0; i < 3; ++i) {
        content.description += L"!";
        content.patient.name += L"!";
        ASSERT_EQ(file.Save(content), L"");
    }
    for (const char* const kept :
         {"x:seen=\"1\"", "xmlns:x=\"urn:x\"", "<x:plan step=\"2\">first", "<x:note>a &amp; b<",
          "x:shown=\"no\"", "colour=\"red\"", "<style width=\"2\" />"}) {
        const std::string bytes = ReadFile(StudyPath());
        ASSERT_NE(bytes.find(kept), std::string::npos) << kept << " in\n" << bytes;
        EXPECT_EQ(bytes.find(kept), bytes.rfind(kept)) << kept;
    }
    EXPECT_NE(ReadFile(PatientPath()).find("insurance=\"A1\""), std::string::npos);
    StudyContent again;
    EXPECT_EQ(StudyFile().Open(Folder(), again), L"");
    EXPECT_EQ(again, content);
}

TEST_F(StudyFileTest, MarksThatAreNotUnderstoodAreToldAndKept)
{
    WriteSample();
    const std::string strange[] = {
        R"(<mark kind="volume" number="90" object="O1" frame="0" text="" />)",
        R"(<mark kind="distance" number="91" object="O9" frame="0" text="" />)",
        R"(<mark kind="time" number="1" object="O1" frame="0" text="the same number" />)",
        R"(<mark kind="velocity" number="92" object="O1" frame="0" text="" />)",
        R"(<mark kind="velocity" number="4000000000" object="O1" frame="0" text="" />)",
        R"(<object id="..\..\P2" />)",
        R"(<object id="study" />)",
    };
    for (const std::string& element : strange)
        Replace(StudyPath(), "</study>", element + "</study>");
    StudyFile file;
    StudyContent content;
    const std::wstring sentence = file.Open(Folder(), content);
    EXPECT_NE(sentence.find(L"7 entries"), std::wstring::npos);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(content.marks, m_content.marks);
    EXPECT_EQ(content.lastNumber, 92); // so that no new mark gets the number of a kept one
    content.marks.clear();
    ASSERT_EQ(file.Save(content), L"");
    for (const std::string& element : strange)
        EXPECT_NE(ReadFile(StudyPath()).find(element), std::string::npos) << element;
}

TEST_F(StudyFileTest, FilesThatCannotBeUsedAreRefusedAndKept)
{
    WriteSample();
    for (const std::wstring& path : {StudyPath(), PatientPath()}) {
        const std::string sound = ReadFile(path);
        WriteFile(path, sound.substr(0, sound.size() / 2));
        ExpectRefused(path, L"damaged in line");
        WriteFile(path, "");
        ExpectRefused(path, L"cannot be read");
        WriteFile(path, "<html/>");
        ExpectRefused(path, L"another kind");
        for (const char* const format : {"2", "1.5", "new", ""}) {
            WriteFile(path, sound);
            Replace(path, "format=\"1\"", std::string("format=\"") + format + "\"");
            ExpectRefused(path, L"newer");
        }
        WriteFile(path, sound);
    }
}

TEST_F(StudyFileTest, AFileThatIsCutOffIsRefused)
{
    WriteSample();
    const std::string sound = ReadFile(StudyPath());
    const std::size_t end = sound.rfind('>');
    for (std::size_t size = 0; size <= end; size += 13) {
        WriteFile(StudyPath(), sound.substr(0, size));
        StudyFile file;
        StudyContent content;
        EXPECT_NE(file.Open(Folder(), content), L"") << size;
        EXPECT_FALSE(file.IsOpen()) << size;
    }
}

TEST_F(StudyFileTest, AnObjectWhoseFileIsDamagedCostsOnlyItsGeometry)
{
    WriteSample();
    WriteFile(ObjectPath(), "<object");
    StudyFile file;
    StudyContent content;
    EXPECT_NE(file.Open(Folder(), content).find(L"O1.xml is damaged"), std::wstring::npos);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(content.marks, m_content.marks);
    Study study;
    study.Open(content);
    study.RemoveObject(L"O1");
    EXPECT_EQ(file.Save(study.Content()), L"");
    study.Undo();
    EXPECT_EQ(file.Save(study.Content()), L"");
    EXPECT_EQ(ReadFile(ObjectPath()), "<object");
    EXPECT_TRUE(DeleteFileW(ObjectPath().c_str()));
    EXPECT_NE(StudyFile().Open(Folder(), content).find(L"O1.xml is missing"), std::wstring::npos);
    EXPECT_EQ(content.marks, m_content.marks);
}

TEST_F(StudyFileTest, ANewObjectTakesNoFileThatIsThere)
{
    WriteSample();
    WriteFile(Folder() + L"\\O7.xml", "<object/>");
    Study study;
    StudyContent content;
    ASSERT_EQ(StudyFile().Open(Folder(), content), L"");
    study.Open(content);
    EXPECT_EQ(study.AddObject(Recording(L"new.cine")), L"O8");
}

TEST_F(StudyFileTest, ANewObjectNeverReplacesAFileThatCannotBeUsed)
{
    WriteSample();
    Study study;
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    study.Open(content);
    ASSERT_EQ(study.AddObject(Recording(L"new.cine")), L"O2");
    WriteFile(Folder() + L"\\O2.xml", "<object"); // somebody else was faster
    for (int i = 0; i < 2; ++i)
        EXPECT_NE(file.Save(study.Content()).find(L"O2.xml"), std::wstring::npos);
    EXPECT_EQ(ReadFile(Folder() + L"\\O2.xml"), "<object");
}

TEST_F(StudyFileTest, AFailedSaveLeavesTheOldFile)
{
    WriteSample();
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    const std::string before = ReadFile(StudyPath());
    content.description = L"new";
    ASSERT_TRUE(SetFileAttributesW(StudyPath().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_NE(file.Save(content).find(L"study.xml cannot be written"), std::wstring::npos);
    EXPECT_FALSE(file.IsSaved(content));
    EXPECT_EQ(ReadFile(StudyPath()), before);
    ASSERT_TRUE(SetFileAttributesW(StudyPath().c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(file.Save(content), L"");
    EXPECT_TRUE(file.IsSaved(content));
}

TEST_F(StudyFileTest, OnlyWhatChangedIsWritten)
{
    WriteSample();
    StudyFile file;
    StudyContent content;
    ASSERT_EQ(file.Open(Folder(), content), L"");
    WriteFile(PatientPath(), "changed by another program");
    WriteFile(ObjectPath(), "changed by another program");
    content.description = L"new";
    EXPECT_EQ(file.Save(content), L"");
    EXPECT_EQ(ReadFile(PatientPath()), "changed by another program");
    EXPECT_EQ(ReadFile(ObjectPath()), "changed by another program");
}

TEST_F(StudyFileTest, TheSampleStudyOpens)
{
    StudyFile file;
    StudyContent content;
    EXPECT_EQ(file.Open(test_support::BesideProgram(L"sample\\patients\\P1\\S1"), content), L"");
    EXPECT_EQ(content.patient.name, L"Sample patient");
    EXPECT_EQ(content.description, L"Sample study");
}
