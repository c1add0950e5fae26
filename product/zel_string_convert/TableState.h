#pragma once

#include "StringTable.h"

#include <base/SlimLock.h>

namespace zel_string_convert {

// The table in use, the chosen language and the texts that were handed out.
struct TableState
{
    static constexpr std::size_t mostUnknownKeys = 4096;

    TextPool pool;
    StringTable table;
    int language = 0; // its number in the table
    TextPool unknownKeys{mostUnknownKeys};
};

// The process's only state.
TableState& CurrentState();

// Guards the table and the language of the state.
base::SlimLock& TableLock();

} // namespace zel_string_convert
