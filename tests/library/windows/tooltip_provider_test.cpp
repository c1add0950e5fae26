// CToolTipProvider, read back from the tooltip control.
#include <gtest/gtest.h>
#include <test_support/Messages.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TipReader.h>
#include <Utils_Statics/CToolTipProvider.h>

#include <afxwin.h>

#include <memory>
#include <type_traits>

using test_support::MessageOnlyWindows;
using test_support::Pump;
using test_support::PumpUntil;
using test_support::ShownTip;
using test_support::ShowsText;
using test_support::TipText;
using test_support::TipWindows;
using test_support::TitleWatch;

#ifndef _WIN64
static_assert(sizeof(TOOLINFOW) == 48);
static_assert(sizeof(CToolTipProvider) == 4 + 4 + 48 + 4); // virtual table, window, tool, timer
#endif
static_assert(std::has_virtual_destructor_v<CToolTipProvider>);

namespace {

CWinApp application(L"tooltip_provider_test");

constexpr UINT_PTR tipTimer = 8345;
constexpr POINT at = {300, 200};

void Show(CToolTipProvider& provider, const wchar_t* text, unsigned int timeMs = 60000)
{
    provider.SetToolTip(text, L"title", at, CToolTipProvider::iconInformation, timeMs);
    Pump();
}

class ToolTipProviderTest : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(TipWindows().empty());
        EXPECT_TRUE(MessageOnlyWindows().empty());
    }

    TitleWatch m_titles;
};

} // namespace

TEST_F(ToolTipProviderTest, ShowsTextTitleAndIcon)
{
    CToolTipProvider provider;
    EXPECT_TRUE(TipWindows().empty()); // nothing before the first tip
    using Provider = CToolTipProvider;
    const Provider::IconType icons[] = {Provider::iconNone, Provider::iconInformation,
                                        Provider::iconWarning, Provider::iconError};
    for (const Provider::IconType icon : icons) {
        provider.SetToolTip(L"the text", L"the title", at, icon, 60000);
        Pump();
        const HWND tip = ShownTip();
        ASSERT_TRUE(tip);
        EXPECT_EQ(TipText(tip), L"the text");
        EXPECT_EQ(m_titles.Of(tip).text, L"the title");
        EXPECT_EQ(m_titles.Of(tip).icon, static_cast<int>(icon));
        EXPECT_TRUE(m_titles.Of(tip).isAccepted);
    }
    EXPECT_EQ(TipWindows().size(), 1u);
    EXPECT_EQ(MessageOnlyWindows().size(), 1u);
}

TEST_F(ToolTipProviderTest, IsATrackedBalloonOnTopOfAllWindows)
{
    CToolTipProvider provider;
    Show(provider, L"text");
    const HWND tip = ShownTip();
    ASSERT_TRUE(tip);
    EXPECT_TRUE(GetWindowLongW(tip, GWL_EXSTYLE) & WS_EX_TOPMOST);
    const LONG style = TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON;
    EXPECT_EQ(GetWindowLongW(tip, GWL_STYLE) & style, style);
    EXPECT_EQ(SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0), 1024);
    EXPECT_EQ(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0), 1);
    TOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    ASSERT_TRUE(SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)));
    EXPECT_EQ(tool.uFlags & (TTF_TRACK | TTF_TRANSPARENT), UINT{TTF_TRACK | TTF_TRANSPARENT});
    EXPECT_EQ(tool.hwnd, nullptr);
    EXPECT_EQ(tool.uId, 0u);
    EXPECT_EQ(tool.hinst, nullptr);
}

TEST_F(ToolTipProviderTest, PointsAtItsPlace)
{
    CToolTipProvider provider;
    const POINT places[] = {{300, 200}, {500, 400}, {40, 40}};
    for (const POINT place : places) {
        provider.SetToolTip(L"text", L"title", place, CToolTipProvider::iconNone, 60000);
        Pump();
        RECT area;
        GetWindowRect(ShownTip(), &area);
        EXPECT_LE(area.left, place.x);
        EXPECT_GE(area.right, place.x);
        // The balloon hangs from the point or stands on it.
        EXPECT_TRUE(area.top == place.y || area.bottom == place.y)
            << area.top << ' ' << area.bottom << ' ' << place.y;
    }
}

