// The main window has its form and place, the image and the control panel, as the user has them.
#include "base/ScreenLayout.h"
#include "MainWindowFixture.h"
#include "screen/Timeline.h"

#include <test_support/TipReader.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <commctrl.h>

#include <utility>

using namespace exam;

namespace {

class MainWindowFormTest : public MainWindowTest
{
protected:
    CRect Area() const
    {
        CRect area;
        m_window->GetWindowRect(&area);
        return area;
    }

    CSize Client() const
    {
        CRect client;
        m_window->GetClientRect(&client);
        return client.Size();
    }

    // The place of a window in the main window's client area.
    CRect PlaceOf(const CWnd& part) const
    {
        CRect area;
        part.GetWindowRect(&area);
        m_window->ScreenToClient(&area);
        return area;
    }
};

} // namespace

TEST_F(MainWindowFormTest, TheConsoleIsFixedAndItsPanelStandsBelow)
{
    EXPECT_EQ(Area(), CRect(0, 0, 1024, 768));
    EXPECT_EQ(m_state.Layout(), ConsoleLayout());
    EXPECT_EQ(PlaceOf(m_window->Panel()).Size(), CSize(1024, 200));
    EXPECT_NE(m_window->GetStyle() & WS_POPUP, 0u);
}

TEST_F(MainWindowFormTest, TheWindowHasATitleAndABorderAndItsPartsFollowItsSize)
{
    Open(WindowForm::window);
    EXPECT_EQ(m_window->GetStyle() & WS_OVERLAPPEDWINDOW, DWORD{WS_OVERLAPPEDWINDOW});
    CString title;
    m_window->GetWindowText(title);
    EXPECT_EQ(title, GetStr("exam.title"));
    for (const CSize size : {CSize(900, 700), CSize(1200, 800), CSize(800, 600)}) {
        m_window->MoveWindow(10, 20, size.cx, size.cy);
        HandleMessages();
        const ScreenLayout& layout = m_state.Layout();
        EXPECT_EQ(layout.client, Client());
        EXPECT_EQ(m_state.View().Parameters().width, layout.image.Width());
        EXPECT_EQ(PlaceOf(m_window->Panel()), layout.controlPanel);
        EXPECT_EQ(PlaceOf(m_window->OverImage().Dial()), layout.dial);
        EXPECT_EQ(PlaceOf(m_window->OverImage().Tools()).TopLeft(), layout.tools.TopLeft());
    }
}

TEST_F(MainWindowFormTest, TheWindowIsNeverSmallerThanItsLeastSize)
{
    Open(WindowForm::window);
    MINMAXINFO info = {};
    m_window->SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(CPoint(info.ptMinTrackSize), CPoint(800, 600));
}

TEST_F(MainWindowFormTest, TheWindowComesBackWhereItWas)
{
    Open(WindowForm::window);
    const CRect place(30, 40, 1000, 720);
    m_window->MoveWindow(&place);
    Open(WindowForm::window);
    EXPECT_EQ(Area(), place);
    m_window->ShowWindow(SW_MAXIMIZE);
    Open(WindowForm::window);
    EXPECT_TRUE(IsZoomed(m_window->GetSafeHwnd()));
    m_window->ShowWindow(SW_RESTORE);
    EXPECT_EQ(Area(), place);
}

TEST_F(MainWindowFormTest, AWindowThatWouldBeOffTheScreenComesBackOntoIt)
{
    for (const auto& [entry, value] :
         {std::pair(L"Left", -5000), {L"Top", 100}, {L"Width", 900}, {L"Height", 700}})
        s_app.WriteProfileInt(L"Settings\\Window", entry, value);
    Open(WindowForm::window);
    const CRect screen(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    CRect both;
    EXPECT_TRUE(both.IntersectRect(&screen, Area()));
    EXPECT_EQ(both, Area());
}

TEST_F(MainWindowFormTest, TheWindowFollowsTheResolutionOfItsScreen)
{
    Open(WindowForm::window);
    CRect place(0, 0, 1260, 980);
    m_window->SendMessage(WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(Area(), place);
    EXPECT_EQ(m_state.Layout().scale, 1.5);
    EXPECT_EQ(m_state.Layout().client, Client());
}

TEST_F(MainWindowFormTest, APressOnTheTimelineShowsItsFrame)
{
    Open(WindowForm::window);
    const CRect line = m_state.Layout().timeline;
    const auto at = [&](int x) { return MAKELPARAM(x, line.CenterPoint().y); };
    m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, at(line.right - 2));
    EXPECT_EQ(m_state.Frame(), 3);
    m_window->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, at(line.left - 40));
    EXPECT_EQ(m_state.Frame(), 0);
    m_window->SendMessage(WM_LBUTTONUP, 0, at(line.left));
    m_window->SendMessage(WM_MOUSEMOVE, 0, at(line.right));
    EXPECT_EQ(m_state.Frame(), 0);
}

