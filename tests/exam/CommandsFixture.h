#pragma once

// Commands work on an examination without a window.

#include "commands/CommandDesk.h"
#include "commands/Commands.h"
#include "ProfileApp.h"
#include "study/StudyTexts.h"

#include <gtest/gtest.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace exam {

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

inline ActionInfo Action(const wchar_t* type, const wchar_t* action, int param = 0)
{
    const ActionType number = CProActionCollection::MapActionType(type);
    return {number, CProActionCollection::MapAction(number, action), param, L""};
}

inline ActionStateInfo StateOf(const wchar_t* type, const wchar_t* action, int param = 0)
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

} // namespace exam
