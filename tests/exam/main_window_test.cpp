// The main window as the user has it: ways out of it, and what the screen shows while frames run.
#include "base/Palette.h"
#include "base/ScreenLayout.h"
#include "commands/Commands.h"
#include "record/MovieFile.h"
#include "record/PixelCanvas.h"
#include "window/MainWindow.h"

#include <base/GdiHandles.h>
#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IProAgent.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

class MainWindowTest : public testing::Test
{
protected:
    MainWindowTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        EXPECT_TRUE(
            pro_actions::LoadVocabulary(test_support::BesideProgram(L"sample\\actions.xml")));
        qor_utils::SetStoreFolder(qor_utils::imagesStore,
                                  test_support::BesideProgram(L"sample\\images"));
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
        s_app.WriteProfileString(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"})
            EXPECT_EQ(m_state.AddRecording(name), L"");
        m_state.SelectImage(1);
        Open(WindowForm::console);
    }

    void Open(WindowForm form)
    {
        Close();
        m_window.emplace(m_state, m_folder.Path());
        EXPECT_TRUE(m_window->Open(form));
        EXPECT_TRUE(m_window->OpenPanel());
        s_app.m_pMainWnd = &*m_window;
    }

    void Close()
    {
        if (m_window && m_window->GetSafeHwnd()) m_window->DestroyWindow();
        s_app.m_pMainWnd = nullptr;
        m_window.reset();
        HandleMessages();
        utilsExam::AppExiting = false;
    }

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
    ~MainWindowTest() override
    {
        Close();
        pro_actions::ClearVocabulary();
        zel_string_convert::ClearTable();
    }

    static void HandleMessages()
    {
        for (MSG next; PeekMessage(&next, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessage(&next);
    }

    void RecordMovie(int frames)
    {
        m_window->Exam().ToggleRecording(true);
        for (int i = 0; i < frames; ++i)
            m_window->Exam().Advance();
        ASSERT_TRUE(m_state.Recording());
    }

    void ExpectWholeMovie(int frames)
    {
        EXPECT_FALSE(m_state.Recording());
        EXPECT_EQ(FindMovieProblem(m_folder / L"movie-001.avi", frames), L"");
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    std::optional<MainWindow> m_window;
};

// Answers the next message box of this thread.
UINT s_answer = 0;
int s_boxes = 0;

// The colours of the box's ground and of its fields, as it answers those that ask.
COLORREF s_middle = 0;
COLORREF s_edit = 0;

COLORREF ColourOf(HWND box, UINT question)
{
    const base::WindowContext context(box);
    const LRESULT brush = SendMessageW(box, question, reinterpret_cast<WPARAM>(context.get()),
                                       reinterpret_cast<LPARAM>(box));
    LOGBRUSH look = {};
    GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof look, &look);
    EXPECT_EQ(GetTextColor(context.get()), palette::text);
    return look.lbColor;
}

void CALLBACK Answer(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND box = FindWindowW(L"#32770", nullptr);
    if (!box) return;
    KillTimer(nullptr, timer);
    ++s_boxes;
    s_middle = ColourOf(box, WM_CTLCOLORDLG);
    s_edit = ColourOf(box, WM_CTLCOLOREDIT);
    PostMessageW(box, WM_COMMAND, s_answer, 0);
}

void AnswerNextBox(UINT answer)
{
    s_answer = answer;
    SetTimer(nullptr, 0, 50, Answer);
}

} // namespace

TEST_F(MainWindowTest, TheConsoleIsFixedAndItsPanelStandsBelow)
{
    EXPECT_EQ(Area(), CRect(0, 0, 1024, 768));
    EXPECT_EQ(m_state.Layout(), ConsoleLayout());
    EXPECT_EQ(PlaceOf(m_window->Panel()).Size(), CSize(1024, 200));
    EXPECT_NE(m_window->GetStyle() & WS_POPUP, 0u);
}

TEST_F(MainWindowTest, TheWindowHasATitleAndABorderAndItsPartsFollowItsSize)
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

TEST_F(MainWindowTest, TheWindowIsNeverSmallerThanItsLeastSize)
{
    Open(WindowForm::window);
    MINMAXINFO info = {};
    m_window->SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(CPoint(info.ptMinTrackSize), CPoint(800, 600));
}

TEST_F(MainWindowTest, TheWindowComesBackWhereItWas)
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

TEST_F(MainWindowTest, AWindowThatWouldBeOffTheScreenComesBackOntoIt)
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

TEST_F(MainWindowTest, TheWindowFollowsTheResolutionOfItsScreen)
{
    Open(WindowForm::window);
    CRect place(0, 0, 1260, 980);
    m_window->SendMessage(WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(Area(), place);
    EXPECT_EQ(m_state.Layout().scale, 1.5);
    EXPECT_EQ(m_state.Layout().client, Client());
}

TEST_F(MainWindowTest, APressOnTheTimelineShowsItsFrame)
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

TEST_F(MainWindowTest, TheWheelZoomsAtThePointerAndADragMovesTheImage)
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

namespace {

// The texts of a menu's items, and of the menus below them.
std::vector<CString> TextsOf(HMENU menu)
{
    std::vector<CString> texts;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200] = {};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 200, MF_BYPOSITION);
        texts.emplace_back(text);
        if (const HMENU popup = GetSubMenu(menu, i)) {
            const std::vector<CString> below = TextsOf(popup);
            texts.insert(texts.end(), below.begin(), below.end());
        }
    }
    return texts;
}

