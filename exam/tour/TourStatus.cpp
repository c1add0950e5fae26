// Station 10: the status row.
#include "base/Palette.h"
#include "status/StatusRow.h"
#include "tour/Tour.h"

#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

constexpr int unusableVersion = 1; // version of the sensor's interface

// The width of the row in pixels, once all requested repaints are done.
int PaintedWidth(TourContext& context)
{
    StatusDisplay& status = context.status;
    context.HandlePending();
    status.Row().RedrawWindow();
    CRect area;
    status.Row().GetClientRect(&area);
    return area.Width() - status.Row().PaintedFrom();
}

// True when the icon at the left end of the row is visible on the screen.
bool IsLeftmostLit(StatusDisplay& status)
{
    constexpr int iconWidth = 24;
    CClientDC dc(&status.Row());
    const int from = status.Row().PaintedFrom();
    for (int x = from; x < from + iconWidth; x += 2)
        for (int y = 12; y < 32; y += 2)
            if (dc.GetPixel(x, y) != palette::header) return true;
    return false;
}

void RowSettings(TourContext& context)
{
    StatusDisplay& status = context.status;
    // An earlier tour may have left its settings in this folder.
    for (const StatusSetting& setting : StatusSettings())
        SetWanted(setting, false);
    status.Row().ReadSettings();
    context.report.Step(PaintedWidth(context) == 0,
                        L"without its settings the status row is empty");
    status.OpenPage();
    context.report.Step(utilsExam::FindPopupWindow(nullptr) == status.Page().GetSafeHwnd(),
                        L"the settings page is the pop-up over the main window");
    const auto count = static_cast<int>(StatusSettings().size());
    for (int index = 0; index < count; ++index)
        status.Page().Click(index);
    bool all = true;
    for (const StatusSetting& setting : StatusSettings())
        all = all && IsWanted(setting);
    context.report.Step(all, L"the settings page writes the settings");
    context.PictureOf(status.Page().GetSafeHwnd(), L"status-page");
    context.report.Step(utilsExam::ClosePopups(nullptr) &&
                            context.WaitUntil([&] { return !status.Page().GetSafeHwnd(); }),
                        L"the settings page closes like any stray pop-up");
    context.report.Step(PaintedWidth(context) > 48, L"network and wireless signal are shown");
    context.Picture(L"status-idle");
}

// The simulated devices have a page of their own, which keeps their states.
void Devices(TourContext& context)
{
    constexpr int probe = 4;
    StatusDisplay& status = context.status;
    context.window.Exam().ShowPage(&StatusPages::devices);
    context.PictureOf(status.Devices().GetSafeHwnd(), L"devices-page");
    status.Devices().Click(probe);
    context.report.Step(status.Probe().IsPlugged() && IsWanted(DeviceSettings()[probe]),
                        L"a simulated device is switched on, and stays so");
    status.Devices().Click(probe);
    context.report.Step(!status.Probe().IsPlugged() && !IsWanted(DeviceSettings()[probe]),
                        L"and off again");
    utilsExam::ClosePopups(nullptr);
    const int before = PaintedWidth(context);
    SettingsDesk& desk = context.window.Exam().Settings();
    Settings settings = desk.InEffect();
    settings.icons = L"large";
    desk.Change(settings);
    context.report.Step(PaintedWidth(context) == before + 2 * 8, L"a setting makes icons larger");
    settings.icons = L"small";
    desk.Change(settings);
}

