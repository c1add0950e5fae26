#pragma once

#include <cstdint>

/// An action family. Which values there are, and their names, is the vocabulary's matter
/// (CProActionCollection): it is data, so that a family can be added without building anything
/// anew.
enum ActionType : std::int32_t
{
    actionTypeNone = -1
};
