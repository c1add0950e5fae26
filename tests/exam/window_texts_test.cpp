// No text of either language is cut, in windows of several sizes and resolutions.
#include "app/SampleTree.h"
#include "base/DarkDialog.h"
#include "base/Dpi.h"
#include "commands/Commands.h"
#include "record/PixelCanvas.h"
#include "screen/Screen.h"
#include "service/PatientForm.h"
#include "study/StudyTexts.h"
#include "window/MainWindow.h"
#include "window/MenuLook.h"
#include "window/Menus.h"
#include "WrittenTexts.h"

#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

class WindowTextsTest : public testing::TestWithParam<Screen>
{
protected:
    WindowTextsTest()
    {
        AssumeDpi(GetParam().dpi);
        InstallStores(m_folder.Path());
        EXPECT_TRUE(zel_string_convert::LoadTable(StringTableFolder()));
        EXPECT_TRUE(pro_actions::LoadVocabulary(VocabularyFile()));
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"})
            EXPECT_EQ(m_state.AddRecording(name), L"");
        m_state.AddSimulation(simulation::ProbeShape::linear);
        m_window.emplace(m_state, m_folder.Path());
        EXPECT_TRUE(m_window->Open(WindowForm::console));
        EXPECT_TRUE(m_window->OpenPanel());
        s_app.m_pMainWnd = &*m_window;
        m_window->TakeForm(WindowForm::window, CRect(CPoint(0, 0), GetParam().size));
    }
    ~WindowTextsTest() override
    {
        m_window->DestroyWindow();
        s_app.m_pMainWnd = nullptr;
        m_window.reset();
        for (MSG next; PeekMessage(&next, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessage(&next);
        utilsExam::AppExiting = false;
        pro_actions::ClearVocabulary();
        zel_string_convert::ClearTable();
        AssumeDpi(0);
    }

    // Does something in each language.
    void InEachLanguage(const std::function<void()>& action)
    {
        for (int language = 0; language < 2; ++language) {
            action();
            m_state.NextLanguage();
        }
    }

    void ExpectWhole(CSize size, const std::function<void(CDC&)>& draw)
    {
        std::size_t texts = 0;
        for (const WrittenText& text : TextsDrawn(size, draw)) {
            ++texts;
            EXPECT_TRUE(text.IsWhole()) << text;
        }
        EXPECT_GT(texts, 0u);
    }

    void ExpectWholeScreen()
    {
        ExpectWhole(m_state.Layout().client,
                    [&](CDC& dc) { DrawScreen(dc, m_state, ScreenUse::display); });
    }

    int Scaled(int pixels) const { return MulDiv(pixels, GetParam().dpi, 96); }

    // The size of a text in the application's font.
    CSize SizeOf(const CString& text) const
    {
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        const ScopedFont font(dc, m_state.Layout().Scaled(ScopedFont::textSize), FW_NORMAL);
        return dc.GetTextExtent(text);
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;
    std::optional<MainWindow> m_window;
};

// Adds a mark of each kind with values to the frame or the strip on display.
void AddMarks(ExamState& state, std::initializer_list<MarkKind> kinds, const CRect& area)
{
    for (const MarkKind kind : kinds) {
        const CPoint at = area.CenterPoint();
        state.ChooseMark(kind, L"Liver");
        state.Press(MK_LBUTTON, at);
        MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, at + CPoint(60, 40));
        MouseCapture::HandleMouse(WM_LBUTTONUP, 0, at + CPoint(60, 40));
    }
}

} // namespace

TEST_P(WindowTextsTest, TheFactsOfEveryImageAreWhole)
{
    InEachLanguage([&] {
        for (std::size_t image = 0; image < 3; ++image) {
            m_state.SelectImage(image);
            m_state.ChangeSpeed(1);
            utilsExam::ResearchMode = image == 0;
            m_state.SetRecording(RunningRecording{true, 12345});
            if (image == 1) m_state.FlipDepth();
            m_state.FlipSides();
            m_state.Rotate(90);
            m_state.MoveGreyWindow(-8, -8);
            ExpectWholeScreen();
            m_state.SetRecording({});
            m_state.ChangeSpeed(-1);
        }
        utilsExam::ResearchMode = false;
    });
}

TEST_P(WindowTextsTest, MarksAndTheirValuesAreWhole)
{
    for (const MarkKind kind :
         {MarkKind::distance, MarkKind::angle, MarkKind::rectangle, MarkKind::ellipse,
          MarkKind::trace, MarkKind::text, MarkKind::arrow}) {
        AddMarks(m_state, {kind}, m_state.Layout().image);
        InEachLanguage([&] { ExpectWholeScreen(); });
        m_state.RemoveShown();
    }
}

TEST_P(WindowTextsTest, TheStripIsWhole)
{
    m_state.SelectImage(2);
    const ULONGLONG end = GetTickCount64() + 60'000;
    while (m_state.Source().Frames() < 6 && GetTickCount64() < end)
        Sleep(5); // its own thread makes them
    m_state.StepFrames(m_state.FramesBehind());
    m_state.SetFrozen(true);
    m_state.ShowStrip(true);
    ASSERT_TRUE(m_state.Strip().HasFlow());
    for (const MarkKind kind :
         {MarkKind::velocity, MarkKind::time, MarkKind::heartRate, MarkKind::flow}) {
        AddMarks(m_state, {kind}, m_state.Layout().strip);
        InEachLanguage([&] { ExpectWholeScreen(); });
        m_state.RemoveShown();
    }
    m_state.ShowStrip(false);
    m_state.SelectImage(0);
}

TEST_P(WindowTextsTest, TheDepthIsWhole)
{
    InEachLanguage([&] {
        const CSize text = SizeOf(LengthText(1234.5).c_str());
        EXPECT_LE(text.cx, m_state.Layout().badge.Width());
        EXPECT_LE(text.cy, m_state.Layout().badge.Height());
        EXPECT_LE(SizeOf(GetStr("exam.status.hint")).cx, m_state.Layout().statusRow.Width());
    });
}

TEST_P(WindowTextsTest, ThePanelsButtonsAreWhole)
{
    EXPECT_GT(m_window->Panel().Buttons().size(), 10u);
    InEachLanguage([&] {
        for (int form = 0; form < 2; ++form) { // floating and docked
            m_window->SendMessage(WM_KEYDOWN, 'J', 1);
            CRect client;
            m_window->Panel().GetClientRect(&client);
            ExpectWhole(client.Size(), [&](CDC& dc) { m_window->Panel().Draw(dc); });
        }
    });
}

TEST_P(WindowTextsTest, EachItemOfTheMenusIsWhole)
{
    InEachLanguage([&] {
        int bar = 0;
        const HMENU menu = GetMenu(m_window->GetSafeHwnd());
        const auto expectWhole = [&](HMENU of, int place) {
            MENUITEMINFOW info = {};
            info.cbSize = sizeof info;
            info.fMask = MIIM_DATA;
            GetMenuItemInfoW(of, static_cast<UINT>(place), TRUE, &info);
            MEASUREITEMSTRUCT measured = {};
            measured.itemData = info.dwItemData;
            MeasureMenuItem(measured, GetParam().dpi);
            const CSize size(static_cast<int>(measured.itemWidth),
                             static_cast<int>(measured.itemHeight));
            ExpectWhole(size, [&](CDC& dc) {
                DRAWITEMSTRUCT drawn = {};
                drawn.hDC = dc.GetSafeHdc();
                drawn.rcItem = CRect(CPoint(0, 0), size);
                drawn.itemData = info.dwItemData;
                DrawMenuItem(drawn, GetParam().dpi);
            });
            return size.cx;
        };
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            bar += expectWhole(menu, i);
            const HMENU popup = GetSubMenu(menu, i);
            for (int item = 0; item < GetMenuItemCount(popup); ++item)
                EXPECT_LE(expectWhole(popup, item), GetParam().size.cx);
        }
        EXPECT_LE(bar, m_state.Layout().client.cx);
    });
}

