// BalloonMessageService on one thread: what is logged and what the balloon shows.
#include "BalloonFixture.h"

#include <climits>
#include <cstring>

static_assert(sizeof(BalloonMessageService) == sizeof(void*) + 4 + 4 + 4 ||
              sizeof(BalloonMessageService) == 2 * sizeof(void*) + 8);

using test_support::LoggedMessage;
using Service = BalloonMessageService;

namespace {

constexpr const char* here = "exam/recording";

} // namespace

TEST_F(BalloonTest, ShowsTextTitleAndIcon)
{
    const struct
    {
        Service::MsgType type;
        int icon;
    } cases[] = {{Service::information, 1},
                 {Service::warning, 2},
                 {Service::error, 3},
                 {static_cast<Service::MsgType>(77), 1}};
    for (const auto& [type, icon] : cases) {
        Service(here, 12, false, type)(60000u, L"Recording", L"%d frames of %s", 25, L"the loop");
        const HWND tip = WaitForTip(L"25 frames of the loop");
        ASSERT_TRUE(tip);
        EXPECT_EQ(m_titles.Of(tip).text, L"Recording");
        EXPECT_EQ(m_titles.Of(tip).icon, icon);
    }
    EXPECT_TRUE(m_log.Take().empty()); // no line was expected
}

TEST_F(BalloonTest, LogsAtTheLevelOfItsType)
{
    Service(here, 12, true, Service::warning)(60000u, L"Disc", L"%d %% full", 93);
    Service(here, 13, true, Service::error)(L"Disc", L"%s", L"it is full");
    Service(here, 14, true, Service::information)(60000u, L"", L"no title");
    Service(here, 15, true, static_cast<Service::MsgType>(9))(L"alone");
    const std::vector<LoggedMessage> expected = {{here, 12, 2, L"Disc - 93 % full"},
                                                 {here, 13, 1, L"Disc - it is full"},
                                                 {here, 14, 3, L"no title"},
                                                 {here, 15, 3, L"alone"}};
    EXPECT_EQ(m_log.Take(), expected);
}

TEST_F(BalloonTest, LogsPercentSignsOfTheTextAsTheyAre)
{
    Service(here, 1, true, Service::error)(L"100 %d", L"%s", L"50 %s of %n");
    ASSERT_TRUE(WaitForTip(L"50 %s of %n"));
    const std::vector<LoggedMessage> expected = {{here, 1, 1, L"100 %d - 50 %s of %n"}};
    EXPECT_EQ(m_log.Take(), expected);
}

// Only the first two arguments decide.
TEST_F(BalloonTest, TellsItsFourFormsApart)
{
    const Service service(here, 1, false, Service::warning);
    service(250u, L"title", L"%s!", L"time, title, format");
    EXPECT_EQ(m_titles.Of(WaitForTip(L"time, title, format!")).text, L"title");
    EXPECT_EQ(LastTime(), 250u);

    service(L"title", L"%s!", L"title, format");
    EXPECT_EQ(m_titles.Of(WaitForTip(L"title, format!")).text, L"title");
    EXPECT_EQ(LastTime(), 4000u);

    service(350u, L"time, format %d", 5);
    EXPECT_EQ(m_titles.Of(WaitForTip(L"time, format 5")).text, m_productName);
    EXPECT_EQ(LastTime(), 350u);

    service(L"format %d", 6);
    EXPECT_EQ(m_titles.Of(WaitForTip(L"format 6")).text, m_productName);
    EXPECT_EQ(LastTime(), 4000u);

    service(L"a title, though it looks like %s", L"a format");
    EXPECT_EQ(m_titles.Of(WaitForTip(L"a format")).text, L"a title, though it looks like %s");
}

TEST_F(BalloonTest, HasTheProductsNameForATitleWithoutOne)
{
    const Service service(here, 1, false, Service::warning);
    for (const wchar_t* const none : {L"", static_cast<const wchar_t*>(nullptr)}) {
        service(60000u, none, L"text");
        EXPECT_EQ(m_titles.Of(WaitForTip(L"text")).text, m_productName);
        service(none, L"other");
        EXPECT_EQ(m_titles.Of(WaitForTip(L"other")).text, m_productName);
    }
}

