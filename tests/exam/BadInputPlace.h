#pragma once

#include "ProfileApp.h"
#include "window/MainWindow.h"

#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/TemporaryFolder.h>
#include <zel_string_convert/TableLoading.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace exam::bad_input {

// The application without a window, in folders of its own.
class Place
{
public:
    Place()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        EXPECT_TRUE(
            pro_actions::LoadVocabulary(test_support::BesideProgram(L"sample\\actions.xml")));
        qor_utils::SetStoreFolder(qor_utils::imagesStore,
                                  test_support::BesideProgram(L"sample\\images"));
        qor_utils::SetStoreFolder(qor_utils::patientDatabaseStore, m_folder.Path());
        UseProfile(m_folder / L"exam.ini");
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
        std::filesystem::create_directories(Study());
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
        std::filesystem::copy_file(test_support::BesideProgram(L"sample\\images\\linear.cine"),
                                   Study() + L"\\own.cine");
        Exam().OpenStudy(Study());
        StudyObject object;
        object.image = L"own.cine";
        m_state.Document().SetPatient(NamedPatient(L"Ada Sample"));
        Mark mark;
        mark.object = m_state.Document().AddObject(std::move(object));
        mark.points = {{1, 2}, {30, 40}};
        m_state.Document().AddMark(std::move(mark));
        EXPECT_TRUE(Exam().SaveStudy()) << std::filesystem::path(Said());
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

} // namespace exam::bad_input
