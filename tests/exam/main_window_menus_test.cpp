// The main window has menus, and asks questions.
#include "base/Palette.h"
#include "commands/Commands.h"
#include "MainWindowFixture.h"
#include "record/PixelCanvas.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IProAgent.h>
#include <Utils_Statics/MouseCapture.h>

#include <algorithm>
#include <climits>
#include <tuple>
#include <vector>

using namespace exam;

namespace {

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
        unsigned int brightest = 0;
        for (const unsigned int pixel : pixels) {
            const auto [least, most] =
                std::minmax({pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16 & 0xFF});
            const COLORREF colour = RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
            if (colour == palette::header) continue;
            ++picture;
            if (most - least > 2) ++coloured;
            brightest = std::max(brightest, most);
        }
        return std::tuple(picture, coloured, brightest);
    };
    const auto [picture, coloured, bright] = colours(0);
    EXPECT_GT(picture, 25); // a line and its two ends
    EXPECT_GT(coloured, 15);
    EXPECT_GT(bright, 200u);
    const auto [grey, colouredGrey, dim] = colours(ODS_GRAYED);
    EXPECT_GT(grey, 25);
    EXPECT_EQ(colouredGrey, 0);
    EXPECT_LE(dim, 150u);
    EXPECT_GT(dim, 50u);
}

TEST_F(MainWindowTest, AnItemOfAMenuCarriesItsCommandOut)
{
    Open(WindowForm::window);
    const HMENU measure = GetSubMenu(GetMenu(m_window->GetSafeHwnd()), 2);
    m_window->SendMessage(WM_COMMAND, GetMenuItemID(measure, 0));
    EXPECT_EQ(m_state.Marks().Chosen(), MarkKind::distance);
    m_window->SendMessage(WM_COMMAND, 1000 + Commands().size()); // there is no such item
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
