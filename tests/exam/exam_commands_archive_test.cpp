// Commands unpack an archive, offer its study, and say what is wrong with it.
#include "CommandsFixture.h"
#include "image/CineProblem.h"
#include "record/StudyArchive.h"

#include <test_support/Files.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace exam;

TEST_F(CommandsTest, AnUnpackedStudyIsOfferedAndOpened)
{
    const std::wstring study = m_folder / L"P1\\S1";
    const std::wstring unpacked = m_folder / L"study-001\\S1";
    std::filesystem::create_directories(study);
    m_exam.OpenStudy(study);
    m_state.SelectImage(0);
    Measure();
    m_exam.Pack();
    m_exam.Unpack(); // the user does not want to open it
    ASSERT_EQ(m_window.m_questions.size(), 1u);
    EXPECT_EQ(m_window.m_questions[0], GetStr("exam.archive.open", unpacked.c_str()));
    EXPECT_EQ(m_state.StudyFolder(), study);
    Measure(); // is kept before the other study is opened
    m_window.m_answer = true;
    m_exam.Unpack();
    EXPECT_EQ(m_state.StudyFolder(), unpacked);
    EXPECT_EQ(m_state.Content().marks.size(), 1u);
    m_exam.OpenStudy(study);
    EXPECT_EQ(m_state.Content().marks.size(), 2u);
}

TEST_F(CommandsTest, AStudyThatCannotBeSavedIsNotLeftForAnUnpackedOneWithoutAQuestion)
{
    const std::wstring patient = m_folder / L"P1";
    std::filesystem::create_directories(patient + L"\\S1");
    m_exam.OpenStudy(patient + L"\\S1");
    m_state.SelectImage(0);
    Measure();
    m_exam.Pack();
    std::filesystem::remove_all(patient);
    test_support::WriteFile(patient, "no folder");
    Measure();
    m_window.m_answer = true;
    m_exam.Unpack();
    EXPECT_EQ(m_window.m_questions.size(), 2u); // whether to open it, and whether to lose the mark
    EXPECT_EQ(m_state.StudyFolder(), m_folder / L"study-001\\S1");
}

TEST_F(CommandsTest, WhatIsWrongWithAnArchiveIsSaidInTheUsersLanguage)
{
    const auto goOn = [](std::size_t, std::size_t, const std::wstring&) { return true; };
    const std::wstring archive = m_folder / L"study-001.zip";
    const std::wstring file = m_folder / L"file 12.xml";
    const auto quoted = [](const std::wstring& name) { return L"\u201E" + name + L"\u201C"; };
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    test_support::WriteFile(archive, "no archive");
    m_exam.Unpack();
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.archive.failed", (quoted(archive) + L" ist kein Zip-Archiv").c_str()));
    const auto packed = [&](const std::wstring& into, const std::vector<PackedFile>& files) {
        return InUsersLanguage(PackFiles(into, files, goOn).problem);
    };
    EXPECT_EQ(packed(archive, {}), quoted(archive) + L" kann keine 0 Dateien aufnehmen");
    EXPECT_EQ(
        packed(archive, {{file, L"one"}}),
        quoted(file) +
            L" ist nicht zu packen; ist die Datei in Gebrauch oder der Datentr\u00E4ger voll?");
    test_support::WriteFile(file, "content");
    EXPECT_EQ(packed(m_folder / L"none\\a.zip", {{file, L"one"}}),
              quoted(m_folder / L"none\\a.zip") + L" ist nicht zu schreiben");
    ASSERT_EQ(packed(archive, {{file, L"one"}, {file, L"folder/"}}), L"");
    const auto unpacked = [&](const std::wstring& folder) {
        return InUsersLanguage(UnpackArchive(archive, folder, "", Existing::replace, goOn).problem);
    };
    EXPECT_EQ(unpacked(m_folder / L"out"),
              L"das Entpacken bleibt beim Ordner " + quoted(L"folder/") + L" stehen");
    EXPECT_EQ(unpacked(file), L"der Ordner " + quoted(file) + L" ist nicht anzulegen");
    std::string bytes = test_support::ReadFile(archive);
    char& damaged = bytes.at(bytes.find("one") + 4);
    damaged = static_cast<char>(damaged ^ 0x55);
    test_support::WriteFile(archive, bytes);
    EXPECT_EQ(unpacked(m_folder / L"out").find(quoted(L"one") + L" ist nicht zu entpacken: "), 0u);
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"en"));
}
