#pragma once

#include "state/ExamState.h"
#include "status/StatusPage.h"
#include "status/StatusRow.h"
#include "status/StatusSimulators.h"

#include <base/GdiPlusSession.h>
#include <base/Owner.h>

#include <objbase.h>

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
    /// `state` in `window`. Both outlive it.
    StatusDisplay(CWnd& window, const ExamState& state);
    ~StatusDisplay() override;
    StatusDisplay(const StatusDisplay&) = delete;
    StatusDisplay& operator=(const StatusDisplay&) = delete;

    /// Registers the items and shows the row; false when the platform refuses.
    bool Open();

    StatusRow& Row() { return m_row; }
    StatusPage& Page() { return m_page; }
    NetworkSimulator& Network() { return m_network; }
    ProbeSimulator& Probe() { return m_probe; }

    void OpenPage() { m_page.Open(m_window); }

    /// Takes the icons of 32 pixels, or those of 24.
    void UseLargeIcons(bool large);

    /// Plugs the simulated probe in or pulls it out; its readings go on while it is plugged in.
    void PlugProbe(bool plugged);

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    std::vector<PageSwitch> ShownSwitches();
    std::vector<PageSwitch> SimulatedSwitches();

    CWnd& m_window;
    const ExamState& m_state;
    base::Owner<ComTraits> m_com;
    base::GdiPlusSession m_drawing;
    NetworkSimulator m_network;
    ProbeSimulator m_probe;
    std::wstring m_images; // folder of the small icons
    bool m_largeIcons = false;
    bool m_tracking = false;
    StatusPage m_page;
    StatusRow m_row;
};

} // namespace exam