TEST_F(ToolTipProviderTest, PointsAtTheBottomRightCornerOfAWindow)
{
    CWnd anchor;
    anchor.CreateEx(0, nullptr, L"anchor", WS_POPUP, CRect(100, 120, 340, 260), nullptr, 0);
    CToolTipProvider provider;
    provider.SetToolTip(L"text", L"title", &anchor, CToolTipProvider::iconError, 60000);
    Pump();
    const HWND tip = ShownTip();
    ASSERT_TRUE(tip);
    RECT area;
    GetWindowRect(tip, &area);
    EXPECT_LE(area.left, 340);
    EXPECT_GE(area.right, 340);
    EXPECT_TRUE(area.top == 260 || area.bottom == 260);
    EXPECT_EQ(m_titles.Of(tip).icon, 3);
}

TEST_F(ToolTipProviderTest, DoesNothingWithoutAWindowToPointAt)
{
    CToolTipProvider provider;
    provider.SetToolTip(L"text", L"title", static_cast<CWnd*>(nullptr), CToolTipProvider::iconError,
                        60000);
    EXPECT_TRUE(TipWindows().empty());
    Show(provider, L"shown");
    provider.SetToolTip(L"other", L"title", static_cast<CWnd*>(nullptr),
                        CToolTipProvider::iconError, 60000);
    ASSERT_TRUE(ShownTip());
    EXPECT_EQ(TipText(ShownTip()), L"shown");
}

TEST_F(ToolTipProviderTest, HidesATipForAnEmptyTextAndStartsNoTimer)
{
    CToolTipProvider provider;
    for (const wchar_t* const nothing : {L"", static_cast<const wchar_t*>(nullptr)}) {
        Show(provider, L"text");
        ASSERT_TRUE(ShownTip());
        Show(provider, nothing);
        EXPECT_FALSE(ShownTip());
        ASSERT_EQ(MessageOnlyWindows().size(), 1u);
        EXPECT_FALSE(KillTimer(MessageOnlyWindows()[0], tipTimer));
    }
}

TEST_F(ToolTipProviderTest, HidesItselfWhenItsTimeIsOver)
{
    CToolTipProvider provider;
    const ULONGLONG start = GetTickCount64();
    Show(provider, L"text", 300);
    ASSERT_TRUE(ShownTip());
    EXPECT_TRUE(PumpUntil([] { return !ShownTip(); }));
    EXPECT_GE(GetTickCount64() - start, 290u);
    EXPECT_FALSE(KillTimer(MessageOnlyWindows()[0], tipTimer));
}

TEST_F(ToolTipProviderTest, GivesANewTipItsWholeTime)
{
    CToolTipProvider provider;
    Show(provider, L"first", 400);
    PumpUntil([] { return false; }, 250);
    const ULONGLONG start = GetTickCount64();
    Show(provider, L"second", 400);
    EXPECT_TRUE(PumpUntil([] { return !ShownTip(); }));
    EXPECT_GE(GetTickCount64() - start, 390u);
}

TEST_F(ToolTipProviderTest, CancelsATipAndItsTimer)
{
    CToolTipProvider provider;
    provider.CancelToolTip(); // before there is any tip
    Show(provider, L"text");
    provider.CancelToolTip();
    EXPECT_FALSE(ShownTip());
    EXPECT_FALSE(KillTimer(MessageOnlyWindows()[0], tipTimer));
    provider.CancelToolTip();
    Show(provider, L"again");
    EXPECT_TRUE(ShownTip());
}

TEST_F(ToolTipProviderTest, LeavesOtherTimersOfItsWindowAlone)
{
    CToolTipProvider provider;
    Show(provider, L"text");
    SendMessageW(MessageOnlyWindows()[0], WM_TIMER, tipTimer + 1, 0);
    EXPECT_TRUE(ShownTip());
    SendMessageW(MessageOnlyWindows()[0], WM_TIMER, tipTimer, 0);
    EXPECT_FALSE(ShownTip());
}

TEST_F(ToolTipProviderTest, MakesItsWindowsAnewWhenOneIsGone)
{
    CToolTipProvider provider;
    Show(provider, L"first");
    DestroyWindow(TipWindows()[0]);
    Show(provider, L"second");
    ASSERT_TRUE(ShownTip());
    EXPECT_EQ(TipText(ShownTip()), L"second");
    DestroyWindow(MessageOnlyWindows()[0]);
    Show(provider, L"third");
    ASSERT_TRUE(ShownTip());
    EXPECT_EQ(TipText(ShownTip()), L"third");
    EXPECT_EQ(TipWindows().size(), 1u);
    EXPECT_EQ(MessageOnlyWindows().size(), 1u);
}

