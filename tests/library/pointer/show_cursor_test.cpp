// The counted guard of the ordinary cursor, against a real main window that records its messages.
#include <gtest/gtest.h>
#include <test_support/ExamWindow.h>
#include <test_support/Messages.h>
#include <Utils_Statics/ShowCursorHelper.h>

#include <afxwin.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

using test_support::ExamWindow;
using test_support::PumpUntil;

CWinApp theApplication;

static_assert(sizeof(ShowCursorHelper) == sizeof(RECT) + sizeof(BOOL) + 4);
static_assert(std::is_copy_assignable_v<ShowCursorHelper> &&
              !std::is_copy_constructible_v<ShowCursorHelper>);
static_assert(!std::has_virtual_destructor_v<ShowCursorHelper>);

namespace {

struct Message
{
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Message&) const = default;
};
using Messages = std::vector<Message>;

const Messages switchOn = {{0x8016, 1, 0}, {0x8002, 1031, 0}, {0x803C, 1, 0}};
const Messages switchOff = {{0x8016, 0, 0}, {0x8002, 1030, -1}, {0x803C, 0, 0}};
const Messages quietSwitchOn = {{0x8002, 1031, 0}, {0x803C, 1, 0}};
const Messages quietSwitchOff = {{0x8002, 1030, -1}, {0x803C, 0, 0}};

Messages operator+(Messages a, const Messages& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A window that records the application messages it gets.
class RecordingWindow
{
public:
    RecordingWindow()
    {
        m_window.onMessage = [this](ExamWindow&, UINT message, WPARAM wParam, LPARAM lParam) {
            Received({message, wParam, lParam});
            return false;
        };
    }

    HWND Handle() const { return m_window.Handle(); }
    Messages Take() { return std::exchange(m_messages, {}); }

    std::function<void(const Message&)> onMessage;
    bool captureLost = false;

private:
    void Received(const Message& message)
    {
        if (message.message == WM_CAPTURECHANGED) captureLost = true;
        if (message.message < WM_APP || message.message > 0xBFFF) return;
        m_messages.push_back(message);
        if (onMessage) onMessage(message);
    }

    Messages m_messages;
    ExamWindow m_window;
};

class ShowCursorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(AfxGetApp(), &theApplication);
        ASSERT_NE(window.Handle(), nullptr);
        mainWindow.Attach(window.Handle());
        theApplication.m_pMainWnd = &mainWindow;
    }
    void TearDown() override
    {
        theApplication.m_pMainWnd = nullptr;
        mainWindow.Detach();
        ::ClipCursor(nullptr);
    }

    static CRect Clip()
    {
        CRect rect;
        GetClipCursor(&rect);
        return rect;
    }
    // True when the cursor is now confined to rect.
    static bool Confine(const CRect& rect) { return ::ClipCursor(&rect) && Clip() == rect; }

    RecordingWindow window;
    CWnd mainWindow;
};

TEST_F(ShowCursorTest, NestedGuardsSwitchOnAndOffOnce)
{
    {
        const ShowCursorHelper outer(true);
        EXPECT_EQ(window.Take(), switchOn);
        {
            const ShowCursorHelper inner(true);
            const ShowCursorHelper innermost(false);
        }
        EXPECT_TRUE(window.Take().empty());
    }
    EXPECT_EQ(window.Take(), switchOff);
}

TEST_F(ShowCursorTest, WithoutNotifyTheNotificationIsLeftOut)
{
    {
        const ShowCursorHelper guard(false);
        EXPECT_EQ(window.Take(), quietSwitchOn);
    }
    EXPECT_EQ(window.Take(), quietSwitchOff);
}

TEST_F(ShowCursorTest, EachEndNotifiesAsItsOwnGuardSays)
{
    auto first = std::make_unique<ShowCursorHelper>(true);
    auto last = std::make_unique<ShowCursorHelper>(false);
    first.reset();
    EXPECT_EQ(window.Take(), switchOn);
    last.reset();
    EXPECT_EQ(window.Take(), quietSwitchOff);
}

