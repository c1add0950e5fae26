#pragma once

#include "panel/ControlPanel.h"
#include "window/ExamActions.h"
#include "window/ExamStates.h"

namespace exam {

/// Connects the control panel with the application: actions one way, states the other. The
/// protocol's files are in force from Reload() to the end of this object.
class ConsoleControls
{
public:
    /// The window must be open. `pictures`: the folder of saved pictures.
    ConsoleControls(MainWindow& window, const Session& session, const std::wstring& pictures);
    ~ConsoleControls();
    ConsoleControls(const ConsoleControls&) = delete;
    ConsoleControls& operator=(const ConsoleControls&) = delete;

    /// Shows the panel; false when the platform refuses its window.
    bool Open();

    /// Reads the protocol's files again, as at the start of the program.
    void Reload();

    ControlPanel& Panel() { return m_panel; }

private:
    MainWindow& m_window;
    ExamActions m_actions;
    ExamStates m_states;
    ControlPanel m_panel;
};

} // namespace exam
