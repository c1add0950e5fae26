#pragma once

#include "window/MainWindow.h"

#include <Utils_Statics/ActionInfo.h>

#include <string>

namespace exam {

/// Carries out the actions of the vocabulary. An action that has no effect here (there is no
/// transmitter, no printer and no patient list) is reported in the status line.
class ExamActions
{
public:
    /// `pictures`: the folder of saved pictures.
    ExamActions(MainWindow& window, std::wstring pictures);

    /// Carries an action out, and notifies the consumers of action notifications.
    void CarryOut(const ActionInfo& action);

private:
    MainWindow& m_window;
    std::wstring m_pictures;
};

} // namespace exam
