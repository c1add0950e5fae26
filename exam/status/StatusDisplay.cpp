#include "status/StatusDisplay.h"

#include "base/StateChanges.h"
#include "status/StatusRow.h"

#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/utilsExam.h>

#include <array>

namespace exam {

namespace {

constexpr int strongSignal = -55; // dBm
constexpr int weakSignal = -88;

// A switch for one value of a state that has several. Switching it off sets StreamingOff.
PageSwitch StreamingSwitch(const char* text, CStatusStreaming::StreamingStatus status)
{
    return {text, [status] { return CStatusStreaming::getState() == status; },
            [status](bool on) {
                CStatusStreaming::setState(on ? status : CStatusStreaming::StreamingOff);
            }};
}

} // namespace

StatusDisplay::StatusDisplay(CWnd& window, const ExamState& state)
    : m_window(window), m_state(state),
      m_com(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))),
      m_images(utilsExam::GetImage(L"")), m_page(ShownSwitches(), SimulatedSwitches()),
      m_row([this] { OpenPage(); })
{
}

StatusDisplay::~StatusDisplay()
{
    IStatusItem::SetStatusCallback(nullptr);
    CStatusFactory::destroyInstance();
}

bool StatusDisplay::Open()
{
    const std::array<IStatusItem*, 8> items = {
        CStatusNetwork::getInstance(),   CStatusWireless::getInstance(),
        CStatusBurning::getInstance(),   CStatusFtpTransfer::getInstance(),
        CStatusGps::getInstance(),       CStatusRecording::getInstance(),
        CStatusStreaming::getInstance(), CStatusProbeSensor::getInstance()};
    for (IStatusItem* const item : items)
        CStatusFactory::addItem(item);
    if (!m_row.Open(m_window, m_state.Layout().statusRow)) return false;
    m_row.ReadSettings();
    return true;
}

void StatusDisplay::OnStateChange(StateChangeType type, unsigned int, long)
{
    if (type == stateFitChanged && m_row.GetSafeHwnd())
        m_row.MoveWindow(&m_state.Layout().statusRow);
}

void StatusDisplay::UseLargeIcons(bool large)
{
    m_largeIcons = large;
    qor_utils::SetStoreFolder(qor_utils::imagesStore, large ? m_images + L"large" : m_images);
    m_row.Invalidate(FALSE);
}

void StatusDisplay::PlugProbe(bool plugged)
{
    m_probe.Plug(plugged);
    m_row.OnTick(plugged ? [this] { m_probe.Advance(StatusRow::tickSeconds); }
                         : std::function<void()>());
}

std::vector<PageSwitch> StatusDisplay::ShownSwitches()
{
    std::vector<PageSwitch> switches;
    for (const StatusSetting& setting : StatusSettings())
        switches.push_back({setting.text, [&setting] { return IsWanted(setting); },
                            [this, &setting](bool wanted) {
                                SetWanted(setting, wanted);
                                m_row.ReadSettings();
                            }});
    switches.push_back({"exam.status.largeicons", [this] { return m_largeIcons; },
                        [this](bool large) { UseLargeIcons(large); }});
    return switches;
}

std::vector<PageSwitch> StatusDisplay::SimulatedSwitches()
{
    return {{"exam.status.sim.wired", [this] { return m_network.IsWiredConnected(); },
             [this](bool on) { m_network.ConnectWired(on); }},
            {"exam.status.sim.adapter", [this] { return m_network.HasWireless(); },
             [this](bool on) { m_network.PlugWireless(on); }},
            {"exam.status.sim.connected", [this] { return m_network.IsWirelessConnected(); },
             [this](bool on) { m_network.ConnectWireless(on); }},
            {"exam.status.sim.weak", [this] { return m_network.Signal() == weakSignal; },
             [this](bool on) { m_network.SetSignal(on ? weakSignal : strongSignal); }},
            {"exam.status.sim.burning", CStatusBurning::isBurning, CStatusBurning::setState},
            {"exam.status.sim.transfer", CStatusFtpTransfer::isTransferring,
             CStatusFtpTransfer::setState},
            {"exam.status.sim.tracking", [this] { return m_tracking; },
             [this](bool on) {
                 m_tracking = on;
                 CStatusGps::setState(on);
             }},
            StreamingSwitch("exam.status.sim.streaming", CStatusStreaming::StreamingOn),
            StreamingSwitch("exam.status.sim.disk", CStatusStreaming::StreamingToDisk),
            {"exam.status.sim.probe", [this] { return m_probe.IsPlugged(); },
             [this](bool on) { PlugProbe(on); }},
            {"exam.status.sim.error", [this] { return m_probe.HasError(); },
             [this](bool on) { m_probe.SetError(on); }}};
}

} // namespace exam
