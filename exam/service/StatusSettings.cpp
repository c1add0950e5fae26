#include "service/StatusSettings.h"

#include <afxwin.h>

namespace exam {

namespace {

constexpr wchar_t rowSection[] = L"Settings\\Status";
constexpr wchar_t deviceSection[] = L"Settings\\Devices";

constexpr StatusSetting shown[] = {
    {rowSection, L"NetworkConnection", "exam.status.network"},
    {rowSection, L"WirelessStrength", "exam.status.wireless"},
    {rowSection, L"CDBurning", "exam.status.burning"},
    {rowSection, L"FTPTransfer", "exam.status.transfer"},
    {rowSection, L"CineRecording", "exam.status.recording"},
    {rowSection, L"Streaming", "exam.status.streaming"},
    {rowSection, L"StreamingIP", "exam.status.address"},
};

constexpr StatusSetting devices[] = {
    {deviceSection, L"Wired", "exam.status.sim.wired", true},
    {deviceSection, L"WirelessAdapter", "exam.status.sim.adapter", true},
    {deviceSection, L"Wireless", "exam.status.sim.connected", true},
    {deviceSection, L"WeakSignal", "exam.status.sim.weak"},
    {deviceSection, L"Probe", "exam.status.sim.probe"},
    {deviceSection, L"ProbeError", "exam.status.sim.error"},
    {deviceSection, L"Burning", "exam.status.sim.burning"},
    {deviceSection, L"Transfer", "exam.status.sim.transfer"},
    {deviceSection, L"Tracking", "exam.status.sim.tracking"},
    {deviceSection, L"Streaming", "exam.status.sim.streaming"},
    {deviceSection, L"StreamingToDisk", "exam.status.sim.disk"},
};

} // namespace

std::span<const StatusSetting> StatusSettings()
{
    return shown;
}

std::span<const StatusSetting> DeviceSettings()
{
    return devices;
}

bool IsWanted(const StatusSetting& setting)
{
    return AfxGetApp()->GetProfileInt(setting.section, setting.entry, setting.isShipped) != 0;
}

void SetWanted(const StatusSetting& setting, bool wanted)
{
    AfxGetApp()->WriteProfileInt(setting.section, setting.entry, wanted);
}

} // namespace exam
