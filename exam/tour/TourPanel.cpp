// Station 8: the control panel, worked with posted mouse messages; and the tour's end by its button
// End.
#include "panel/PanelFile.h"
#include "panel/PanelGrid.h"
#include "tour/Tour.h"
#include "window/Capture.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <filesystem>
#include <fstream>

namespace exam {

namespace {

namespace fs = std::filesystem;

std::wstring SavedActions()
{
    return utilsExam::GetProtocolSavePath(L"ButtonActions.xml", nullptr).GetString();
}

// Works the panel with the mouse.
class Hand
{
public:
    explicit Hand(TourContext& context) : m_context(context) {}

    bool IsLit(const wchar_t* name) const
    {
        const PanelButton* const button = Panel().Find(name);
        return button && Panel().IsLit(*button);
    }

    void Push(const wchar_t* name) { Click(AreaOf(name).CenterPoint()); }
    void TurnUp(const wchar_t* name) { Click({AreaOf(name).right - 4, AreaOf(name).top + 20}); }
    void TurnDown(const wchar_t* name) { Click({AreaOf(name).left + 4, AreaOf(name).top + 20}); }

    void Hold(const wchar_t* name, CPoint at)
    {
        Send(WM_LBUTTONDOWN, MK_LBUTTON, AreaOf(name).CenterPoint());
        Send(WM_MOUSEMOVE, MK_LBUTTON, at);
    }
    void Release(CPoint at) { Send(WM_LBUTTONUP, 0, at); }
    void Tick(const wchar_t* name) { Send(WM_RBUTTONUP, 0, AreaOf(name).CenterPoint()); }

    void Picture(const std::wstring& name)
    {
        Panel().UpdateWindow();
        const std::wstring path = m_context.folder + L"\\" + name + L".png";
        m_context.report.Step(CaptureToPng(Panel().GetSafeHwnd(), path),
                              L"picture " + name + L".png");
    }

    ControlPanel& Panel() const { return m_context.controls.Panel(); }

    CRect AreaOf(const wchar_t* name) const
    {
        const PanelButton* const button = Panel().Find(name);
        return button ? button->area : CRect();
    }

private:
    void Click(CPoint at)
    {
        Send(WM_LBUTTONDOWN, MK_LBUTTON, at);
        Send(WM_LBUTTONUP, 0, at);
    }

    // Posts a message to the panel's queue, as the user's mouse would, and lets the panel handle
    // it. The system's pointer moves along, because capturing the mouse may bring a message of its
    // position.
    void Send(UINT message, WPARAM flags, CPoint at)
    {
        CPoint onScreen = at;
        Panel().ClientToScreen(&onScreen);
        SetCursorPos(onScreen.x, onScreen.y);
        HandlePending();
        ::PostMessage(Panel().GetSafeHwnd(), message, flags, MAKELPARAM(at.x, at.y));
        HandlePending();
    }

    void HandlePending()
    {
        const HWND panel = Panel().GetSafeHwnd(); // a message may close it
        MSG next;
        while (panel && PeekMessage(&next, panel, 0, 0, PM_REMOVE))
            DispatchMessage(&next);
    }

