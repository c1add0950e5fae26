#pragma once

#include "window/MainWindow.h"

#include <Utils_Statics/ActionInfo.h>

#include <string>

namespace exam {

/// What the actions of the vocabulary do in this application. Each that has no effect here (there
/// is no transmitter, no printer and no patient list) is told in the status line.
class ExamActions
{
public:
    /// `pictures`: the folder of saved pictures.
    ExamActions(MainWindow& window, std::wstring pictures);

    /// Carries an action out, and tells the consumers of action notifications that it was.
    void CarryOut(const ActionInfo& action);

private:
    MainWindow& m_window;
    std::wstring m_pictures;
};

} // namespace exam
