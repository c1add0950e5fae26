#pragma once

#include "commands/Command.h"

#include <pro_actions/ActionStateInfo.h>
#include <Utils_Statics/ActionInfo.h>

#include <span>
#include <string>

namespace exam {

/// The table: the commands of every menu.
std::span<const Command> Commands();

/// The state of the command's action for a parameter. The command has an action.
ActionStateInfo StateOf(const Command& command, int param);

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

} // namespace exam