    TourContext& m_context;
};

void Freeze(TourContext& context, Hand& hand)
{
    hand.Push(L"Linear");
    const bool frozen = hand.IsLit(L"Linear") && hand.IsLit(L"Freeze");
    const int first = context.session.Frame();
    hand.Push(L"Freeze");
    const bool dark = !hand.IsLit(L"Freeze");
    const bool runs = context.WaitUntil([&] { return context.session.Frame() != first; });
    hand.Push(L"Freeze");
    context.report.Step(frozen && dark && runs && hand.IsLit(L"Freeze"),
                        L"Freeze lets the frames run and stops them, and its lamp follows");
    hand.Push(L"Curved");
}

void RotaryControls(TourContext& context, Hand& hand)
{
    const int depth = context.window.DepthMillimetres();
    for (int i = 0; i < 3; ++i) {
        hand.TurnUp(L"Gain");
        hand.TurnDown(L"Depth");
    }
    const int less = context.window.DepthMillimetres();
    context.report.Step(context.window.Gain() == 6 && less < depth * 3 / 4 && less > depth / 2,
                        L"the rotary controls change gain and depth");
    context.Picture(L"panel-gain-and-depth");
    for (int i = 0; i < 3; ++i) {
        hand.TurnDown(L"Gain");
        hand.TurnUp(L"Depth");
    }
    context.report.Step(context.window.Gain() == 0 && context.window.DepthMillimetres() == depth,
                        L"and turn them back");
}

void DerivedLamps(TourContext& context, Hand& hand)
{
    hand.Push(L"Distance");
    context.report.Step(hand.IsLit(L"Distance") && hand.IsLit(L"Clear"),
                        L"the lamp of Clear follows from two states: frozen, and measuring");
    hand.Push(L"Record");
    context.report.Step(hand.IsLit(L"Record") && !hand.IsLit(L"Movie") && hand.IsLit(L"Stop"),
                        L"the lamp of Stop follows from either kind of recording");
    hand.Picture(L"panel");
    hand.Push(L"Stop");
    hand.Push(L"Clear");
    context.report.Step(!context.window.IsRecording() && !hand.IsLit(L"Stop") &&
                            !hand.IsLit(L"Record") && !hand.IsLit(L"Clear"),
                        L"Stop and Clear end both, and the lamps go out");
}

void SecondPush(TourContext& context, Hand& hand)
{
    hand.Push(L"Color");
    const CString first = context.window.Status();
    hand.Push(L"Color");
    context.report.Step(first == GetStr("exam.action.noeffect", L"Mode", L"Color") &&
                            context.window.Status() ==
                                GetStr("exam.action.noeffect", L"Mode", L"PowerDoppler"),
                        L"a second push does what the file says; what has no effect is told");
}

void PictureAndVisibility(TourContext& context, Hand& hand)
{
    const std::wstring picture = context.folder + L"\\recordings\\picture-1.png";
    hand.Push(L"Picture");
    context.report.Step(fs::exists(fs::path(picture)) &&
                            context.window.Status() ==
                                GetStr("exam.picture.saved", picture.c_str()),
                        L"Picture keeps what is on the screen");
    context.window.SendMessage(WM_KEYDOWN, 'K');
    const bool hidden = !hand.Panel().IsWindowVisible();
    context.window.SendMessage(WM_KEYDOWN, 'K');
    context.report.Step(hidden && hand.Panel().IsWindowVisible(),
                        L"the key K hides the panel and shows it again");
}

void Rearrange(TourContext& context, Hand& hand)
{
    const CRect print = hand.AreaOf(L"Print");
    const CRect patient = hand.AreaOf(L"Patient");
    hand.Hold(L"Print", patient.CenterPoint() + CPoint(20, 12));
    hand.Picture(L"panel-drag");
    hand.Release(patient.CenterPoint() + CPoint(20, 12));
    hand.Tick(L"Freeze");
    context.report.Step(hand.AreaOf(L"Print") == patient && hand.AreaOf(L"Patient") == print,
                        L"a button that is dragged onto another one takes its place");
    context.controls.Reload();
    const bool ticked =
        hand.Panel().Layout().Placements()[hand.Panel().Find(L"Freeze")->placement].check;
    context.report.Step(PanelFileInForce() == PanelSaveFile() && ticked &&
                            hand.AreaOf(L"Print") == patient && hand.AreaOf(L"Patient") == print &&
                            hand.IsLit(L"Freeze"),
                        L"the layout comes back from the file that was saved at once");
    hand.Picture(L"panel-rearranged");
}

void SavedCopyOfTheActions(TourContext& context, Hand& hand)
{
    std::ofstream(fs::path(SavedActions()))
        << "<ButtonActions><Button name=\"Print\"><Push1 actionType=\"Imaging\" "
           "action=\"Freeze\"/></Button><Button name=\"B\"><Push1 actionType=\"Imaging\" "
           "action=\"Gain\" actionParam=\"2147483647\"/><Push2 actionType=\"Imaging\" "
           "action=\"Rotate\" actionParam=\"-2147483648\"/></Button></ButtonActions>\n";
    context.controls.Reload();
    const bool only = hand.Panel().Buttons().size() == 2;
    hand.Push(L"Print");
    context.report.Step(only && !context.window.IsFrozen(),
                        L"the user's copy of the actions shadows the factory's");
    hand.Push(L"Print");
    hand.Push(L"B");
    hand.Push(L"B");
    context.report.Step(context.window.Gain() == 20 && context.window.Rotation() < 3600 &&
                            context.window.Rotation() >= 0,
                        L"a parameter without measure goes as far as its limit");
    context.window.ChangeGain(-20);
    context.window.SetRotation(0);
}

void RemoveSavedFiles()
{
    std::error_code error;
    fs::remove(fs::path(PanelSaveFile()), error);
    fs::remove(fs::path(SavedActions()), error);
}

} // namespace

void TourPanel(TourContext& context)
{
    context.ShowRecording(curvedRecording);
    RemoveSavedFiles(); // files of an earlier tour
    context.controls.Reload();
    Hand hand(context);
    context.report.Step(hand.Panel().Buttons().size() == hand.Panel().Layout().Placements().size(),
                        L"every button of the factory's layout stands on the panel");
    Freeze(context, hand);
    RotaryControls(context, hand);
    DerivedLamps(context, hand);
    SecondPush(context, hand);
    PictureAndVisibility(context, hand);
    Rearrange(context, hand);
    SavedCopyOfTheActions(context, hand);
    RemoveSavedFiles();
    context.controls.Reload();
    context.window.SetStatus(L"");
}

void TourEnd(TourContext& context)
{
    Hand hand(context);
    hand.Push(L"End");
    MSG quit;
    context.report.Step(!context.window.GetSafeHwnd() && !hand.Panel().GetSafeHwnd() &&
                            PeekMessage(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE),
                        L"the button End closes the windows and ends the application");
}

} // namespace exam