TEST_F(BalloonTest, SkipsANullFormat)
{
    const Service service(here, 1, true, Service::error);
    const wchar_t* const none = nullptr;
    service(4000u, L"title", none);
    service(L"title", none);
    service(4000u, none);
    service(none);
    const LoggedMessage skipped = {"Utils_Statics/kwxerrimpl", 248, 2,
                                   L"Skipping CreateBalloon since a NULL msg was provided."};
    EXPECT_EQ(m_log.Take(), std::vector<LoggedMessage>(4, skipped));
    Pump();
    EXPECT_FALSE(ShownTip());
    EXPECT_EQ(m_requests.Posted(), 0);
}

TEST_F(BalloonTest, LogsATextThatDoesNotFit)
{
    const Service service(here, 1, true, Service::error);
    const std::wstring fitting(8191 + 2, L'x'); // the format's own length counts too
    const std::wstring tooLong(8191 + 3, L'x');
    service(60000u, L"title", L"%s", fitting.c_str());
    EXPECT_TRUE(WaitForTip(fitting));
    EXPECT_EQ(m_log.Take().size(), 1u);
    service(60000u, L"title", L"%s", tooLong.c_str());
    const std::vector<LoggedMessage> expected = {
        {"Utils_Statics/kwxerrimpl", 241, 2,
         L"Unable to Create Balloon message: StringCchVPrintfEx() returned 0x8007007a"}};
    EXPECT_EQ(m_log.Take(), expected);
    Pump();
    EXPECT_EQ(m_requests.Posted(), 1);
}

TEST_F(BalloonTest, ShowsTextsOfAnyLength)
{
    const Service service(here, 1, false, Service::error);
    for (const std::size_t length : {1u, 80u, 1024u, 8192u, 100000u}) {
        const std::wstring text(length, L'y');
        service(60000u, L"title", text.c_str());
        EXPECT_TRUE(WaitForTip(text)) << length;
    }
    service(60000u, L"title", L""); // hides
    EXPECT_TRUE(PumpUntil([] { return !ShownTip(); }));
    service(60000u, std::wstring(100000, L't').c_str(), L"a long title");
    EXPECT_EQ(m_titles.Of(WaitForTip(L"a long title")).text, std::wstring(100000, L't'));
}

TEST_F(BalloonTest, TreatsNullArgumentsAsEmptyTexts)
{
    const Service service(here, 1, false, Service::error);
    const wchar_t* const none = nullptr;
    const char* const narrowNone = nullptr;
    service(60000u, L"title", L"[%s] [%5s] [%-3.2s] [%S] [%hs] %d", none, none, none, narrowNone,
            narrowNone, 7);
    EXPECT_TRUE(WaitForTip(L"[] [     ] [   ] [] [] 7"));
}

// The formats ask for texts where numbers were passed, or for more arguments than were passed.
TEST_F(BalloonTest, SurvivesFormatsThatLie)
{
    const Service service(here, 1, false, Service::error);
    service(60000u, L"title", L"a %s b %d", 1, 2);
    EXPECT_TRUE(WaitForTip(L"a  b 2"));
    service(60000u, L"title", L"c %S d", -1);
    EXPECT_TRUE(WaitForTip(L"c  d"));
    service(60000u, L"title", L"%.3s|%hs|%ws|%ls", 16, 0x7FFF0000, 4, 5);
    EXPECT_TRUE(WaitForTip(L"|||"));
    service(60000u, L"title", L"%s%s%s%s%s%s%s%s%s%s%s%s"); // shows whatever lies there
    int touched = 1234;
    service(60000u, L"title", L"x%ny", &touched);
    EXPECT_TRUE(WaitForTip(L"x%ny"));
    EXPECT_EQ(touched, 1234);
    service(60000u, L"title", L"100%", 1);
    service(60000u, L"title", L"%", 1);
    service(60000u, L"title", L"%y %q", 1);
    service(60000u, L"title", L"%99999999s", L"wide");
    service(60000u, L"title", L"%s", L"the end");
    EXPECT_TRUE(WaitForTip(L"the end"));
}