UINT StateOfItem(HMENU popup, const CString& text)
{
    for (int i = 0; i < GetMenuItemCount(popup); ++i) {
        wchar_t found[200] = {};
        GetMenuStringW(popup, static_cast<UINT>(i), found, 200, MF_BYPOSITION);
        if (text == found)
            return GetMenuState(popup, static_cast<UINT>(i), MF_BYPOSITION) &
                   (MF_CHECKED | MF_GRAYED);
    }
    return UINT_MAX;
}

} // namespace

TEST_F(MainWindowTest, TheMenusHoldEachCommandWithItsKeyInEachLanguage)
{
    EXPECT_EQ(GetMenu(m_window->GetSafeHwnd()), nullptr); // a console has none
    Open(WindowForm::window);
    std::vector<CString> before;
    for (int language = 0; language < 2; ++language) {
        const std::vector<CString> texts = TextsOf(GetMenu(m_window->GetSafeHwnd()));
        EXPECT_NE(texts, before);
        for (const Command& command : Commands()) {
            if (command.menu == Menu::none) continue;
            const CString text = GetStr(command.text.name) + L"\t" + KeyName(command);
            EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << command.text.name;
        }
        before = texts;
        m_state.NextLanguage();
    }
}

TEST_F(MainWindowTest, MenusTickWhatIsOnAndGreyWhatCannotBeDone)
{
    Open(WindowForm::window);
    m_state.ChooseMark(MarkKind::distance);
    m_state.SetRecording(RunningRecording{true, 0});
    const auto stateOf = [&](int menu, UINT key) {
        const HMENU popup = GetSubMenu(GetMenu(m_window->GetSafeHwnd()), menu);
        m_window->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup));
        const Command& command = *CommandOfKey(key);
        return StateOfItem(popup, GetStr(command.text.name) + L"\t" + KeyName(command));
    };
    EXPECT_EQ(stateOf(2, '1'), UINT{MF_CHECKED});
    EXPECT_EQ(stateOf(2, '2'), UINT{MF_UNCHECKED});
    EXPECT_EQ(stateOf(0, 'C'), UINT{MF_GRAYED});
    EXPECT_EQ(stateOf(0, 'V'), UINT{MF_CHECKED});
    EXPECT_EQ(stateOf(1, VK_OEM_PLUS), 0u); // the gain is a number
    m_state.SetRecording({});
}

