// Windows, tips, notices, the pointer, and the items of the status row.
#include "Script.h"

#include <test_support/ExamWindow.h>
#include <test_support/Messages.h>
#include <Utils_Statics/Utils_Statics.h>

namespace faults {

namespace {

using test_support::ExamWindow;

// A round overlay.
class Overlay : public CBufferedWnd
{
public:
    void Draw(CDC* dc) override { dc->FillSolidRect(CRect(0, 0, 40, 40), 0x405060); }
    void DrawMask(CDC* dc) override
    {
        CBufferedWnd::DrawMask(dc);
        dc->FillSolidRect(CRect(5, 5, 30, 30), 0xFFFFFF);
    }
    void PlaceOver(const CRect&) override {}
    void Refresh() override { Invalidate(FALSE); }
};

std::vector<Step> Overlays()
{
    return {
        {"CBufferedWnd",
         [](Outcome& outcome) {
             Overlay overlay;
             const bool created = overlay.Create(WS_CHILD | WS_VISIBLE, 0, AfxGetMainWnd(),
                                                 CRect(10, 10, 50, 50), 7, L"overlay") != 0;
             outcome.Result(created);
             if (!created) return;
             overlay.CallOnPaint();
             overlay.MoveWindow(CRect(10, 10, 60, 60));
             overlay.Refresh();
             overlay.CallOnPaint();
             overlay.BeginModalState();
             overlay.EndModalState();
             overlay.DestroyWindow();
         }},
        {"CToolTipProvider",
         [](Outcome&) {
             CToolTipProvider tip;
             tip.SetToolTip(L"text", L"title", POINT{20, 20}, CToolTipProvider::iconWarning, 50);
             test_support::Pump();
             const CToolTipProvider copy(tip);
             tip.CancelToolTip();
         }},
        {"BalloonMessageService",
         [](Outcome&) {
             BalloonMessageService::Create();
             BalloonMessageService("faults", 1, true,
                                   BalloonMessageService::warning)(L"title", L"a text with %d", 5);
             test_support::Pump();
             BalloonMessageService::Destroy();
         }},
    };
}

std::vector<Step> Controls()
{
    return {
        {"FindPopupWindow",
         [](Outcome& outcome) {
             const ExamWindow popup(AfxGetMainWnd()->GetSafeHwnd(), L"FaultsPopup");
             outcome.Result(utilsExam::FindPopupWindow(nullptr) == popup.Handle());
         }},
        {"ClosePopups",
         [](Outcome& outcome) {
             const ExamWindow popup(AfxGetMainWnd()->GetSafeHwnd(), L"FaultsPopup");
             const bool started = utilsExam::ClosePopups(nullptr);
             outcome.Result(started);
             if (!started) return;
             test_support::PumpUntil([&] { return !popup.Exists(); }, 300);
             Sleep(20); // for the end of the worker
         }},
        {"ChangeDialogFont",
         [](Outcome&) {
             CFont font;
             font.CreateFontW(12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Arial");
             utilsExam::ChangeDialogFont(AfxGetMainWnd(), &font, 1);
             utilsExam::ChangeDialogFont(AfxGetMainWnd(), nullptr, 0);
         }},
        {"ShowCursorHelper",
         [](Outcome&) {
             SetCapture(AfxGetMainWnd()->GetSafeHwnd());
             const ShowCursorHelper guard(false);
         }},
        {"SetKeyState", [](Outcome&) { utilsExam::SetKeyState(VK_NUMLOCK, 0); }},
        // Without the window's place, that of the screen counts.
        {"CalculateDialogRect",
         [](Outcome& outcome) { outcome.Sees(utilsExam::CalculateDialogRect().left); }, false},
        {"CalculateSystemOrigin",
         [](Outcome& outcome) {
             outcome.Sees(utilsExam::CalculateSystemOrigin(CSize(100, 100)).x);
         },
         false},
        {"ClipCursor",
         [](Outcome& outcome) {
             MouseCapture::Initialize(CRect(0, 0, 100, 100), InputTrackball);
             RECT rect = {10, 10, 50, 50};
             outcome.Result(MouseCapture::ClipCursor(&rect) != 0);
             MouseCapture::HandleMouse(WM_MOUSEMOVE, 0, {5, 5});
             outcome.Result(MouseCapture::ClipCursor(nullptr) != 0);
         }},
    };
}

} // namespace

std::vector<Step> WindowSteps()
{
    std::vector<Step> steps = Overlays();
    for (const Step& step : Controls())
        steps.push_back(step);
    return steps;
}

std::vector<Step> StatusSteps()
{
    const auto draw = [](const char* name, IStatusItem* item, void (*set)()) {
        return Step{name,
                    [=](Outcome& outcome) {
                        set();
                        item->updateVisibleState();
                        Gdiplus::Bitmap row(200, 40, PixelFormat32bppARGB);
                        Gdiplus::Graphics graphics(&row);
                        outcome.Sees(item->drawIcon(CRect(0, 0, 200, 40), graphics));
                    },
                    false};
    };
    return {
        draw("CStatusNetwork", CStatusNetwork::getInstance(),
             [] { CStatusNetwork::setState(true); }),
        draw("CStatusRecording", CStatusRecording::getInstance(),
             [] { CStatusRecording::setState(true); }),
        draw("CStatusStreaming", CStatusStreaming::getInstance(),
             [] { CStatusStreaming::setState(CStatusStreaming::StreamingOn); }),
        draw("CStatusWireless", CStatusWireless::getInstance(),
             [] { CStatusWireless::setConnected(true); }),
        draw("CStatusProbeSensor", CStatusProbeSensor::getInstance(),
             [] {
                 CStatusProbeSensor::setState(
                     {.isSensorSupported = true, .angle = 30, .muxVersion = 2});
             }),
        {"CStatusStreaming, to a disk",
         [](Outcome&) {
             CStatusStreaming::setState(CStatusStreaming::StreamingToDisk);
             CStatusStreaming::setState(CStatusStreaming::StreamingOff);
         }},
        {"CWmiService",
         [](Outcome& outcome) {
             CWmiService::destroyInstance();
             outcome.Result(CWmiService::getInstance()->Initialize());
             CWmiService::getInstance()->Update();
             outcome.Result(CWmiService::getInstance()->Query(
                                2, L"SELECT * FROM MSNdis_EnumerateAdapter") >= 0);
             CWmiService::destroyInstance();
         }},
        {"GetWirelessAdapterGuid",
         [](Outcome& outcome) { outcome.Text(utilsExam::GetWirelessAdapterGuid()); }},
        {"GetLocalIP", [](Outcome& outcome) { outcome.Text(utilsExam::GetLocalIP().GetString()); }},
    };
}

} // namespace faults