// A text needs no end where the precision ends it. Behind this one nothing can be read.
TEST_F(BalloonTest, ReadsNoFurtherThanThePrecision)
{
    const Service service(here, 1, false, Service::error);
    constexpr std::size_t page = 0x1000;
    void* const memory = VirtualAlloc(nullptr, 2 * page, MEM_RESERVE, PAGE_NOACCESS);
    ASSERT_TRUE(VirtualAlloc(memory, page, MEM_COMMIT, PAGE_READWRITE));
    wchar_t* const text = static_cast<wchar_t*>(memory) + page / sizeof(wchar_t) - 3;
    std::memcpy(text, L"abc", 3 * sizeof(wchar_t));
    service(60000u, L"title", L"%.3s|%.2s", text, text);
    EXPECT_TRUE(WaitForTip(L"abc|ab"));
    service(60000u, L"title", L"[%s] [%.4s]", text, text);
    EXPECT_TRUE(WaitForTip(L"[] []"));
    VirtualFree(memory, 0, MEM_RELEASE);
}

TEST_F(BalloonTest, ShowsTextsAtAnyAddress)
{
    const Service service(here, 1, false, Service::error);
    constexpr wchar_t text[] = L"odd";
    alignas(wchar_t) char room[sizeof text + 1];
    std::memcpy(room + 1, text, sizeof text);
    service(60000u, L"title", L"%s", static_cast<const void*>(room + 1));
    EXPECT_TRUE(WaitForTip(L"odd"));
}

TEST_F(BalloonTest, FormatsAsThePlatformDoes)
{
    const Service service(here, 1, false, Service::error);
    const wchar_t unterminated[3] = {L'a', L'b', L'c'};
    service(60000u, L"title", L"%5d|%-5d|%05u|%x|%#X|%I64d|%.3f|%e|%c|%C|%%|%.3s|%p", 42, -42, 7u,
            255, 255, 1234567890123456789LL, 3.14159, 1.5, L'w', 'n', unterminated,
            static_cast<void*>(nullptr));
    wchar_t expected[256];
    _snwprintf(expected, 256, L"%5d|%-5d|%05u|%x|%#X|%I64d|%.3f|%e|%c|%C|%%|%.3s|%p", 42, -42, 7u,
               255, 255, 1234567890123456789LL, 3.14159, 1.5, L'w', 'n', unterminated,
               static_cast<void*>(nullptr));
    EXPECT_TRUE(WaitForTip(expected));
    service(60000u, L"title", L"%*d|%.*s", 6, 42, 2, L"starred");
    EXPECT_TRUE(WaitForTip(L"    42|st"));
}

TEST_F(BalloonTest, StandsBesideTheCentredScreenOfTheMainWindow)
{
    CWnd main;
    main.CreateEx(0, nullptr, L"main", WS_POPUP, CRect(0, 0, 1200, 900), nullptr, 0);
    application.m_pMainWnd = &main;
    Service(here, 1, false, Service::error)(60000u, L"title", L"text");
    ExpectPointer(WaitForTip(L"text"), {(1200 + 1024) / 2, (900 + 768) / 2});
    main.DestroyWindow(); // its window is invalid now, so the desktop counts
    MSG quit;
    while (PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
    }
    application.m_pMainWnd = nullptr;
    Service(here, 1, false, Service::error)(60000u, L"title", L"on the desktop");
    CRect desktop;
    GetClientRect(GetDesktopWindow(), &desktop);
    ExpectPointer(WaitForTip(L"on the desktop"),
                  {(desktop.Width() + 1024) / 2, (desktop.Height() + 768) / 2});
}

TEST_F(BalloonTest, HasAPlaceOfItsOwnOnOneConsole)
{
    utilsExam::SetConsoleType(eConsoleTavren);
    const CPoint origin = utilsExam::CalculateSystemOrigin(CSize(-1, -1));
    Service(here, 1, false, Service::error)(60000u, L"title", L"text");
    ExpectPointer(WaitForTip(L"text"), {origin.x + 68, origin.y + 50});
}

