#pragma once

#include "commands/Examination.h"
#include "status/StatusPage.h"
#include "status/StatusRow.h"
#include "status/StatusSimulators.h"

#include <base/GdiPlusSession.h>
#include <base/Owner.h>

#include <objbase.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

namespace exam {

struct ComTraits
{
    using Handle = bool;
    static bool Empty() noexcept { return false; }
    static void Release(bool) noexcept { CoUninitialize(); }
};

/// Keeps the status row live: it holds the row, its settings page, the simulated network and probe,
/// and the registered items. There is one object, made and destroyed on the user-interface thread.
/// The items' static setters must not be used after its end.
class StatusDisplay : private IStateChangeConsumer
{
public:
    /// Connects the network monitoring to the simulated network. The row follows the layout of
    /// the exam's state in `window`. Both outlive it.
    StatusDisplay(CWnd& window, Examination& exam);
    ~StatusDisplay() override;
    StatusDisplay(const StatusDisplay&) = delete;
    StatusDisplay& operator=(const StatusDisplay&) = delete;

    /// Registers the items and shows the row; false when the platform refuses.
    bool Open();

    StatusRow& Row() { return m_row; }
    StatusPage& Page() { return m_page; }
    StatusPage& Devices() { return m_devices; }
    NetworkSimulator& Network() { return m_network; }
    ProbeSimulator& Probe() { return m_probe; }

    void OpenPage() { m_page.Open(m_window); }
    void OpenDevices() { m_devices.Open(m_window); }

    /// Takes the icons of 32 pixels, or those of 24, both at 96 dpi.
    void UseLargeIcons(bool large);

    /// Plugs the simulated probe in or pulls it out; its readings go on while it is plugged in.
    void PlugProbe(bool plugged);

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    std::vector<PageSwitch> RowSwitches(std::initializer_list<std::size_t> settings);
    std::vector<PageSwitch> DeviceStates();
    std::vector<PageSwitch> DeviceSwitches(std::size_t first, std::size_t count);
    void ChooseIcons();
    void TakeSettings();
    void KeepDevices() const;

    CWnd& m_window;
    Examination& m_exam;
    const ExamState& m_state;
    base::Owner<ComTraits> m_com;
    base::GdiPlusSession m_drawing;
    NetworkSimulator m_network;
    ProbeSimulator m_probe;
    std::wstring m_images; // folder of the images
    bool m_largeIcons = false;
    bool m_tracking = false;
    StatusPage m_page;
    std::vector<PageSwitch> m_deviceStates; // in the order of DeviceSettings()
    StatusPage m_devices;
    StatusRow m_row;
};

} // namespace exam
