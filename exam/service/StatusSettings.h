#pragma once

#include <span>

// The settings that are switches of the status row's pages. The profile keeps each as a number.
namespace exam {

/// One switch.
struct StatusSetting
{
    const wchar_t* section;
    const wchar_t* entry;
    const char* text;       ///< key of its label
    bool isShipped = false; ///< its state as long as nobody has chosen
};

/// These settings say what the status row shows.
std::span<const StatusSetting> StatusSettings();

/// The states of the simulated devices.
std::span<const StatusSetting> DeviceSettings();

bool IsWanted(const StatusSetting& setting);
void SetWanted(const StatusSetting& setting, bool wanted);

} // namespace exam
