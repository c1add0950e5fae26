#include "status/StatusDisplay.h"

#include "base/StateChanges.h"
#include "service/StatusSettings.h"
#include "status/StatusRow.h"

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
#include <span>

namespace exam {

namespace {

constexpr int strongSignal = -55; // dBm
constexpr int weakSignal = -88;

constexpr std::size_t hardware = 6; // the devices of the first column

// A switch for one value of a state that has several. Switching it off sets StreamingOff.
PageSwitch StreamingSwitch(std::size_t index, CStatusStreaming::StreamingStatus status)
{
    return {DeviceSettings()[index].text,
            [status] { return CStatusStreaming::getState() == status; },
            [status](bool on) {
                CStatusStreaming::setState(on ? status : CStatusStreaming::StreamingOff);
            }};
}

} // namespace

StatusDisplay::StatusDisplay(CWnd& window, Examination& exam)
    : m_window(window), m_exam(exam), m_state(exam.State()),
      m_com(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))),
      m_images(utilsExam::GetImage(L"")),
      m_page("exam.status.title", {"exam.status.networks", RowSwitches({0, 1, 5, 6})},
             {"exam.status.work", RowSwitches({2, 3, 4})}),
      m_deviceStates(DeviceStates()),
      m_devices("exam.status.devices", {"exam.status.hardware", DeviceSwitches(0, hardware)},
                {"exam.status.work", DeviceSwitches(hardware, m_deviceStates.size() - hardware)}),
      m_row([this] { OpenPage(); })
{
}

StatusDisplay::~StatusDisplay()
{
    m_exam.SetPages({});
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
    m_exam.SetPages({[this] { OpenPage(); }, [this] { OpenDevices(); }});
    TakeSettings();
    return true;
}

void StatusDisplay::OnStateChange(StateChangeType type, unsigned int, long)
{
    if (type == stateLanguageChanged) {
        m_page.FollowLanguage();
        m_devices.FollowLanguage();
    }
    if (!m_row.GetSafeHwnd()) return;
    if (type == stateSettingsChanged) TakeSettings();
    if (type != stateFitChanged) return;
    m_row.MoveWindow(&m_state.Layout().statusRow);
    ChooseIcons();
}

void StatusDisplay::UseLargeIcons(bool large)
{
    m_largeIcons = large;
    ChooseIcons();
}

// Takes the icons that were drawn for the resolution nearest to the layout's.
void StatusDisplay::ChooseIcons()
{
    const double scale = m_state.Layout().scale;
    const wchar_t* const resolution = scale >= 1.75 ? L"192\\" : scale >= 1.25 ? L"144\\" : L"";
    m_row.UseIcons(m_images + resolution + (m_largeIcons ? L"large" : L""));
}

void StatusDisplay::PlugProbe(bool plugged)
{
    m_probe.Plug(plugged);
    m_row.OnTick(plugged ? [this] { m_probe.Advance(StatusRow::tickSeconds); }
                         : std::function<void()>());
}

void StatusDisplay::TakeSettings()
{
    UseLargeIcons(m_exam.Settings().InEffect().icons == L"large");
    m_row.ReadSettings();
    for (std::size_t i = 0; i < m_deviceStates.size(); ++i) {
        const bool wanted = IsWanted(DeviceSettings()[i]);
        if (m_deviceStates[i].isOn() != wanted) m_deviceStates[i].set(wanted);
    }
}

// One state may change another one, so all of them are kept.
void StatusDisplay::KeepDevices() const
{
    for (std::size_t i = 0; i < m_deviceStates.size(); ++i)
        SetWanted(DeviceSettings()[i], m_deviceStates[i].isOn());
}

std::vector<PageSwitch> StatusDisplay::RowSwitches(std::initializer_list<std::size_t> settings)
{
    std::vector<PageSwitch> switches;
    for (const std::size_t index : settings) {
        const StatusSetting& setting = StatusSettings()[index];
        switches.push_back({setting.text, [&setting] { return IsWanted(setting); },
                            [this, &setting](bool wanted) {
                                SetWanted(setting, wanted);
                                m_row.ReadSettings();
                            }});
    }
    return switches;
}

// The switches of some devices, which keep what they set.
std::vector<PageSwitch> StatusDisplay::DeviceSwitches(std::size_t first, std::size_t count)
{
    std::vector<PageSwitch> switches;
    for (const PageSwitch& state : std::span(m_deviceStates).subspan(first, count))
        switches.push_back({state.text, state.isOn, [this, set = state.set](bool on) {
                                set(on);
                                KeepDevices();
                            }});
    return switches;
}

std::vector<PageSwitch> StatusDisplay::DeviceStates()
{
    const auto device = [](std::size_t index, auto isOn, auto set) {
        return PageSwitch{DeviceSettings()[index].text, isOn, set};
    };
    return {
        device(
            0, [this] { return m_network.IsWiredConnected(); },
            [this](bool on) { m_network.ConnectWired(on); }),
        device(
            1, [this] { return m_network.HasWireless(); },
            [this](bool on) { m_network.PlugWireless(on); }),
        device(
            2, [this] { return m_network.IsWirelessConnected(); },
            [this](bool on) { m_network.ConnectWireless(on); }),
        device(
            3, [this] { return m_network.Signal() == weakSignal; },
            [this](bool on) { m_network.SetSignal(on ? weakSignal : strongSignal); }),
        device(
            4, [this] { return m_probe.IsPlugged(); }, [this](bool on) { PlugProbe(on); }),
        device(
            5, [this] { return m_probe.HasError(); }, [this](bool on) { m_probe.SetError(on); }),
        device(6, CStatusBurning::isBurning, CStatusBurning::setState),
        device(7, CStatusFtpTransfer::isTransferring, CStatusFtpTransfer::setState),
        device(
            8, [this] { return m_tracking; },
            [this](bool on) {
                m_tracking = on;
                CStatusGps::setState(on);
            }),
        StreamingSwitch(9, CStatusStreaming::StreamingOn),
        StreamingSwitch(10, CStatusStreaming::StreamingToDisk)};
}

} // namespace exam