TEST_F(MainWindowTest, MenusTickTheFormOfThePanelAndTheWholeImage)
{
    Open(WindowForm::window);
    const auto isTicked = [&](const char* nameKey) {
        const HMENU popup = GetSubMenu(GetMenu(m_window->GetSafeHwnd()), 3);
        m_window->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup));
        const auto found = std::ranges::find_if(Commands(), [&](const Command& command) {
            return command.text.name && CString(command.text.name) == CString(nameKey);
        });
        return StateOfItem(popup, GetStr(nameKey) + L"\t" + KeyName(*found)) == MF_CHECKED;
    };
    const auto ticks = [&] {
        return std::vector<bool>{isTicked("exam.command.panel"), isTicked("exam.command.float"),
                                 isTicked("exam.command.lock")};
    };
    EXPECT_EQ(ticks(), (std::vector<bool>{true, false, true})); // docked
    m_window->SendMessage(WM_KEYDOWN, 'J', 1);
    EXPECT_EQ(ticks(), (std::vector<bool>{true, true, true})); // floating
    m_window->SendMessage(WM_KEYDOWN, 'K', 1);
    EXPECT_FALSE(ticks()[0]); // hidden
    m_window->SendMessage(WM_KEYDOWN, 'K', 1);
    static_cast<ExamWindow&>(m_window->Exam().Window()).TogglePanelLock();
    EXPECT_FALSE(ticks()[2]);
    EXPECT_TRUE(isTicked("exam.command.zoom.whole"));
    m_state.ZoomAt(2, {100, 100});
    EXPECT_FALSE(isTicked("exam.command.zoom.whole"));
}

TEST_F(MainWindowTest, ALetterChoosesTheMenuThatUnderlinesIt)
{
    Open(WindowForm::window);
    const auto menu = reinterpret_cast<LPARAM>(GetMenu(m_window->GetSafeHwnd()));
    EXPECT_EQ(m_window->SendMessage(WM_MENUCHAR, 'v', menu), MAKELRESULT(3, MNC_EXECUTE));
    EXPECT_EQ(HIWORD(m_window->SendMessage(WM_MENUCHAR, 'x', menu)), MNC_IGNORE);
}

TEST_F(MainWindowTest, MenusAreWrittenInTheColoursOfTheApplication)
{
    Open(WindowForm::window);
    MEASUREITEMSTRUCT measured = {};
    measured.CtlType = ODT_MENU;
    m_window->SendMessage(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&measured));
    EXPECT_GT(measured.itemWidth, 100u);
    PixelCanvas canvas(CSize(300, 40));
    DRAWITEMSTRUCT drawn = {};
    drawn.CtlType = ODT_MENU;
    drawn.hDC = canvas.Context();
    drawn.rcItem = CRect(0, 0, 300, 40);
    drawn.itemState = ODS_SELECTED | ODS_CHECKED;
    m_window->SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&drawn));
    EXPECT_EQ(canvas.Context().GetPixel(0, 0), palette::line);
    std::vector<unsigned int> pixels;
    canvas.Cut(CRect(0, 0, 300, 40), pixels);
    const auto holds = [&](COLORREF colour) {
        const unsigned int wanted =
            RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)); // blue is the lowest byte
        return std::any_of(pixels.begin(), pixels.end(),
                           [&](unsigned int pixel) { return (pixel & 0xFFFFFF) == wanted; });
    };
    EXPECT_TRUE(holds(palette::text));
    EXPECT_TRUE(holds(palette::accent)); // the tick
}

TEST_F(MainWindowTest, AnItemShowsThePictureOfItsCommandAndAGreyOneWhenItIsNotPossible)
{
    Open(WindowForm::window);
    const auto found = std::ranges::find_if(
        Commands(), [](const Command& command) { return command.picture != nullptr; });
    ASSERT_NE(found, Commands().end());
    DRAWITEMSTRUCT drawn = {};
    drawn.CtlType = ODT_MENU;
    drawn.itemData = static_cast<ULONG_PTR>(found - Commands().begin());
    drawn.rcItem = CRect(0, 0, 300, 24);
    const auto colours = [&](UINT state) {
        PixelCanvas canvas(CSize(300, 24));
        drawn.hDC = canvas.Context();
        drawn.itemState = state;
        m_window->SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&drawn));
        std::vector<unsigned int> pixels;
        canvas.Cut(CRect(2, 2, 22, 22), pixels);
        int picture = 0, coloured = 0;
        for (const unsigned int pixel : pixels) {
            const auto [least, most] =
                std::minmax({pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16 & 0xFF});
            const COLORREF colour = RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
            if (colour == palette::header) continue;
            ++picture;
            if (most - least > 2) ++coloured;
        }
        return std::pair(picture, coloured);
    };
    const auto [picture, coloured] = colours(0);
    EXPECT_GT(picture, 25); // a line and its two ends
    EXPECT_GT(coloured, 15);
    const auto [grey, colouredGrey] = colours(ODS_GRAYED);
    EXPECT_GT(grey, 25);
    EXPECT_EQ(colouredGrey, 0);
}