TEST_P(WindowTextsTest, TipsAreNotWiderThanTheWindow)
{
    InEachLanguage([&] {
        std::vector<CString> tips = {GetStr("exam.tip.button"), GetStr("exam.tip.rotary")};
        for (const Command& command : Commands())
            if (command.text.tip) tips.push_back(TipOf(command));
        for (const CString& tip : tips)
            EXPECT_LE(SizeOf(tip).cx, GetParam().size.cx - Scaled(20))
                << base::Utf8FromWide(tip.GetString());
    });
}

TEST_P(WindowTextsTest, TheListOfKeysShowsEachCell)
{
    InEachLanguage([&] {
        m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
        const HWND list = FindWindowExW(m_window->Keys().GetSafeHwnd(), nullptr, WC_LISTVIEWW, L"");
        ASSERT_NE(list, nullptr);
        const auto rows = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
        EXPECT_GT(rows, 40);
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < 3; ++column) {
                const std::wstring cell = CellOf(list, row, column);
                const auto width = static_cast<int>(SendMessageW(
                    list, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(cell.c_str())));
                EXPECT_LE(width,
                          SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0))
                    << base::Utf8FromWide(cell);
            }
        m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    });
}

TEST_P(WindowTextsTest, ThePictureOfTheAboutBoxHasTheSizeOfTheResolution)
{
    constexpr int ownSize = 64; // at 96 dpi
    m_window->SendMessage(WM_KEYDOWN, 'A', 1);
    const HWND about = m_window->Exam().Service().About().GetSafeHwnd();
    const HWND shown = FindWindowExW(about, nullptr, L"STATIC", nullptr);
    const LRESULT picture = SendMessageW(shown, STM_GETIMAGE, IMAGE_BITMAP, 0);
    BITMAP facts = {};
    GetObjectW(reinterpret_cast<HGDIOBJ>(picture), sizeof facts, &facts);
    EXPECT_EQ(CSize(facts.bmWidth, facts.bmHeight), CSize(Scaled(ownSize), Scaled(ownSize)));
    CRect area;
    GetClientRect(shown, &area);
    EXPECT_GE(area.Height(), facts.bmHeight);
    m_window->SendMessage(WM_KEYDOWN, 'A', 1);
}

