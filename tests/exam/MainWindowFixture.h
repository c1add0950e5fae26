#pragma once

#include "ProfileApp.h"
#include "window/MainWindow.h"

#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <optional>

namespace exam {

// A main window on the sample data, with a profile and a folder of its own.
class OpenMainWindow : public testing::Test
{
protected:
    OpenMainWindow()
    {
        using test_support::BesideProgram;
        EXPECT_TRUE(zel_string_convert::LoadTable(BesideProgram(L"sample\\strings")));
        EXPECT_TRUE(pro_actions::LoadVocabulary(BesideProgram(L"sample\\actions.xml")));
        qor_utils::SetStoreFolder(qor_utils::imagesStore, BesideProgram(L"sample\\images"));
        UseProfile(m_folder / L"exam.ini");
    }
    ~OpenMainWindow() override
    {
        Close();
        pro_actions::ClearVocabulary();
        zel_string_convert::ClearTable();
    }

    void Open(WindowForm form)
    {
        Close();
        m_window.emplace(m_state, m_folder.Path());
        EXPECT_TRUE(m_window->Open(form));
        EXPECT_TRUE(m_window->OpenPanel());
        s_app.m_pMainWnd = &*m_window;
    }

    void Close()
    {
        if (m_window && m_window->GetSafeHwnd()) m_window->DestroyWindow();
        s_app.m_pMainWnd = nullptr;
        m_window.reset();
        HandleMessages();
        utilsExam::AppExiting = false;
    }

    static void HandleMessages()
    {
        for (MSG next; PeekMessage(&next, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessage(&next);
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    std::optional<MainWindow> m_window;
};

// The window has two recordings, shows the second one, and records movies without a codec.
class MainWindowTest : public OpenMainWindow
{
protected:
    MainWindowTest()
    {
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"})
            EXPECT_EQ(m_state.AddRecording(name), L"");
        m_state.SelectImage(1);
        Open(WindowForm::console);
    }
};

} // namespace exam