TEST_F(MainWindowTest, AnItemOfAMenuCarriesItsCommandOut)
{
    Open(WindowForm::window);
    const HMENU measure = GetSubMenu(GetMenu(m_window->GetSafeHwnd()), 2);
    m_window->SendMessage(WM_COMMAND, GetMenuItemID(measure, 0));
    EXPECT_EQ(m_state.Marks().Chosen(), MarkKind::distance);
    m_window->SendMessage(WM_COMMAND, 1000 + Commands().size()); // there is no such item
}

TEST_F(MainWindowTest, AHiddenPanelGivesItsRoomToTheImage)
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

TEST_F(MainWindowTest, AFloatingPanelIsAWindowOfItsOwnAndComesBackWhereItWas)
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

TEST_F(MainWindowTest, ResettingDocksAndLocksThePanel)
{
    Open(WindowForm::window);
    m_window->SendMessage(WM_KEYDOWN, 'J', 1);
    m_window->Panel().SetLocked(false);
    static_cast<ExamWindow&>(m_window->Exam().Window()).ResetPanel();
    EXPECT_TRUE(m_window->Panel().IsLocked());
    EXPECT_EQ(PlaceOf(m_window->Panel()), m_state.Layout().controlPanel);
}

TEST_F(MainWindowTest, TheListOfKeysOpensAndClosesByItsKey)
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

TEST_F(MainWindowTest, TheKeysOfTheNumberPadCount)
{
    Open(WindowForm::window);
    const int before = m_state.Gain();
    m_window->SendMessage(WM_KEYDOWN, VK_ADD, 1);
    EXPECT_EQ(m_state.Gain(), before + 1);
    m_window->SendMessage(WM_KEYDOWN, VK_SUBTRACT, 1);
    EXPECT_EQ(m_state.Gain(), before);
}

TEST_F(MainWindowTest, ZoomingDoesNotEndAMovie)
{
    RecordMovie(1);
    m_state.ZoomAt(2, {300, 300});
    m_window->Exam().Advance();
    m_state.ShowWhole();
    m_window->Exam().EndRecording();
    ExpectWholeMovie(2);
}

TEST_F(MainWindowTest, AMarkIsDrawnAndMovedWhereItIsShownInAMovedWindow)
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

TEST_F(MainWindowTest, EveryWayOutFinishesTheRecording)
{
    RecordMovie(3);
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(m_window->GetSafeHwnd(), nullptr);
    ExpectWholeMovie(3);
}

TEST_F(MainWindowTest, TheEndOfTheSessionFinishesTheRecording)
{
    RecordMovie(3);
    EXPECT_TRUE(m_window->SendMessage(WM_QUERYENDSESSION));
    ExpectWholeMovie(3);
}

TEST_F(MainWindowTest, AForcedEndOfTheSessionFinishesTheRecording)
{
    RecordMovie(2);
    m_window->SendMessage(WM_ENDSESSION, FALSE);
    EXPECT_TRUE(m_state.Recording()); // the session goes on
    m_window->SendMessage(WM_ENDSESSION, TRUE);
    ExpectWholeMovie(2);
}

TEST_F(MainWindowTest, ClosingAsksAboutMeasurementsAndGoesOnWithANo)
{
    m_state.Marks().Choose(MarkKind::distance);
    m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
    MouseCapture::Unlock(); // there is no study open that could keep the mark
    s_boxes = 0;
    AnswerNextBox(IDNO);
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(s_boxes, 1);
    EXPECT_EQ(s_middle, palette::panel);
    EXPECT_EQ(s_edit, palette::header);
    ASSERT_NE(m_window->GetSafeHwnd(), nullptr);
    AnswerNextBox(IDYES);
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(s_boxes, 2);
    EXPECT_EQ(m_window->GetSafeHwnd(), nullptr);
}

