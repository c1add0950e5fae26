#pragma once

#include "commands/Examination.h"

#include <pro_actions/ActionStateInfo.h>
#include <Utils_Statics/ActionInfo.h>

#include <map>
#include <span>
#include <string>

namespace exam {

/// The menus, from left to right.
enum class Menu
{
    none,
    exam,
    image,
    measure,
    view,
    help
};

/// One thing that the user can have done. Keys, menus, tool bar, control panel, lamps and the help
/// all come from the table of commands.
struct Command
{
    UINT key = 0;                     ///< virtual key; 0: none
    bool withControl = false;         ///< true: the key needs Ctrl; false: no other key with it
    bool repeats = false;             ///< true: a key that is held carries it out again and again
    int keyParam = 0;                 ///< the parameter that key, menu and tool bar give
    Menu menu = Menu::none;           ///< the menu that it stands in, in the table's order
    const wchar_t* type = nullptr;    ///< its type in the action vocabulary; null: none
    const wchar_t* action = nullptr;  ///< its name in that type
    const wchar_t* picture = nullptr; ///< file of its picture on the tool bar; null: not there
    const char* nameKey = nullptr;    ///< key of its name; null for a state without effect
    const char* tipKey = nullptr;     ///< key of a text that says what it does; null with the name

    /// Carries it out; the vocabulary explains the parameter. Null: it has no effect here.
    void (*carryOut)(Examination& exam, int param) = nullptr;

    /// Its state for a parameter; 0 is off. Null: it has none.
    int (*value)(const ExamState& state, int param) = nullptr;
    bool isNumber = false; ///< its state is a number, and not on or off
    int params = 1;        ///< the parameters that have a state, from 0 on

    /// True when it can be carried out now. Null: always.
    bool (*isPossible)(const ExamState& state) = nullptr;
};

/// The table.
std::span<const Command> Commands();

/// A key that is pressed, and what is held with it.
struct KeyPress
{
    UINT key = 0;          ///< virtual key
    bool control = false;  ///< Ctrl is held
    bool other = false;    ///< Shift, Alt or a Windows key is held
    bool isRepeat = false; ///< the key was down already
};

/// The command of a key or an action; null when there is none.
const Command* CommandOfKey(UINT key, bool withControl = false);
const Command* CommandOfAction(const ActionInfo& action);

/// False for a state that is a number.
bool IsOn(const Command& command, const ExamState& state);
bool IsPossible(const Command& command, const ExamState& state);

/// The key of a command and what it does, in the current language. It has texts.
CString TipOf(const Command& command);

/// The name of its key as it stands on a keyboard, in the current language.
CString KeyName(const Command& command);

/// One line for each key that says what it does, in the current language.
std::wstring KeyHelp();

/// Has commands carried out, and broadcasts their states as action states, each when it has
/// changed. The state-change signal triggers the look at the states.
class CommandDesk : private IStateChangeConsumer
{
public:
    explicit CommandDesk(Examination& exam) : m_exam(exam) {}

    /// Carries the command of a key out. Keys that belong to no command, with what is held, do
    /// nothing, and neither does one that is held and whose command does not repeat.
    void Press(const KeyPress& press);

    /// Carries a command out with the parameter of its key, if it is possible.
    void CarryOut(const Command& command);

    /// Carries an action out, and notifies the consumers of action notifications. The status line
    /// reports an action without effect here: there is no transmitter, no printer and no patient
    /// list.
    void CarryOut(const ActionInfo& action);

    /// Broadcasts every state, for consumers that registered after the last broadcast.
    void BroadcastAll();

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void BroadcastChanges();

    Examination& m_exam;
    std::map<ActionStateInfo, int> m_told;
};

} // namespace exam
