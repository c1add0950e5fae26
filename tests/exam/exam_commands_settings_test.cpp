// Commands change, export and reset the settings.
#include "CommandsFixture.h"
#include "record/MovieSettings.h"
#include "service/StatusSettings.h"
#include "study/StudyTexts.h"

#include <qor_utils/LogOutput.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using namespace exam;

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
    m_state.SetStatus(L"");
    ASSERT_TRUE(EditSettings({{1, L"40"}}));
    EXPECT_EQ(m_state.Status(), GetStr("exam.settings.unkept"));
}
