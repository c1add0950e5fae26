#include "window/ConsoleControls.h"

#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/DerivedState.h>

namespace exam {

ConsoleControls::ConsoleControls(MainWindow& window, const Session& session,
                                 const std::wstring& pictures)
    : m_window(window), m_actions(window, pictures), m_states(window, session),
      m_panel({[this](const ActionInfo& action) { m_actions.CarryOut(action); },
               [this](const CString& sentence) { m_window.SetStatus(sentence); }})
{
    m_window.SetPanel(&m_panel);
}

ConsoleControls::~ConsoleControls()
{
    m_window.SetPanel(nullptr);
    m_panel.DestroyWindow(); // it shows objects that end next
    DerivedState::DestroyAll();
    ActionRepository::DestroyInstance();
}

bool ConsoleControls::Open()
{
    Reload();
    return m_panel.Open(m_window);
}

void ConsoleControls::Reload()
{
    DerivedState::LoadAll();
    m_panel.Reload();
    m_states.BroadcastAll();
}

} // namespace exam