TEST_F(ShowCursorTest, TheMouseCaptureIsReleasedByNestedGuardsToo)
{
    RecordingWindow other;
    SetCapture(other.Handle());
    ASSERT_EQ(GetCapture(), other.Handle());
    const ShowCursorHelper guard(false);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_TRUE(other.captureLost);
    SetCapture(other.Handle());
    const ShowCursorHelper inner(false);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(ShowCursorTest, EachGuardRestoresTheConfinementThatItFound)
{
    const CRect first(100, 110, 300, 310), second(150, 160, 250, 260);
    if (!Confine(first))
        GTEST_SKIP() << "this session does not honour ClipCursor (under Wine it needs the X input "
                        "extension library)";
    {
        const ShowCursorHelper outer(false);
        EXPECT_TRUE(Clip() == first) << "a guard does not change the confinement itself";
        ASSERT_TRUE(Confine(second));
        {
            const ShowCursorHelper inner(false);
            ::ClipCursor(nullptr);
        }
        EXPECT_TRUE(Clip() == second);
    }
    EXPECT_TRUE(Clip() == first);
}

TEST_F(ShowCursorTest, EachGuardRestoresTheEnabledStateThatItFound)
{
    {
        const ShowCursorHelper outer(false);
        EnableWindow(window.Handle(), FALSE);
        {
            const ShowCursorHelper inner(false);
            EnableWindow(window.Handle(), TRUE);
        }
        EXPECT_FALSE(IsWindowEnabled(window.Handle()));
    }
    EXPECT_TRUE(IsWindowEnabled(window.Handle()));
}

TEST_F(ShowCursorTest, TheConfinementIsRestoredAndTheWindowEnabledBeforeTheLastMessages)
{
    const CRect confinement(100, 110, 300, 310);
    const bool honoured = Confine(confinement);
    auto guard = std::make_unique<ShowCursorHelper>(true);
    ::ClipCursor(nullptr);
    EnableWindow(window.Handle(), FALSE);
    window.onMessage = [&](const Message&) {
        EXPECT_TRUE(IsWindowEnabled(window.Handle()));
        EXPECT_TRUE(!honoured || Clip() == confinement);
    };
    guard.reset();
    EXPECT_EQ(window.Take(), switchOn + switchOff);
}

TEST_F(ShowCursorTest, TheEnabledStateIsReadBeforeTheFirstMessagesAndCaptureAndConfinementAfterThem)
{
    const CRect confinement(100, 110, 300, 310);
    bool honoured = false;
    window.onMessage = [&](const Message& message) {
        if (message != switchOn.back()) return;
        EnableWindow(window.Handle(), FALSE);
        SetCapture(window.Handle());
        honoured = Confine(confinement);
    };
    {
        const ShowCursorHelper guard(true);
        EXPECT_EQ(GetCapture(), nullptr);
        ::ClipCursor(nullptr);
    }
    EXPECT_TRUE(IsWindowEnabled(window.Handle()));
    EXPECT_TRUE(!honoured || Clip() == confinement);
}

TEST_F(ShowCursorTest, WithoutAMainWindowOnlyTheCursorIsLookedAfter)
{
    theApplication.m_pMainWnd = nullptr;
    SetCapture(window.Handle());
    {
        const ShowCursorHelper guard(true);
        EXPECT_EQ(GetCapture(), nullptr);
    }
    EXPECT_TRUE(window.Take().empty());
    CWnd windowless;
    theApplication.m_pMainWnd = &windowless;
    {
        const ShowCursorHelper guard(true);
    }
    EXPECT_TRUE(window.Take().empty());
}

TEST_F(ShowCursorTest, AMainWindowThatComesLaterIsSwitchedOffOnly)
{
    theApplication.m_pMainWnd = nullptr;
    auto guard = std::make_unique<ShowCursorHelper>(true);
    EnableWindow(window.Handle(), FALSE);
    theApplication.m_pMainWnd = &mainWindow;
    guard.reset();
    EXPECT_EQ(window.Take(), switchOff);
    EXPECT_TRUE(IsWindowEnabled(window.Handle()))
        << "enabled is what a guard assumes that found no window";
}

TEST_F(ShowCursorTest, AssignmentCopiesWhatTheOtherGuardFound)
{
    auto first = std::make_unique<ShowCursorHelper>(true);
    EnableWindow(window.Handle(), FALSE);
    auto second = std::make_unique<ShowCursorHelper>(false);
    *first = *second;
    second.reset();
    window.Take();
    first.reset();
    EXPECT_EQ(window.Take(), quietSwitchOff);
    EXPECT_FALSE(IsWindowEnabled(window.Handle()));
}

TEST_F(ShowCursorTest, TheMainWindowMayCreateAGuardWhileItHandlesTheMessages)
{
    window.onMessage = [](const Message& message) {
        if (message.message != 0x8002 || message.wParam != 1031) return;
        const ShowCursorHelper nested(true);
    };
    {
        const ShowCursorHelper guard(true);
        EXPECT_EQ(window.Take(), switchOn);
    }
    EXPECT_EQ(window.Take(), switchOff);
}

TEST_F(ShowCursorTest, AGuardOfAnotherThreadNestsWithThisOnes)
{
    std::atomic<bool> isDone = false;
    auto guard = std::make_unique<ShowCursorHelper>(true);
    EXPECT_EQ(window.Take(), switchOn);
    std::thread other([&] {
        {
            const ShowCursorHelper nested(true);
        }
        isDone = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return isDone.load(); }));
    other.join();
    EXPECT_TRUE(window.Take().empty());
    guard.reset();
    EXPECT_EQ(window.Take(), switchOff);
}

TEST_F(ShowCursorTest, FourThreadsAtOnceSwitchOnAndOffInTurn)
{
    constexpr int threadCount = 4, rounds = 50;
    std::atomic<int> running = threadCount;
    const auto work = [&] {
        for (int i = 0; i < rounds; ++i) {
            const ShowCursorHelper outer(true);
            const ShowCursorHelper inner(true);
        }
        --running;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(work);
    ASSERT_TRUE(PumpUntil([&] { return running == 0; })) << "the guards wait for each other";
    for (std::thread& thread : threads)
        thread.join();

    const Messages seen = window.Take();
    ASSERT_FALSE(seen.empty());
    const Messages period = switchOn + switchOff;
    ASSERT_EQ(seen.size() % period.size(), 0u);
    EXPECT_LE(seen.size() / period.size(), static_cast<std::size_t>(threadCount * rounds));
    for (std::size_t i = 0; i < seen.size(); ++i)
        ASSERT_EQ(seen[i], period[i % period.size()]) << "message " << i;
    EXPECT_TRUE(IsWindowEnabled(window.Handle()));
    {
        const ShowCursorHelper guard(true);
    }
    EXPECT_EQ(window.Take(), period) << "no guard is left counted";
}

} // namespace
