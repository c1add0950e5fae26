#include "commands/CommandDesk.h"

#include "commands/Commands.h"

#include <pro_actions/CProActionCollection.h>
#include <pro_actions/IActionStateConsumer.h>
#include <pro_actions/NotifiedConsumer.h>
#include <pro_actions/VocabularyLoading.h>
#include <Utils_Statics/GetStr.h>

#include <algorithm>

namespace exam {

namespace {

// Files may hold any number. Within these bounds no sum or product here overflows, and every
// meaningful action fits.
constexpr int mostParam = 10000;

} // namespace

void CommandDesk::Press(const KeyPress& press)
{
    const Command* const command = CommandOfKey(press.key, press.control);
    if (!command || press.other || (press.isRepeat && !command->key.repeats)) return;
    CarryOut(*command);
}

void CommandDesk::CarryOut(const Command& command)
{
    if (IsPossible(command, m_exam.State())) command.carryOut(m_exam, command.key.param);
}

void CommandDesk::CarryOut(const ActionInfo& action)
{
    const Command* const command = CommandOfAction(action);
    if (!command || !command->carryOut) {
        const std::wstring type = pro_actions::ActionTypeName(action.type);
        const std::wstring name = pro_actions::ActionName(action.type, action.action);
        return m_exam.State().SetStatus(GetStr("exam.action.noeffect", type.c_str(), name.c_str()));
    }
    if (!IsPossible(*command, m_exam.State())) return;
    command->carryOut(m_exam, std::clamp<int>(action.param, -mostParam, mostParam));
    pro_actions::SignalActionNotification(action.type, action.action, action.param);
}

void CommandDesk::BroadcastAll()
{
    m_told.clear();
    BroadcastChanges();
}

void CommandDesk::OnStateChange(StateChangeType, unsigned int, long)
{
    BroadcastChanges();
}

void CommandDesk::BroadcastChanges()
{
    for (const Command& command : Commands()) {
        for (int param = 0; command.action.type && command.value && param < command.params;
             ++param) {
            const ActionStateInfo state = StateOf(command, param);
            const int value = command.value(m_exam.State(), param);
            const auto told = m_told.find(state);
            if (told != m_told.end() && told->second == value) continue;
            m_told[state] = value;
            IActionStateConsumer::ActionStateSignal(state, value);
        }
    }
}

} // namespace exam
