#pragma once

#include "app/CommandLine.h"
#include "status/StatusDisplay.h"
#include "window/MainWindow.h"

#include <afxwin.h>

#include <memory>

namespace exam {

/// The application object of exam.exe.
class ExamApp : public CWinApp
{
public:
    BOOL InitInstance() override;
    int ExitInstance() override;

private:
    bool ReadCommandLine();
    bool ChooseProfile();
    bool Fail(const std::wstring& problem);
    bool RunCommand();
    void SetLogFolder();
    void LogStart();
    bool LoadTexts();
    bool LoadImages();
    bool LoadVocabulary();
    bool OpenMainWindow();
    bool OpenStatusRow();
    int RunTour();

    CommandLine m_options;
    std::wstring m_userFolder;
    Settings m_settings; // of this run
    std::wstring m_studyFolder;
    std::unique_ptr<ExamState> m_state;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<StatusDisplay> m_status;
    bool m_isLogged = false; // the log has a line of the start
    int m_exitCode = 0;
};

} // namespace exam
