#pragma once

#include <cstdint>

/// The console models the application runs on. utilsExam::MapConsoleName gives the names used in
/// configuration.
enum EConsoleType : std::int32_t
{
    eConsolePemmit = 0,
    eConsoleOlkesh = 1,
    eConsoleVollet = 2,
    eConsoleSaquin = 3,
    eConsoleTavren = 4,
    eConsoleUnknown = -1
};
