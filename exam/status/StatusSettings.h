#pragma once

#include <span>

namespace exam {

/// A setting of what the status row shows. It is a number in the profile section "Settings\Status".
struct StatusSetting
{
    const wchar_t* entry;
    const char* text; ///< key of its label
};

std::span<const StatusSetting> StatusSettings();

bool IsWanted(const StatusSetting& setting);
void SetWanted(const StatusSetting& setting, bool wanted);

/// True when the setting asks for this computer's address over the streaming icon.
bool IsAddressWanted();

} // namespace exam
