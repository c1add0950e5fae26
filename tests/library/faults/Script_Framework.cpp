// The framework, as an application uses it by itself.
#include "Script.h"

#include <base/Handles.h>
#include <test_support/Canvas.h>

#include <afxcmn.h>
#include <afxdisp.h>
#include <afxwin.h>
#include <atltime.h>

namespace faults {

namespace {

void Draw(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.SetViewportOrg(2, 2);
    dc.SetTextColor(0xFFFFFF);
    dc.SetBkColor(0x203040);
    CBrush brush(0x405060);
    dc.FillRect(CRect(0, 0, 20, 20), &brush);
    dc.FrameRect(CRect(0, 0, 20, 20), &brush);
    dc.FillSolidRect(CRect(5, 5, 9, 9), 0x123456);
    dc.MoveTo(1, 1);
    dc.LineTo(30, 30);
    dc.MoveTo(dc.GetCurrentPosition());
    dc.Arc(CRect(10, 10, 40, 40), {10, 20}, {40, 20});
    dc.SelectStockObject(WHITE_PEN);
    dc.GetCurrentBitmap();
    dc.GetDeviceCaps(BITSPIXEL);
    dc.RestoreDC(saved);
}

// The calls of the texts go through the framework, whatever the compiler knows of the context.
[[gnu::noinline]] void DrawTexts(CDC& dc, Outcome& outcome)
{
    dc.TextOut(1, 1, L"text", 4);
    outcome.Sees(dc.GetTextExtent(L"text", 4).cx);
    outcome.Sees(dc.GetViewportOrg().x);
}

UINT SayThatItRuns(void* event)
{
    SetEvent(event);
    return 0;
}

std::vector<Step> DrawingObjects()
{
    return {
        {"CDC, its texts",
         [](Outcome& outcome) {
             test_support::Canvas canvas(48, 48);
             DrawTexts(canvas.dc, outcome);
             const auto pixels = canvas.Pixels();
             outcome.Sees(Sum(pixels.data(), pixels.size() * sizeof pixels[0]));
         },
         false},
        {"CDC, of the screen",
         [](Outcome& outcome) {
             CDC dc;
             outcome.Result(dc.CreateDC(L"DISPLAY", nullptr, nullptr, nullptr) != 0);
         }},
        {"CFont",
         [](Outcome& outcome) {
             CFont font;
             outcome.Result(font.CreatePointFont(120, L"Arial") != 0);
         }},
        {"CBitmap",
         [](Outcome& outcome) {
             const DWORD pixels[64] = {1, 2, 3};
             CBitmap bitmap;
             bitmap.CreateBitmap(8, 8, 1, 32, nullptr);
             outcome.Result(bitmap.SetBitmapBits(sizeof pixels, pixels) == sizeof pixels);
         }},
        {"CImageList",
         [](Outcome& outcome) {
             test_support::Canvas canvas(48, 48);
             CBitmap bitmap;
             bitmap.CreateBitmap(16, 16, 1, 32, nullptr);
             CImageList list;
             list.Create(16, 16, ILC_COLOR32, 1, 1);
             outcome.Result(list.Add(&bitmap, static_cast<CBitmap*>(nullptr)) >= 0);
             outcome.Result(list.Draw(&canvas.dc, 0, POINT{0, 0}, ILD_NORMAL) != 0);
         }},
    };
}

std::vector<Step> ValuesAndThreads()
{
    return {
        {"CString, of a resource",
         [](Outcome& outcome) {
             CString text;
             outcome.Result(text.LoadString(1) != 0);
             outcome.Text(text.GetString());
         }},
        {"COleDateTime",
         [](Outcome& outcome) {
             const COleDateTime time(2024, 6, 30, 9, 5, 7);
             outcome.Result(time.GetStatus() == COleDateTime::valid);
             outcome.Result(time.GetYear() == 2024);
         }},
        {"CTime",
         [](Outcome& outcome) {
             const CTime time(2024, 6, 30, 9, 5, 7);
             outcome.Result(time.GetYear() == 2024);
         }},
        {"CWinThread, a message",
         [](Outcome& outcome) {
             PostMessageW(AfxGetMainWnd()->GetSafeHwnd(), WM_NULL, 0, 0);
             outcome.Result(AfxGetApp()->PumpMessage() != 0);
         }},
        {"AfxBeginThread",
         [](Outcome& outcome) {
             const base::Event runs(CreateEventW(nullptr, TRUE, FALSE, nullptr));
             const bool started =
                 AfxBeginThread(SayThatItRuns, runs.get(), THREAD_PRIORITY_BELOW_NORMAL) != nullptr;
             outcome.Result(started);
             if (!started) return;
             outcome.Sees(WaitForSingleObject(runs.get(), 5000));
             Sleep(20); // for the end of the thread
         }},
    };
}

// The framework as an application uses it by itself.
std::vector<Step> Application()
{
    return {
        {"CDC",
         [](Outcome& outcome) {
             test_support::Canvas canvas(48, 48);
             Draw(canvas.dc);
             const auto pixels = canvas.Pixels();
             outcome.Sees(Sum(pixels.data(), pixels.size() * sizeof pixels[0]));
         },
         false},
        {"CWinApp, a setting",
         [](Outcome& outcome) {
             CWinApp& application = *AfxGetApp();
             application.WriteProfileString(L"Faults", L"Text", L"old");
             const bool written = application.WriteProfileString(L"Faults", L"Text", L"new") != 0;
             outcome.Result(written);
             const CString text = application.GetProfileString(L"Faults", L"Text", L"none");
             outcome.Value(text.GetString(), written ? L"none" : L"old");
             outcome.Result(application.WriteProfileString(L"Faults", L"Text", nullptr) != 0);
             outcome.Result(application.WriteProfileString(L"Faults", nullptr, nullptr) != 0);
         }},
        {"CWnd, its text",
         [](Outcome& outcome) {
             CString text;
             AfxGetMainWnd()->SetWindowText(L"a text");
             AfxGetMainWnd()->GetWindowText(text);
             outcome.Text(text.GetString());
         }},
        {"CWnd, its style",
         [](Outcome& outcome) {
             CWnd& window = *AfxGetMainWnd();
             outcome.Result(window.ModifyStyle(0, WS_BORDER, SWP_FRAMECHANGED) != 0);
             outcome.Result(window.ModifyStyle(WS_BORDER, 0, SWP_FRAMECHANGED) != 0);
         }},
        {"AfxRegisterWndClass",
         [](Outcome& outcome) {
             const CString name = AfxRegisterWndClass(CS_DBLCLKS, nullptr, nullptr, nullptr);
             outcome.Text(name.GetString());
             UnregisterClassW(name, GetModuleHandleW(nullptr));
         }},
    };
}

} // namespace

std::vector<Step> FrameworkSteps()
{
    std::vector<Step> steps = Application();
    for (const auto& more : {DrawingObjects(), ValuesAndThreads()})
        steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

} // namespace faults
