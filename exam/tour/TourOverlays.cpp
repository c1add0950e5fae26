// Station 9: windows over the image, buttons with pictures, tips and balloons.
#include "base/Palette.h"
#include "commands/Commands.h"
#include "tour/Tour.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

#include <afxwin.h>

#include <commctrl.h>

namespace exam {

namespace {

constexpr std::size_t distanceButton = 0;
constexpr std::size_t rawButton = 3;
constexpr std::size_t movieButton = 4;

CString TextOf(HWND tip)
{
    wchar_t text[1024] = {};
    TOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.lpszText = text;
    SendMessageW(tip, TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&tool));
    return text;
}

// An enumeration callback that stops at a visible tip with the text.
BOOL CALLBACK IsOtherTip(HWND window, LPARAM text)
{
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    return CString(name) != TOOLTIPS_CLASSW || !IsWindowVisible(window) ||
           TextOf(window) != *reinterpret_cast<const CString*>(text);
}

// A notice may be shown beside the tip.
bool IsTipShown(const CString& text)
{
    return !EnumThreadWindows(GetCurrentThreadId(), IsOtherTip, reinterpret_cast<LPARAM>(&text));
}

bool ShowsTip(TourContext& context, const CString& text)
{
    return context.WaitUntil([&] { return IsTipShown(text); });
}

COLORREF PixelAt(CWnd& window, CPoint pixel)
{
    return GetPixel(base::WindowContext(window).get(), pixel.x, pixel.y);
}

COLORREF ScreenPixelAt(CWnd& window, CPoint pixel)
{
    window.ClientToScreen(&pixel);
    return GetPixel(base::WindowContext(nullptr).get(), pixel.x, pixel.y);
}

bool IsGrey(COLORREF colour)
{
    return GetRValue(colour) == GetGValue(colour) && GetGValue(colour) == GetBValue(colour);
}

void Push(TourContext& context, std::size_t button)
{
    ToolBar& tools = context.window.OverImage().Tools();
    const CPoint middle = tools.AreaOf(button).CenterPoint();
    tools.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(middle.x, middle.y));
}

void Indicators(TourContext& context)
{
    context.state.SelectImage(curvedRecording);
    context.Picture(L"overlays");
    LoopDial& dial = context.window.OverImage().Dial();
    CRect area;
    dial.GetClientRect(&area);
    const CPoint edge(area.CenterPoint().x, 2);
    context.report.Step(PixelAt(dial, edge) == palette::header &&
                            ScreenPixelAt(dial, {0, 0}) == palette::background,
                        L"a round indicator shows the image round itself");
    const CPoint middle = area.CenterPoint() + CPoint(4, -8);
    context.report.Step(PixelAt(dial, middle) == palette::accent,
                        L"it shows that the first frame is on display");
}

void Buttons(TourContext& context)
{
    ToolBar& tools = context.window.OverImage().Tools();
    Push(context, distanceButton);
    context.report.Step(context.state.Marks().Chosen() == MarkKind::distance,
                        L"a button of the tool bar chooses the distance");
    Push(context, rawButton);
    Push(context, movieButton); // has no effect now
    context.report.Step(context.state.Recording() &&
                            tools.Buttons()[movieButton].form() == ButtonForm::disabled,
                        L"while raw frames are recorded the movie's button cannot be pushed");
    context.window.Exam().Advance();
    context.Picture(L"tool-buttons");
    const CRect movie = tools.AreaOf(movieButton);
    context.report.Step(IsGrey(ScreenPixelAt(tools, movie.CenterPoint())) &&
                            !IsGrey(ScreenPixelAt(tools, tools.AreaOf(rawButton).CenterPoint())),
                        L"its picture is grey, that of the other one is not");
    Push(context, distanceButton);
}

// Moves the system's pointer: a window forgets its tip when the pointer is not over it.
void PointAt(CWnd& window, CPoint pixel)
{
    window.ClientToScreen(&pixel);
    SetCursorPos(pixel.x, pixel.y);
}

void Tips(TourContext& context)
{
    ToolBar& tools = context.window.OverImage().Tools();
    for (int language = 0; language < 2; ++language) {
        PointAt(tools, tools.AreaOf(distanceButton).CenterPoint());
        const CString tip = TipOf(*CommandOfKey('1'));
        context.report.Step(ShowsTip(context, tip),
                            L"a tip says what the button under the pointer does");
        context.PictureOf(CRect(0, 160, 520, 360), language ? L"tip-other-language" : L"tip");
        PointAt(context.window, context.state.Layout().panel.CenterPoint());
        context.report.Step(context.WaitUntil([&] { return !IsTipShown(tip); }),
                            L"and goes with the pointer");
        context.state.NextLanguage();
    }
}

void PanelTips(TourContext& context)
{
    ControlPanel& panel = context.window.Panel();
    const PanelButton& button = panel.Buttons().front();
    PointAt(panel, button.area.CenterPoint());
    const CString tip = GetStr(button.IsRotary() ? "exam.tip.rotary" : "exam.tip.button");
    context.report.Step(ShowsTip(context, tip),
                        L"a tip on the control panel says how a button is worked");
    context.PictureOf(CRect(0, 700, 1024, 1024), L"panel-tip");
    PointAt(context.window, context.state.Layout().panel.CenterPoint());
    context.report.Step(context.WaitUntil([&] { return !IsTipShown(tip); }), L"and goes, too");
}

// The lower part of the console's screen, where balloons stand.
CRect BalloonCorner()
{
    return {0, 700, 1280, 900};
}

void Balloons(TourContext& context)
{
    Push(context, rawButton); // ends the recording
    context.report.Step(ShowsTip(context, context.state.Status()),
                        L"a balloon says what was recorded");
    context.PictureOf(BalloonCorner(), L"balloon-finished");
    context.state.NextLanguage();
    context.SetCodec(L"no such codec");
    Push(context, movieButton);
    context.report.Step(!context.state.Recording() &&
                            context.state.Status().Find(L"no such codec") >= 0 &&
                            ShowsTip(context, context.state.Status()),
                        L"in the other language one says why nothing is recorded");
    context.PictureOf(BalloonCorner(), L"balloon-error");
    const CString broken = GetStr("exam.record.broken", L"movie-001.avi", 12);
    RaiseNotice(NoticeKind::warning, broken);
    context.report.Step(ShowsTip(context, broken),
                        L"a warning takes the place of the balloon before");
    context.PictureOf(BalloonCorner(), L"balloon-warning");
    context.state.NextLanguage();
}

} // namespace

void TourOverlays(TourContext& context)
{
    Indicators(context);
    Buttons(context);
    Tips(context);
    PanelTips(context);
    Balloons(context);
    context.state.SetStatus(L"");
}

} // namespace exam