void NetworkEvents(TourContext& context)
{
    StatusDisplay& status = context.status;
    NetworkSimulator& network = status.Network();
    network.ConnectWired(false);
    context.report.Step(!CStatusNetwork::isConnected(), L"a lost network is told by an event");
    PaintedWidth(context);
    context.Picture(L"status-network-lost");
    int strength = 0;
    for (const int level : {-95, -85, -75, -65, -55}) {
        network.SetSignal(level);
        PaintedWidth(context);
        context.Picture(L"status-wireless-" + std::to_wstring(++strength));
    }
    network.ConnectWireless(false);
    context.report.Step(!CStatusWireless::isConnected(), L"a lost wireless network too");
    network.PlugWireless(false);
    context.report.Step(!CStatusWireless::isAvailable(), L"so is an adapter that is pulled out");
    PaintedWidth(context);
    context.Picture(L"status-wireless-gone");
    network.PlugWireless(true);
    network.ConnectWireless(true);
    network.SetSignal(-50);
    network.ConnectWired(true);
}

void Work(TourContext& context)
{
    const int before = PaintedWidth(context);
    CStatusBurning::setState(true);
    CStatusFtpTransfer::setState(true);
    CStatusGps::setState(true);
    CStatusRecording::setState(true);
    context.report.Step(PaintedWidth(context) == before + 4 * (24 + 6),
                        L"burning, transfer, tracking and recording take four icons");
    context.Picture(L"status-working");
}

void Streaming(TourContext& context)
{
    StatusDisplay& status = context.status;
    CStatusStreaming::setState(CStatusStreaming::StreamingOn);
    PaintedWidth(context);
    context.Picture(L"status-streaming");
    CStatusStreaming::setState(CStatusStreaming::StreamingToDisk);
    const int lit = PaintedWidth(context);
    // Each picture is taken at the beginning of its second.
    context.report.Step(context.WaitUntil([&] { return !IsLeftmostLit(status); }),
                        L"the blinking goes dark by itself");
    context.Picture(L"status-disk-dark");
    context.report.Step(PaintedWidth(context) == lit, L"the row stands still while it blinks");
    context.report.Step(context.WaitUntil([&] { return IsLeftmostLit(status); }),
                        L"and lights up again");
    context.Picture(L"status-disk-lit");
    CStatusStreaming::setState(CStatusStreaming::StreamingOff);
}

void Probe(TourContext& context)
{
    StatusDisplay& status = context.status;
    ProbeSimulator& probe = status.Probe();
    const int before = PaintedWidth(context);
    probe.Plug(true);
    probe.Advance(2);
    context.report.Step(PaintedWidth(context) == before + 102 + 6,
                        L"the probe shows its temperature and its angle");
    context.Picture(L"status-probe-cool");
    probe.Advance(18);
    PaintedWidth(context);
    context.Picture(L"status-probe-warm");
    probe.Advance(10);
    context.report.Step(PaintedWidth(context) > before + 102 + 6,
                        L"a probe that is too hot warns over the rest of the row");
    context.Picture(L"status-probe-hot");
    probe.Plug(true);
    probe.SetError(true);
    PaintedWidth(context);
    context.Picture(L"status-probe-error");
    probe.SetError(false);
    CStatusProbeSensor::setState({true, ProbeSimulator::coldest, 0, 0, unusableVersion});
    PaintedWidth(context);
    context.Picture(L"status-probe-unusable");
    probe.Plug(true);
}

void LargeIcons(TourContext& context)
{
    StatusDisplay& status = context.status;
    const int before = PaintedWidth(context);
    status.UseLargeIcons(true);
    context.report.Step(PaintedWidth(context) == before + 6 * 8,
                        L"the large icons are 8 pixels wider");
    context.Picture(L"status-large");
    status.UseLargeIcons(false);
}

void Rest(StatusDisplay& status)
{
    status.Probe().Plug(false);
    for (const auto setState : {CStatusBurning::setState, CStatusFtpTransfer::setState,
                                CStatusGps::setState, CStatusRecording::setState})
        setState(false);
}

} // namespace

void TourStatus(TourContext& context)
{
    RowSettings(context);
    Devices(context);
    NetworkEvents(context);
    Work(context);
    Streaming(context);
    Probe(context);
    LargeIcons(context);
    Rest(context.status);
}

} // namespace exam
