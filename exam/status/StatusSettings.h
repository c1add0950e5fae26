#pragma once

#include <span>

namespace exam {

/// One of the settings that say what the status row shows, a number of the profile section
/// "Settings\Status".
struct StatusSetting
{
    const wchar_t* entry;
    const char* text; ///< key of what it is called
};

std::span<const StatusSetting> StatusSettings();

bool IsWanted(const StatusSetting& setting);
void SetWanted(const StatusSetting& setting, bool wanted);

/// The setting that writes this computer's address over the streaming icon.
bool IsAddressWanted();

} // namespace exam
