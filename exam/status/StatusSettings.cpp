#include "status/StatusSettings.h"

#include <afxwin.h>

namespace exam {

namespace {

constexpr wchar_t section[] = L"Settings\\Status";

constexpr StatusSetting address = {L"StreamingIP", "exam.status.address"};

constexpr StatusSetting settings[] = {{L"NetworkConnection", "exam.status.network"},
                                      {L"WirelessStrength", "exam.status.wireless"},
                                      {L"CDBurning", "exam.status.burning"},
                                      {L"FTPTransfer", "exam.status.transfer"},
                                      {L"CineRecording", "exam.status.recording"},
                                      {L"Streaming", "exam.status.streaming"},
                                      address};

} // namespace

std::span<const StatusSetting> StatusSettings()
{
    return settings;
}

bool IsWanted(const StatusSetting& setting)
{
    return AfxGetApp()->GetProfileInt(section, setting.entry, 0) != 0;
}

void SetWanted(const StatusSetting& setting, bool wanted)
{
    AfxGetApp()->WriteProfileInt(section, setting.entry, wanted ? 1 : 0);
}

bool IsAddressWanted()
{
    return IsWanted(address);
}

} // namespace exam
