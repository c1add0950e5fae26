#pragma once

#include <pro_actions/ActionStateInfo.h>

namespace test_support {

inline ActionStateInfo State(int type, int action, int param = 0)
{
    return {static_cast<ActionType>(type), action, param};
}

} // namespace test_support