TEST_F(MainWindowFormTest, TheWheelZoomsAtThePointerAndADragMovesTheImage)
{
    Open(WindowForm::window);
    const CRect& image = m_state.Layout().image;
    const CPoint pointer = image.TopLeft() + CPoint(200, 150);
    m_state.ZoomAt(3, image.CenterPoint());
    const FramePoint under = m_state.View().Parameters().InFrame({200, 150});
    CPoint onScreen = pointer;
    m_window->ClientToScreen(&onScreen);
    m_window->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, 4 * WHEEL_DELTA),
                          MAKELPARAM(onScreen.x, onScreen.y));
    EXPECT_NEAR(m_state.View().Zoom(), 3 * std::pow(1.25, 4), 1e-9);
    const double pixel = m_state.View().Parameters().micronsPerPixel.x;
    EXPECT_NEAR(m_state.View().Parameters().InFrame({200, 150}).x, under.x, pixel);
    const auto at = [&](CPoint point) { return MAKELPARAM(point.x, point.y); };
    m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, at(pointer));
    m_window->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, at(pointer + CPoint(-20, 0)));
    m_window->SendMessage(WM_LBUTTONUP, 0, at(pointer + CPoint(-20, 0)));
    m_window->SendMessage(WM_MOUSEMOVE, 0, at(pointer + CPoint(-90, 0)));
    EXPECT_NEAR(m_state.View().Parameters().InFrame({180, 150}).x, under.x, pixel);
}

TEST_F(MainWindowFormTest, AHiddenPanelGivesItsRoomToTheImage)
{
    Open(WindowForm::window);
    const int height = m_state.Layout().image.Height();
    m_window->SendMessage(WM_KEYDOWN, 'K', 1);
    EXPECT_FALSE(m_window->Panel().IsWindowVisible());
    EXPECT_GT(m_state.Layout().image.Height(), height + 100);
    Open(WindowForm::window);
    EXPECT_FALSE(m_window->Panel().IsWindowVisible()); // as it was left
    m_window->SendMessage(WM_KEYDOWN, 'K', 1);
    EXPECT_TRUE(m_window->Panel().IsWindowVisible());
    EXPECT_EQ(m_state.Layout().image.Height(), height);
    EXPECT_EQ(PlaceOf(m_window->Panel()), m_state.Layout().controlPanel);
}

TEST_F(MainWindowFormTest, AFloatingPanelIsAWindowOfItsOwnAndComesBackWhereItWas)
{
    Open(WindowForm::window);
    m_window->SendMessage(WM_KEYDOWN, 'J', 1);
    ControlPanel& panel = m_window->Panel();
    EXPECT_EQ(panel.GetStyle() & (WS_POPUP | WS_CHILD), DWORD{WS_POPUP});
    EXPECT_TRUE(m_state.Layout().controlPanel.IsRectEmpty());
    const CRect place(100, 150, 900, 350);
    panel.MoveWindow(&place);
    CRect client;
    panel.GetClientRect(&client);
    for (const PanelButton& button : panel.Buttons()) {
        CRect inside;
        EXPECT_TRUE(inside.IntersectRect(&button.area, &client));
        EXPECT_EQ(inside, button.area);
    }
    Open(WindowForm::window);
    CRect now;
    m_window->Panel().GetWindowRect(&now);
    EXPECT_EQ(now, place);
    m_window->Panel().SendMessage(WM_CLOSE);
    EXPECT_FALSE(m_window->Panel().IsWindowVisible());
}

TEST_F(MainWindowFormTest, ResettingDocksAndLocksThePanel)
{
    Open(WindowForm::window);
    m_window->SendMessage(WM_KEYDOWN, 'J', 1);
    m_window->Panel().SetLocked(false);
    static_cast<ExamWindow&>(m_window->Exam().Window()).ResetPanel();
    EXPECT_TRUE(m_window->Panel().IsLocked());
    EXPECT_EQ(PlaceOf(m_window->Panel()), m_state.Layout().controlPanel);
}

TEST_F(MainWindowFormTest, TheListOfKeysOpensAndClosesByItsKey)
{
    Open(WindowForm::window);
    m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    ASSERT_TRUE(m_window->Keys().IsShown());
    m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    EXPECT_FALSE(m_window->Keys().IsShown());
    m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    MSG escape = {m_window->Keys().GetSafeHwnd(), WM_KEYDOWN, VK_ESCAPE, 1, 0, {}};
    EXPECT_TRUE(const_cast<KeyList&>(m_window->Keys()).PreTranslateMessage(&escape));
    EXPECT_FALSE(m_window->Keys().IsShown());
}

TEST_F(MainWindowFormTest, TheKeysOfTheNumberPadCount)
{
    Open(WindowForm::window);
    const int before = m_state.Gain();
    m_window->SendMessage(WM_KEYDOWN, VK_ADD, 1);
    EXPECT_EQ(m_state.Gain(), before + 1);
    m_window->SendMessage(WM_KEYDOWN, VK_SUBTRACT, 1);
    EXPECT_EQ(m_state.Gain(), before);
}

