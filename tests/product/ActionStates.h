#pragma once

#include <pro_actions/ActionStateInfo.h>

inline ActionStateInfo State(int type, int action, int param = 0)
{
    return {static_cast<ActionType>(type), action, param};
}
