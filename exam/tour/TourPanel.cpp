// Station 8: the control panel, worked with posted mouse messages; and the tour's end by its button
// End.
#include "panel/PanelLayout.h"
#include "tour/Tour.h"

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

    void Push(const wchar_t* name)
    {
        m_context.report.Do(std::wstring(L"button ") + name);
        Click(AreaOf(name).CenterPoint());
    }
    void TurnUp(const wchar_t* name) { Click({AreaOf(name).right - 4, AreaOf(name).top + 20}); }
    void TurnDown(const wchar_t* name) { Click({AreaOf(name).left + 4, AreaOf(name).top + 20}); }

    void Hold(const wchar_t* name, CPoint at)
    {
        Send(WM_LBUTTONDOWN, MK_LBUTTON, AreaOf(name).CenterPoint());
        Send(WM_MOUSEMOVE, MK_LBUTTON, at);
    }
    void Release(CPoint at) { Send(WM_LBUTTONUP, 0, at); }
    void Tick(const wchar_t* name)
    {
        Send(WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, AreaOf(name).CenterPoint());
    }

    void Picture(const std::wstring& name) { m_context.PictureOf(Panel().GetSafeHwnd(), name); }

    ControlPanel& Panel() const { return m_context.window.Panel(); }

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

    // The system's pointer moves along, because capturing the mouse may bring a message of its
    // position.
    void Send(UINT message, WPARAM flags, CPoint at)
    {
        CPoint onScreen = at;
        Panel().ClientToScreen(&onScreen);
        SetCursorPos(onScreen.x, onScreen.y);
        m_context.Post(Panel().GetSafeHwnd(), message, flags, MAKELPARAM(at.x, at.y));
    }

    TourContext& m_context;
};

void Freeze(TourContext& context, Hand& hand)
{
    hand.Push(L"Linear");
    const bool frozen = hand.IsLit(L"Linear") && hand.IsLit(L"Freeze");
    const int first = context.state.Frame();
    hand.Push(L"Freeze");
    const bool dark = !hand.IsLit(L"Freeze");
    const bool runs = context.WaitUntil([&] { return context.state.Frame() != first; });
    hand.Push(L"Freeze");
    context.report.Step(frozen && dark && runs && hand.IsLit(L"Freeze"),
                        L"Freeze lets the frames run and stops them, and its lamp follows");
    hand.Push(L"Curved");
}

void RotaryControls(TourContext& context, Hand& hand)
{
    const int depth = context.state.DepthMillimetres();
    for (int i = 0; i < 3; ++i) {
        hand.TurnUp(L"Gain");
        hand.TurnDown(L"Depth");
    }
    const int less = context.state.DepthMillimetres();
    context.report.Step(context.state.Gain() == 6 && less < depth * 3 / 4 && less > depth / 2,
                        L"the rotary controls change gain and depth");
    context.Picture(L"panel-gain-and-depth");
    for (int i = 0; i < 3; ++i) {
        hand.TurnDown(L"Gain");
        hand.TurnUp(L"Depth");
    }
    context.report.Step(context.state.Gain() == 0 && context.state.DepthMillimetres() == depth,
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
    context.report.Step(!context.state.Recording() && !hand.IsLit(L"Stop") &&
                            !hand.IsLit(L"Record") && !hand.IsLit(L"Clear"),
                        L"Stop and Clear end both, and the lamps go out");
}

void SecondPush(TourContext& context, Hand& hand)
{
    context.state.ShowStrip(true);
    hand.Push(L"PulsedDoppler"); // switches
    const bool hidden = !context.state.IsStripShown();
    hand.Push(L"PulsedDoppler"); // goes back to B
    context.report.Step(hidden && !context.state.IsStripShown(),
                        L"a second push does what the file says");
}

void PictureAndVisibility(TourContext& context, Hand& hand)
{
    const std::wstring picture = context.folder + L"\\recordings\\picture-1.png";
    hand.Push(L"Picture");
    context.report.Step(fs::exists(fs::path(picture)) &&
                            context.state.Status() == GetStr("exam.picture.saved", picture.c_str()),
                        L"Picture keeps what is on the screen");
    context.Key('K');
    const bool hidden = !hand.Panel().IsWindowVisible();
    context.Key('K');
    context.report.Step(hidden && hand.Panel().IsWindowVisible(),
                        L"the key K hides the panel and shows it again");
}

void Rearrange(TourContext& context, Hand& hand)
{
    const CRect picture = hand.AreaOf(L"Picture");
    const CRect movie = hand.AreaOf(L"Movie");
    const CPoint to = movie.CenterPoint() + CPoint(20, 12);
    hand.Hold(L"Picture", to);
    hand.Release(to);
    context.report.Step(hand.Panel().IsLocked() && hand.AreaOf(L"Picture") == picture,
                        L"while the panel is locked, a drag moves no button");
    hand.Panel().SetLocked(false);
    hand.Hold(L"Picture", to);
    hand.Picture(L"panel-drag");
    hand.Release(to);
    hand.Panel().SetLocked(true);
    hand.Tick(L"Freeze");
    context.report.Step(hand.AreaOf(L"Picture") == movie && hand.AreaOf(L"Movie") == picture,
                        L"a button that is dragged onto another one takes its place");
    context.window.Panel().Reload();
    const bool ticked =
        hand.Panel().Layout().Placements()[hand.Panel().Find(L"Freeze")->placement].check;
    context.report.Step(PanelFileInForce() == PanelSaveFile() && ticked &&
                            hand.AreaOf(L"Picture") == movie && hand.AreaOf(L"Movie") == picture &&
                            hand.IsLit(L"Freeze"),
                        L"the layout comes back from the file that was saved at once");
    hand.Picture(L"panel-rearranged");
}

void SavedCopyOfTheActions(TourContext& context, Hand& hand)
{
    std::ofstream(fs::path(SavedActions()))
        << "<ButtonActions><Button name=\"Picture\"><Push1 actionType=\"Imaging\" "
           "action=\"Freeze\"/></Button><Button name=\"B\"><Push1 actionType=\"Imaging\" "
           "action=\"Gain\" actionParam=\"2147483647\"/><Push2 actionType=\"Imaging\" "
           "action=\"Rotate\" actionParam=\"-2147483648\"/></Button></ButtonActions>\n";
    context.window.Panel().Reload();
    const bool only = hand.Panel().Buttons().size() == 2;
    hand.Push(L"Picture");
    context.report.Step(only && !context.state.IsFrozen(),
                        L"the user's copy of the actions shadows the factory's");
    hand.Push(L"Picture");
    hand.Push(L"B");
    hand.Push(L"B");
    context.report.Step(context.state.Gain() == 20 &&
                            context.state.ImageOrientation().quarters == 0,
                        L"a parameter without measure goes as far as its limit");
    context.state.ChangeGain(-20);
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
    context.state.SelectImage(curvedRecording);
    RemoveSavedFiles(); // files of an earlier tour
    context.window.Panel().Reload();
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
    context.window.Panel().Reload();
    context.state.SetStatus(L"");
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