TEST_F(MainWindowTest, ADialogGetsTheCursorFromTheTool)
{
    m_state.SetInput(InputTrackball);
    m_state.Marks().Choose(MarkKind::distance);
    ASSERT_TRUE(MouseCapture::IsLocked());
    s_boxes = 0;
    AnswerNextBox(IDNO);
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(s_boxes, 1);
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_TRUE(m_window->IsWindowEnabled());
    m_state.SetInput(InputPointer);
}

TEST_F(MainWindowTest, TheAgentOfAnUnattendedRunTakesTheQuestions)
{
    class Agent : public IProAgent
    {
    public:
        Agent() { m_agent = this; }

    private:
        void Execute() override {}
    };
    Agent agent;
    m_state.Marks().Choose(MarkKind::distance);
    m_state.Marks().Press(MK_LBUTTON, m_state.Layout().image.CenterPoint());
    MouseCapture::Unlock();
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(agent.GetCount(), 1);
    EXPECT_EQ(m_window->GetSafeHwnd(), nullptr);
}

TEST_F(MainWindowTest, AHeldKeyRecordsOnce)
{
    constexpr LPARAM repeated = 0x40000001;
    m_window->SendMessage(WM_KEYDOWN, 'C', 1);
    for (int i = 0; i < 5; ++i)
        m_window->SendMessage(WM_KEYDOWN, 'C', repeated);
    EXPECT_TRUE(m_state.Recording());
}

namespace {

// Pixels of the windows over the image that look the same on every frame.
std::vector<CPoint> StablePixels(MainWindow& window)
{
    const auto inside = [](CWnd& overlay, CPoint pixel) {
        overlay.ClientToScreen(&pixel);
        return pixel;
    };
    LoopDial& dial = window.OverImage().Dial();
    CRect area;
    dial.GetClientRect(&area);
    std::vector<CPoint> pixels = {inside(dial, {area.CenterPoint().x, 2}),
                                  inside(dial, {2, area.CenterPoint().y})};
    ToolBar& tools = window.OverImage().Tools();
    for (std::size_t i = 0; i < tools.Buttons().size(); ++i)
        pixels.push_back(inside(tools, tools.AreaOf(i).CenterPoint()));
    return pixels;
}

std::vector<COLORREF> OnScreen(const std::vector<CPoint>& pixels)
{
    const base::WindowContext screen(nullptr);
    const CRect part(CPoint(0, 0), ConsoleLayout().client);
    const base::MemoryContext memory(CreateCompatibleDC(screen.get()));
    const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), part.Width(), part.Height()));
    const base::Selection selection(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, part.Width(), part.Height(), screen.get(), 0, 0, SRCCOPY);
    std::vector<COLORREF> colours;
    for (const CPoint& pixel : pixels)
        colours.push_back(GetPixel(memory.get(), pixel.x, pixel.y));
    return colours;
}

} // namespace

TEST_F(MainWindowTest, NoScreenshotMissesAWindowOverTheImageWhileFramesRun)
{
    RedrawWindow(m_window->GetSafeHwnd(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    HandleMessages();
    const std::vector<CPoint> pixels = StablePixels(*m_window);
    const std::vector<COLORREF> expected = OnScreen(pixels);
    for (const COLORREF colour : expected)
        ASSERT_NE(colour, RGB(0, 0, 0)); // what is below them is black
    constexpr int screenshots = 30;
    int missing = 0;
    std::atomic<bool> done = false;
    {
        const std::jthread watcher([&] {
            for (int i = 0; i < screenshots; ++i) {
                missing += OnScreen(pixels) != expected;
                Sleep(23);
            }
            done = true;
        });
        while (!done) {
            m_state.StepFrames(1);
            HandleMessages();
        }
    }
    EXPECT_EQ(missing, 0) << "of " << screenshots;
}

TEST_F(MainWindowTest, AClickOnItsMessageOpensAFinishedRecording)
{
    Open(WindowForm::window);
    m_window->Exam().ToggleRecording(false);
    m_window->Exam().Advance();
    m_window->Exam().EndRecording();
    const CPoint message = m_state.Layout().status.CenterPoint();
    m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(message.x, message.y));
    EXPECT_EQ(m_state.Source().Frames(), 1); // the other recording has four
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.image.opened", (m_folder / L"recording-001.cine").c_str()));
}
