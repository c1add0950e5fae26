#pragma once

#include "commands/Examination.h"

#include <span>

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

/// The key of a command.
struct CommandKey
{
    UINT code = 0;            ///< virtual key; 0: none
    bool withControl = false; ///< true: the key needs Ctrl; false: no other key with it
    bool repeats = false;     ///< true: a key that is held carries it out again and again
    int param = 0;            ///< the parameter that key, menu and tool bar give
};

/// An action by the names of the action vocabulary; null: none.
struct CommandAction
{
    const wchar_t* type = nullptr;
    const wchar_t* name = nullptr;
};

/// Keys of the command's texts; null for a state without effect.
struct CommandText
{
    const char* name = nullptr;
    const char* tip = nullptr; ///< says what it does
};

/// One thing that the user can have done. Keys, menus, tool bar, control panel, lamps and the help
/// all come from the table of commands.
struct Command
{
    CommandKey key = {};
    CommandAction action = {};
    CommandText text = {};
    const wchar_t* picture = nullptr; ///< file of its picture on the tool bar; null: not there

    /// Carries it out; the vocabulary explains the parameter. Null: it has no effect here.
    void (*carryOut)(Examination& exam, int param) = nullptr;

    /// Its state for a parameter; 0 is off. Null: it has none.
    int (*value)(const ExamState& state, int param) = nullptr;
    bool isNumber = false; ///< its state is a number, and not on or off
    int params = 1;        ///< the parameters that have a state, from 0 on

    /// True when it can be carried out now. Null: always.
    bool (*isPossible)(const ExamState& state) = nullptr;

    bool opensRecent = false; ///< its item in the menu opens the list of recent files

    Menu menu = Menu::none; ///< the menu that it stands in, in the table's order
};

/// True while commands on the flow of the strip can be carried out.
inline bool IsFlowShown(const ExamState& state)
{
    return state.IsFlowShown();
}

/// The parts of the table, one for each menu; Commands() joins them and fills `menu`.
std::span<const Command> ImageCommands();
std::span<const Command> MeasureCommands();
std::span<const Command> ExamCommands();
std::span<const Command> ViewCommands();
std::span<const Command> HelpCommands();

} // namespace exam
