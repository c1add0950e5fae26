#pragma once

#include <cstdint>

/// An action family. The vocabulary (CProActionCollection) defines the values and their names. It
/// is data, so that a family can be added without a rebuild.
enum ActionType : std::int32_t
{
    actionTypeNone = -1
};
