// This compares a repaint of the status row with loading and drawing the same image files, and
// measures one call of a setter.
#include "RatioReporter.h"

#include <base/GdiPlusSession.h>
#include <benchmark/benchmark.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/ComScope.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/CWmiService.h>
#include <Utils_Statics/utilsExam.h>
#include <wmi_server/WmiServer.h>

#include <afxwin.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <vector>

CWinApp theApplication(L"status bench");

namespace {

const std::vector<const wchar_t*> icons = {
    L"status/connectionon.png",    L"status/wireless5.png", L"status/burn.png",
    L"status/ftpconnectionon.png", L"status/pacemaker.png", L"status/cineiRecord.png",
    L"status/streamingon.png"};

std::vector<IStatusItem*> Items()
{
    return {CStatusNetwork::getInstance(),  CStatusWireless::getInstance(),
            CStatusBurning::getInstance(),  CStatusFtpTransfer::getInstance(),
            CStatusGps::getInstance(),      CStatusRecording::getInstance(),
            CStatusStreaming::getInstance()};
}

// The picture that the row is painted into, as in a double-buffered window.
class RowPicture
{
public:
    static constexpr int width = 400, height = 32;

    Gdiplus::Graphics& Graphics() { return m_graphics; }

private:
    Gdiplus::Bitmap m_bitmap{width, height, PixelFormat32bppARGB};
    Gdiplus::Graphics m_graphics{&m_bitmap};
};

int PaintItems(const std::vector<IStatusItem*>& items, RowPicture& picture)
{
    int right = RowPicture::width;
    for (const IStatusItem* const item : items)
        right -= item->drawIcon(CRect(0, 0, right, RowPicture::height), picture.Graphics());
    return RowPicture::width - right;
}

void PaintRow(benchmark::State& state)
{
    RowPicture picture;
    const auto items = Items();
    for (auto _ : state)
        if (PaintItems(items, picture) != 24 * 7) state.SkipWithError("an icon is missing");
}

// Each repaint asks for the signal strength; the answer comes from this process at once.
void PaintRowWithoutWireless(benchmark::State& state)
{
    RowPicture picture;
    auto items = Items();
    items.erase(items.begin() + 1);
    for (auto _ : state)
        if (PaintItems(items, picture) != 24 * 6) state.SkipWithError("an icon is missing");
}

// Each repaint logs two lines for the probe's sensor.
void PaintRowWithSensor(benchmark::State& state)
{
    RowPicture picture;
    auto items = Items();
    items.push_back(CStatusProbeSensor::getInstance());
    for (auto _ : state)
        if (PaintItems(items, picture) != 24 * 7 + 102) state.SkipWithError("an icon is missing");
}

// Draws the same icons by the platform's functions alone.
void LoadAndDrawEachFile(benchmark::State& state)
{
    RowPicture picture;
    for (auto _ : state) {
        int right = RowPicture::width;
        for (const wchar_t* const icon : icons) {
            Gdiplus::Bitmap image(utilsExam::GetImage(icon).c_str());
            const auto width = static_cast<int>(image.GetWidth());
            const auto height = static_cast<int>(image.GetHeight());
            right -= width;
            picture.Graphics().DrawImage(&image, right, (RowPicture::height - height) / 2, width,
                                         height);
        }
        if (right != RowPicture::width - 24 * 7) state.SkipWithError("an icon is missing");
    }
}

// ---- Setters

std::atomic<bool> s_needsRepaint;

void SetFlag()
{
    s_needsRepaint = true;
}

void SetState(benchmark::State& state)
{
    IStatusItem::SetStatusCallback(SetFlag);
    for (auto _ : state)
        CStatusBurning::setState(true);
    IStatusItem::SetStatusCallback(nullptr);
}

// The least work of a setter: a stored flag, and a call through a stored pointer.
std::atomic<bool> s_state;
std::atomic<void (*)()> s_callback = SetFlag;

void StoreAndCall(benchmark::State& state)
{
    for (auto _ : state) {
        s_state = true;
        if (const auto callback = s_callback.load()) callback();
    }
}

void SetSensorReading(benchmark::State& state)
{
    IStatusItem::SetStatusCallback(SetFlag);
    CStatusProbeSensor::SensorData reading = {true, 36.0, 90.0, 0, 2};
    for (auto _ : state) {
        reading.angle = reading.angle < 180 ? reading.angle + 1 : 0;
        CStatusProbeSensor::setState(reading);
    }
    IStatusItem::SetStatusCallback(nullptr);
}

BENCHMARK(PaintRow);
BENCHMARK(PaintRowWithoutWireless);
BENCHMARK(PaintRowWithSensor);
BENCHMARK(LoadAndDrawEachFile);
BENCHMARK(SetState);
BENCHMARK(StoreAndCall);
BENCHMARK(SetSensorReading);

// ---- The surroundings

// Sets the settings, images and log of this run.
void SetSurroundings(const test_support::TemporaryFolder& folder)
{
    theApplication.m_pszProfileName = _wcsdup((folder / L"settings.ini").c_str());
    for (const wchar_t* const name : {L"NetworkConnection", L"WirelessStrength", L"CDBurning",
                                      L"FTPTransfer", L"CineRecording", L"Streaming"})
        theApplication.WriteProfileInt(L"Settings\\Status", name, 1);
    qor_utils::SetStoreFolder(qor_utils::imagesStore, SAMPLE_IMAGES);
    qor_utils::SetLogDirectory(folder.Path());
}

void SetAllStates(bool state)
{
    CStatusNetwork::setState(state);
    CStatusWireless::setConnected(state);
    CStatusWireless::setAvailable(state);
    CStatusBurning::setState(state);
    CStatusFtpTransfer::setState(state);
    CStatusGps::setState(state);
    CStatusRecording::setState(state);
    CStatusStreaming::setState(state ? CStatusStreaming::StreamingOn
                                     : CStatusStreaming::StreamingOff);
}

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("PaintRow", "LoadAndDrawEachFile");
    reporter.PrintRatio("PaintRow", "PaintRowWithoutWireless");
    reporter.PrintRatio("PaintRowWithSensor", "PaintRow");
    reporter.PrintRatio("SetState", "StoreAndCall");
}

int Run(int argc, char** argv)
{
    simulation::WmiServer server;
    server.ForgetReleased();
    server.SetAnswer(L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true",
                     {{{L"Ndis80211ReceivedSignalStrength", -50}}});
    SetAllStates(true);
    CStatusProbeSensor::setState({true, 36.0, 90.0, 0, 2});
    for (IStatusItem* const item : Items())
        item->updateVisibleState();
    const int result = RatioReporter::RunAll(argc, argv, PrintRatios);
    CWmiService::destroyInstance();
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    const test_support::TemporaryFolder folder;
    SetSurroundings(folder);
    const base::GdiPlusSession session;
    const test_support::ComScope com;
    return Run(argc, argv);
}
