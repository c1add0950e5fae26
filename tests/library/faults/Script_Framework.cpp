// The framework, as an application uses it by itself.
#include "Script.h"

#include <test_support/Canvas.h>

#include <afxcmn.h>
#include <afxwin.h>

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

} // namespace

std::vector<Step> FrameworkSteps()
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
             outcome.Text(AfxRegisterWndClass(CS_DBLCLKS, nullptr, nullptr, nullptr));
         }},
    };
}

} // namespace faults