TEST_F(MainWindowFormTest, AMarkIsDrawnAndMovedWhereItIsShownInAMovedWindow)
{
    Open(WindowForm::window);
    m_window->MoveWindow(120, 60, 1000, 800);
    HandleMessages();
    const CPoint from = m_state.Layout().image.CenterPoint();
    const CPoint to = from + CPoint(30, 40);
    const auto drag = [&](CPoint a, CPoint b) {
        m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(a.x, a.y));
        m_window->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(b.x, b.y));
        m_window->SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(b.x, b.y));
    };
    const auto pixelOf = [&](std::size_t point) {
        const MarkPoint& place = m_state.Content().marks.front()->points[point];
        return FrameSurface(m_state.View(), m_state.Layout().image.TopLeft()).PixelOf(place);
    };
    m_state.ChooseMark(MarkKind::distance);
    drag(from, to);
    ASSERT_EQ(m_state.Content().marks.size(), 1u);
    EXPECT_NEAR(pixelOf(0).x, from.x, 1);
    EXPECT_NEAR(pixelOf(1).y, to.y, 1);
    drag(to, to + CPoint(10, 20));
    EXPECT_NEAR(pixelOf(1).x, to.x + 10, 1);
    EXPECT_NEAR(pixelOf(1).y, to.y + 20, 1);
}

TEST_F(MainWindowFormTest, ADragWithCtrlMovesTheGreyWindowAndMeasuresNothing)
{
    Open(WindowForm::window);
    const CPoint from = m_state.Layout().image.CenterPoint();
    m_state.ChooseMark(MarkKind::distance);
    m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(from.x, from.y));
    m_window->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x - 50, from.y + 20));
    m_window->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x - 60, from.y + 10));
    m_window->SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(from.x - 60, from.y + 10));
    m_window->SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(from.x, from.y));
    EXPECT_EQ(m_state.Levels(), (GreyWindow{138, 196}));
    EXPECT_TRUE(m_state.Content().marks.empty());
}

TEST_F(MainWindowFormTest, AnImageOnItsSideHasItsScaleBelow)
{
    for (const WindowForm form : {WindowForm::window, WindowForm::console}) {
        Open(form);
        const ScreenLayout upright = m_state.Layout();
        m_window->SendMessage(WM_KEYDOWN, 'R', 1);
        EXPECT_EQ(m_state.Layout().imageArea, upright.imageArea);
        EXPECT_GT(m_state.Layout().image.Width(), upright.image.Width());
        EXPECT_LT(m_state.Layout().image.Height(), upright.image.Height());
        EXPECT_EQ(m_state.View().Parameters().Size(), m_state.Layout().image.Size());
        for (int i = 0; i < 3; ++i)
            m_window->SendMessage(WM_KEYDOWN, 'R', 1);
        EXPECT_EQ(m_state.Layout(), upright);
    }
}

TEST_F(MainWindowFormTest, AClickOnTheBalloonOfAFinishedRecordingOpensIt)
{
    Examination& exam = m_window->Exam();
    exam.ToggleRecording(false);
    exam.Advance();
    exam.EndRecording();
    HandleMessages();
    const HWND tip = test_support::ShownTip();
    ASSERT_TRUE(tip);
    CRect area;
    GetWindowRect(tip, &area);
    EXPECT_EQ(WindowFromPoint(area.CenterPoint()), tip) << "the mouse does not see through it";
    EXPECT_EQ(m_state.Current(), 1u);
    SendMessageW(tip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
    EXPECT_FALSE(IsWindowVisible(tip));
    const FrameSource* const opened = m_state.SourceNamed(m_folder / L"recording-001.cine");
    ASSERT_TRUE(opened);
    EXPECT_EQ(&m_state.Source(), opened);
}

TEST_F(MainWindowFormTest, TheMouseSeesThroughOtherBalloons)
{
    m_window->Exam().Report(NoticeKind::warning, L"This tells of no recording.");
    HandleMessages();
    const HWND tip = test_support::ShownTip();
    ASSERT_TRUE(tip);
    CRect area;
    GetWindowRect(tip, &area);
    EXPECT_NE(WindowFromPoint(area.CenterPoint()), tip);
    SendMessageW(tip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
    EXPECT_EQ(m_state.Current(), 1u);
}

TEST_F(MainWindowFormTest, TheListOfKeysNeverScrollsSidewaysNorCutsATextOff)
{
    Open(WindowForm::window);
    m_window->MoveWindow(0, 0, 800, 600);
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
        const HWND list =
            FindWindowExW(m_window->Keys().GetSafeHwnd(), nullptr, WC_LISTVIEWW, nullptr);
        ASSERT_TRUE(list);
        EXPECT_EQ(GetWindowLongPtrW(list, GWL_STYLE) & WS_HSCROLL, 0) << language;
        const auto rows = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
        EXPECT_GT(rows, 50);
        for (int column = 0; column < 3; ++column)
            for (int row = 0; row < rows; ++row) {
                wchar_t text[200] = {};
                LVITEMW item = {};
                item.iSubItem = column;
                item.pszText = text;
                item.cchTextMax = 200;
                SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                             reinterpret_cast<LPARAM>(&item));
                EXPECT_LT(
                    SendMessageW(list, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text)),
                    SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0))
                    << text;
            }
        m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    }
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"en"));
}