TEST_F(ToolTipProviderTest, TakesTextsOfAnyLength)
{
    CToolTipProvider provider;
    for (const std::size_t length : {1u, 79u, 80u, 1023u, 1024u, 100000u}) {
        const std::wstring text(length, L'x');
        Show(provider, text.c_str());
        ASSERT_TRUE(ShownTip()) << length;
        EXPECT_TRUE(ShowsText(ShownTip(), text)) << length;
    }
}

// The control refuses titles of more than 99 characters.
TEST_F(ToolTipProviderTest, GivesTheControlTheWholeTitle)
{
    CToolTipProvider provider;
    for (const std::size_t length : {0u, 1u, 99u, 100u, 5000u}) {
        const std::wstring title(length, L't');
        provider.SetToolTip(L"text", title.c_str(), at, CToolTipProvider::iconNone, 60000);
        ASSERT_TRUE(ShownTip()) << length;
        EXPECT_EQ(m_titles.Of(ShownTip()).text, title);
        EXPECT_TRUE(m_titles.Of(ShownTip()).isAccepted || length > 99) << length;
    }
    provider.SetToolTip(L"text", nullptr, at, CToolTipProvider::iconNone, 60000);
    EXPECT_EQ(m_titles.Of(ShownTip()).text, L"");
}

TEST_F(ToolTipProviderTest, TakesPercentSignsAndAmpersandsAsTheyAre)
{
    CToolTipProvider provider;
    Show(provider, L"100 % & more\nsecond line");
    EXPECT_EQ(TipText(ShownTip()), L"100 % & more\nsecond line");
}

TEST_F(ToolTipProviderTest, SharesItsTipWithItsCopies)
{
    auto original = std::make_unique<CToolTipProvider>();
    Show(*original, L"text");
    CToolTipProvider copy(*original);
    EXPECT_EQ(TipWindows().size(), 1u);
    copy.CancelToolTip();
    EXPECT_FALSE(ShownTip());
    Show(copy, L"from the copy", 200);
    original.reset();
    ASSERT_TRUE(ShownTip());
    EXPECT_EQ(TipText(ShownTip()), L"from the copy");
    EXPECT_TRUE(PumpUntil([] { return !ShownTip(); })); // its timer still works
}

TEST_F(ToolTipProviderTest, SharesAfterAssignmentAndGivesUpItsOwn)
{
    CToolTipProvider first;
    CToolTipProvider second;
    Show(first, L"first");
    Show(second, L"second");
    EXPECT_EQ(TipWindows().size(), 2u);
    second = first;
    EXPECT_EQ(TipWindows().size(), 1u);
    EXPECT_EQ(TipText(ShownTip()), L"first");
    second = *&second;
    EXPECT_EQ(TipWindows().size(), 1u);
    CToolTipProvider empty;
    first = empty;
    EXPECT_EQ(TipWindows().size(), 1u);
    second = empty;
    EXPECT_TRUE(TipWindows().empty());
}

TEST_F(ToolTipProviderTest, CopiesOfAnEmptyOneGoTheirOwnWays)
{
    CToolTipProvider original;
    CToolTipProvider copy(original);
    Show(original, L"original");
    EXPECT_EQ(TipWindows().size(), 1u);
    Show(copy, L"copy");
    EXPECT_EQ(TipWindows().size(), 2u);
}

TEST_F(ToolTipProviderTest, LeavesNothingBehind)
{
    const auto live = [] {
        CToolTipProvider provider;
        Show(provider, L"text");
        CToolTipProvider copy(provider);
        provider = copy;
    };
    const DWORD lost = test_support::DrawingObjectsLostWithATip();
    live();
    const DWORD windows = test_support::UserObjectCount();
    const DWORD objects = test_support::DrawingObjectCount();
    for (int i = 0; i < 50; ++i)
        live();
    EXPECT_EQ(test_support::UserObjectCount(), windows);
    EXPECT_EQ(test_support::DrawingObjectCount(), objects + 50 * lost);
}