TEST_F(BalloonTest, HidesWhenItsTimeIsOver)
{
    Service(here, 1, false, Service::error)(300u, L"title", L"short");
    ASSERT_TRUE(WaitForTip(L"short"));
    EXPECT_TRUE(PumpUntil([] { return !ShownTip(); }));
}

TEST_F(BalloonTest, ReplacesTheTipBefore)
{
    const Service service(here, 1, false, Service::error);
    service(60000u, L"one", L"first");
    service(60000u, L"two", L"second");
    EXPECT_EQ(m_titles.Of(WaitForTip(L"second")).text, L"two");
    EXPECT_EQ(TipWindows().size(), 1u);
}

TEST_F(BalloonTest, LogsBeforeCreateAndAfterDestroyButShowsNothing)
{
    Service::Destroy();
    Service::Destroy(); // a second time
    Service(here, 1, true, Service::warning)(60000u, L"title", L"dropped");
    EXPECT_EQ(m_log.Take().size(), 1u);
    EXPECT_EQ(m_requests.Posted(), 0);
    EXPECT_TRUE(TipWindows().empty());
    EXPECT_TRUE(MessageOnlyWindows().empty());
    Service::Create();
    Service(here, 1, true, Service::warning)(60000u, L"title", L"shown");
    EXPECT_TRUE(WaitForTip(L"shown"));
}

TEST_F(BalloonTest, ReplacesAServiceThatExists)
{
    Service(here, 1, false, Service::warning)(60000u, L"title", L"of the first service");
    ASSERT_TRUE(WaitForTip(L"of the first service"));
    Service::Create();
    EXPECT_TRUE(TipWindows().empty());
    EXPECT_EQ(MessageOnlyWindows().size(), 1u);
    Service(here, 1, false, Service::warning)(60000u, L"title", L"of the second");
    EXPECT_TRUE(WaitForTip(L"of the second"));
}

TEST_F(BalloonTest, FreesRequestsThatNeverReachTheWindow)
{
    const Service service(here, 1, false, Service::warning);
    for (int i = 0; i < 100; ++i)
        service(60000u, L"title", L"number %d", i);
    EXPECT_EQ(m_requests.Alive(), 100);
    Service::Destroy();
    EXPECT_EQ(m_requests.Alive(), 0);

    Service::Create();
    m_requests.Refuse(); // as with a full queue
    for (int i = 0; i < 100; ++i)
        service(60000u, L"title", L"number %d", i);
    EXPECT_EQ(m_requests.Posted(), 200);
    EXPECT_EQ(m_requests.Alive(), 0);
}

TEST_F(BalloonTest, FreesRequestsWhenTheWindowIsDestroyedByOthers)
{
    const Service service(here, 1, false, Service::warning);
    for (int i = 0; i < 10; ++i)
        service(60000u, L"title", L"number %d", i);
    ASSERT_EQ(MessageOnlyWindows().size(), 1u);
    DestroyWindow(MessageOnlyWindows()[0]);
    EXPECT_EQ(m_requests.Alive(), 0);
    service(60000u, L"title", L"to nobody");
    EXPECT_EQ(m_requests.Posted(), 10);
    EXPECT_EQ(m_requests.Alive(), 0);
}

TEST_F(BalloonTest, LeavesTheEndOfTheApplicationInTheQueue)
{
    Service(here, 1, false, Service::warning)(60000u, L"title", L"dropped");
    PostQuitMessage(4711);
    Service::Destroy();
    EXPECT_EQ(m_requests.Alive(), 0);
    MSG message = {};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 4711u);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(BalloonTest, LeavesNothingBehind)
{
    const auto live = [] {
        Service::Create();
        Service(here, 1, false, Service::warning)(60000u, L"title", L"text");
        WaitForTip(L"text");
        Service::Destroy();
    };
    const DWORD lost = test_support::DrawingObjectsLostWithATip();
    live();
    const DWORD windows = test_support::UserObjectCount();
    const DWORD objects = test_support::DrawingObjectCount();
    for (int i = 0; i < 20; ++i)
        live();
    EXPECT_EQ(test_support::UserObjectCount(), windows);
    EXPECT_EQ(test_support::DrawingObjectCount(), objects + 20 * lost);
}