namespace {

// Looks at the dialog that opens next, and closes it.
const std::function<void(HWND)>* s_look = nullptr;

void CALLBACK LookAtDialog(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND dialog = FindWindowW(L"#32770", nullptr);
    if (!dialog) return;
    KillTimer(nullptr, timer);
    (*s_look)(dialog);
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

void LookAtNextDialog(const std::function<void(HWND)>& look)
{
    s_look = &look;
    SetTimer(nullptr, 0, 50, LookAtDialog);
}

} // namespace

TEST_P(WindowTextsTest, ThePatientsFormIsWhole)
{
    constexpr int problemText = 99;
    InEachLanguage([&] {
        int looked = 0;
        const std::function<void(HWND)> look = [&](HWND form) {
            ++looked;
            SetDlgItemTextW(form, problemText, GetStr("exam.patient.wrongbirth"));
            ExpectWholeControls(form, 0);
            CRect area;
            GetWindowRect(form, &area);
            EXPECT_LE(area.Width(), GetParam().size.cx);
            EXPECT_LE(area.Height(), GetParam().size.cy);
        };
        LookAtNextDialog(look);
        m_window->Exam().EditPatient();
        EXPECT_EQ(looked, 1);
    });
}

namespace {

struct TableText
{
    std::string id;
    std::string text;
};

// Every text of the tables in both languages, with something for each of its conversions.
std::vector<TableText> TableTexts()
{
    const std::regex unit("<trans-unit id=\"([^\"]+)\">\\s*<source>([^<]*)</source>\\s*"
                          "<target>([^<]*)</target>");
    std::vector<TableText> texts;
    for (const auto& file : std::filesystem::directory_iterator(StringTableFolder())) {
        std::ifstream in(file.path(), std::ios::binary);
        const std::string all(std::istreambuf_iterator<char>(in), {});
        for (std::sregex_iterator each(all.begin(), all.end(), unit);
             each != std::sregex_iterator(); ++each)
            for (const std::size_t language : {2u, 3u}) {
                std::string text =
                    std::regex_replace((*each)[language].str(), std::regex("%[.0-9]*[df]"), "1234");
                text = std::regex_replace(text, std::regex("%s"), "movie-001.avi");
                texts.push_back({(*each)[1].str(), text});
            }
    }
    return texts;
}

// True for texts that stand in a place of their own, which another test looks at, or in files.
bool HasPlaceOfItsOwn(const std::string& id)
{
    static const std::regex others(
        "(exam\\.(button|command|menu|tip|key|label|value|probe|mode|sample|answer|form|about)\\..*"
        ")"
        "|exam\\.keys.*|exam\\.status\\..*|exam\\.close\\..*|exam\\.recovery\\..*"
        "|exam\\.archive\\.(replace|open)|exam\\.remove\\.(file|marks)"
        "|exam\\.patient\\..*|study\\..*|exam\\.record\\.mark|exam\\.service.*");
    return std::regex_match(id, others);
}

} // namespace

TEST_P(WindowTextsTest, EachSentenceFindsRoomInTheStatusLine)
{
    const int room = m_state.Layout().status.Width() - 2 * m_state.Layout().Scaled(16);
    int sentences = 0;
    for (const TableText& text : TableTexts()) {
        if (HasPlaceOfItsOwn(text.id)) continue;
        ++sentences;
        EXPECT_LE(SizeOf(base::WideFromUtf8(text.text).c_str()).cx, room)
            << text.id << ": " << text.text;
    }
    EXPECT_GT(sentences, 60);
}

TEST_P(WindowTextsTest, QuestionsAreWhole)
{
    int asked = 0;
    for (const TableText& text : TableTexts()) {
        static const std::regex questions(
            "exam\\.(archive\\.(replace|open)|remove\\.(file|marks)|(close|recovery)\\..*)");
        if (!std::regex_match(text.id, questions)) continue;
        ++asked;
        int looked = 0;
        const std::function<void(HWND)> look = [&](HWND box) {
            ++looked;
            ExpectWholeControls(box, 0);
        };
        LookAtNextDialog(look);
        static_cast<ExamWindow&>(m_window->Exam().Window())
            .Ask(base::WideFromUtf8(text.text).c_str());
        EXPECT_EQ(looked, 1);
    }
    EXPECT_GT(asked, 5);
}

INSTANTIATE_TEST_SUITE_P(OfEachSize, WindowTextsTest, testing::ValuesIn(screens));
