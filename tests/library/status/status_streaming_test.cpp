// The streaming icon: its three states, its blinking and its caption.
#include <winsock2.h>

#include "DrawingRecord.h"
#include "StatusFixture.h"

#include <test_support/ChildTest.h>
#include <test_support/ImportHook.h>
#include <test_support/TestStringTable.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/utilsExam.h>

#include <mmsystem.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono;
using test_support::TestStringTable;

namespace {

constexpr auto off = CStatusStreaming::StreamingOff, on = CStatusStreaming::StreamingOn,
               toDisk = CStatusStreaming::StreamingToDisk;
constexpr Gdiplus::ARGB green = 0xFF00C000, orange = 0xFFFFA000;

// The moments of the repaint requests.
class Repaints
{
public:
    void Note()
    {
        const std::lock_guard lock(m_mutex);
        m_times.push_back(steady_clock::now());
        m_changed.notify_all();
    }
    void Forget()
    {
        const std::lock_guard lock(m_mutex);
        m_times.clear();
    }
    // Waits until there are this many; false when that takes too long.
    bool WaitFor(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, seconds(30), [&] { return m_times.size() >= count; });
    }
    std::vector<steady_clock::time_point> Times()
    {
        const std::lock_guard lock(m_mutex);
        return m_times;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<steady_clock::time_point> m_times;
};

Repaints s_repaints;

// The address that the look-up finds for this computer.
std::array<unsigned char, 4> s_address = {10, 1, 2, 3};

hostent* WINAPI HostWithAddress(const char*)
{
    static char* addresses[] = {reinterpret_cast<char*>(s_address.data()), nullptr};
    static hostent host = {};
    host.h_addrtype = AF_INET;
    host.h_length = 4;
    host.h_addr_list = addresses;
    return &host;
}

hostent* WINAPI NoHost(const char*)
{
    return nullptr;
}

class StatusStreaming : public StatusTest
{
protected:
    StatusStreaming()
    {
        s_address = {10, 1, 2, 3};
        WriteIcon(L"streamingon.png", 80, 40, green);
        WriteIcon(L"streamingdisk.png", 24, 24, orange);
        CStatusStreaming::setState(off);
        Want(false, false);
        IStatusItem::SetStatusCallback([] { s_repaints.Note(); });
        s_repaints.Forget();
    }
    ~StatusStreaming() override { CStatusStreaming::setState(off); }

    void Want(bool icon, bool address)
    {
        Set(L"Streaming", icon ? 1 : 0);
        Set(L"StreamingIP", address ? 1 : 0);
        item->updateVisibleState();
    }
    bool IsLit()
    {
        Row row;
        EXPECT_NE(Draw(item, row), 0);
        return row.Drawn() != CRect();
    }
    // The white area of the caption over a lit icon.
    static CRect Caption(Row& row)
    {
        return row.Where([](Gdiplus::ARGB pixel) { return (pixel & 0xff) > 0x90; });
    }

    IStatusItem* const item = CStatusStreaming::getInstance();

private:
    const test_support::ImportHook m_hook{L"Utils_Statics.dll", "gethostbyname", &HostWithAddress};
};

TEST_F(StatusStreaming, IsOneObjectWithThreeStates)
{
    EXPECT_EQ(CStatusStreaming::getInstance(), item);
    EXPECT_EQ(off, 0);
    EXPECT_EQ(on, 1);
    EXPECT_EQ(toDisk, 2);
    for (const auto status : {on, toDisk, off}) {
        CStatusStreaming::setState(status);
        EXPECT_EQ(CStatusStreaming::getState(), status);
        EXPECT_EQ(CStatusStreaming::isStreaming(), status != off);
    }
}

TEST_F(StatusStreaming, IsVisibleWhenItIsWantedAndAlwaysToDisk)
{
    for (const bool isWanted : {false, true}) {
        Want(isWanted, false);
        CStatusStreaming::setState(off);
        EXPECT_FALSE(item->isVisible());
        CStatusStreaming::setState(on);
        EXPECT_EQ(item->isVisible(), isWanted);
        CStatusStreaming::setState(toDisk);
        EXPECT_TRUE(item->isVisible());
    }
}

TEST_F(StatusStreaming, IsDrawnByItsStateAlone)
{
    for (const bool isWanted : {false, true}) {
        Want(isWanted, false);
        CStatusStreaming::setState(off);
        Row row;
        EXPECT_EQ(Draw(item, row), 0);
        EXPECT_EQ(row.Drawn(), CRect());
        CStatusStreaming::setState(on);
        EXPECT_EQ(Draw(item, row), 80);
        EXPECT_EQ(row.Drawn(), CRect(120, 10, 200, 50));
        EXPECT_EQ(row.At(130, 30), green);
        row.Clear();
        CStatusStreaming::setState(toDisk);
        EXPECT_EQ(Draw(item, row), 24);
        EXPECT_EQ(row.Drawn(), CRect(176, 18, 200, 42));
        EXPECT_EQ(row.At(180, 30), orange);
    }
}

TEST_F(StatusStreaming, WithoutItsFileTakesNoRoom)
{
    Want(true, true);
    DeleteFileW(IconFile(L"streamingon.png").c_str());
    CStatusStreaming::setState(on);
    Row row;
    EXPECT_EQ(Draw(item, row), 0);
    EXPECT_EQ(row.Drawn(), CRect()) << "nor is there a caption";
}

TEST_F(StatusStreaming, EverySetAsksForARepaint)
{
    for (const auto status : {on, on, off, off, toDisk, toDisk})
        CStatusStreaming::setState(status);
    EXPECT_EQ(s_repaints.Times().size(), 6u);
}

// ---- Blinking

TEST_F(StatusStreaming, BlinksOnceASecondToDisk)
{
    CStatusStreaming::setState(toDisk);
    EXPECT_TRUE(IsLit());
    ASSERT_TRUE(s_repaints.WaitFor(2));
    EXPECT_FALSE(IsLit());
    ASSERT_TRUE(s_repaints.WaitFor(3));
    EXPECT_TRUE(IsLit());
    ASSERT_TRUE(s_repaints.WaitFor(5));
    const auto times = s_repaints.Times();
    const auto taken = duration_cast<milliseconds>(times[4] - times[0]);
    EXPECT_NEAR(static_cast<double>(taken.count()), 4000, 500) << "four halves of a blink";
}

TEST_F(StatusStreaming, TakesTheSameWidthInBothHalves)
{
    CStatusStreaming::setState(toDisk);
    Row row;
    EXPECT_EQ(Draw(item, row), 24);
    ASSERT_TRUE(s_repaints.WaitFor(2));
    EXPECT_EQ(Draw(item, row), 24);
}

TEST_F(StatusStreaming, AnyOtherStateEndsTheBlinkingAndIsLit)
{
    for (const auto status : {on, off}) {
        CStatusStreaming::setState(toDisk);
        s_repaints.Forget();
        ASSERT_TRUE(s_repaints.WaitFor(1));
        EXPECT_FALSE(IsLit());
        CStatusStreaming::setState(status);
        s_repaints.Forget();
        Sleep(2500);
        EXPECT_TRUE(s_repaints.Times().empty()) << "no timer asks for repaints";
        if (status == on) {
            EXPECT_TRUE(IsLit());
        }
        CStatusStreaming::setState(toDisk);
        EXPECT_TRUE(IsLit()) << "a new blinking begins lit";
    }
}

// A repeated state, or settings that are read again, restart the half period and leave no second
// timer behind.
TEST_F(StatusStreaming, BlinksWithOneTimerOnly)
{
    for (int i = 0; i < 10; ++i) {
        CStatusStreaming::setState(toDisk);
        item->updateVisibleState();
    }
    s_repaints.Forget();
    const auto start = steady_clock::now();
    ASSERT_TRUE(s_repaints.WaitFor(3));
    EXPECT_GE(steady_clock::now() - start, milliseconds(2700));
}

TEST_F(StatusStreaming, SettingsThatAreReadBeforeEachRepaintKeepItFromBlinkingWhenTheyComeOften)
{
    CStatusStreaming::setState(toDisk);
    s_repaints.Forget();
    for (int i = 0; i < 20; ++i) {
        Sleep(100);
        item->updateVisibleState();
    }
    EXPECT_TRUE(s_repaints.Times().empty());
    EXPECT_TRUE(IsLit());
}

// ---- The timer's calls, made by hand

using Calls = std::vector<std::string>;

Calls s_timerCalls;
LPTIMECALLBACK s_timer;
UINT s_lastTimer;

MMRESULT WINAPI StartTimer(UINT delay, UINT resolution, LPTIMECALLBACK timer, DWORD_PTR, UINT flags)
{
    s_timer = timer;
    s_timerCalls.push_back("set " + std::to_string(delay) + " " + std::to_string(resolution) + " " +
                           std::to_string(flags));
    return ++s_lastTimer;
}

MMRESULT WINAPI EndTimer(UINT timer)
{
    s_timerCalls.push_back("end " + std::to_string(timer));
    return TIMERR_NOERROR;
}

class StreamingTimer : public StatusStreaming
{
protected:
    StreamingTimer()
    {
        CStatusStreaming::setState(toDisk);
        s_repaints.Forget();
        s_timerCalls.clear();
    }

    // The call that the platform's timer thread makes.
    static void Tick(UINT timer) { s_timer(timer, 0, 0, 0, 0); }
    static std::size_t Repaints() { return s_repaints.Times().size(); }

private:
    const test_support::ImportHook m_set{L"Utils_Statics.dll", "timeSetEvent", &StartTimer};
    const test_support::ImportHook m_end{L"Utils_Statics.dll", "timeKillEvent", &EndTimer};
};

TEST_F(StreamingTimer, IsEndedBeforeEachStartAndKeepsItsNumber)
{
    const std::string first = "end " + std::to_string(s_lastTimer);
    const std::string second = "end " + std::to_string(s_lastTimer + 1);
    const std::string start = "set 1000 1000 " + std::to_string(TIME_PERIODIC);
    CStatusStreaming::setState(toDisk);
    CStatusStreaming::setState(on);
    CStatusStreaming::setState(off);
    item->updateVisibleState();
    EXPECT_EQ(s_timerCalls, (Calls{first, start, second, second, second}));
}

TEST_F(StreamingTimer, TurnsTheIconDarkAndLitAndAsksForARepaint)
{
    Tick(s_lastTimer);
    EXPECT_FALSE(IsLit());
    EXPECT_EQ(Repaints(), 1u);
    Tick(s_lastTimer);
    EXPECT_TRUE(IsLit());
    EXPECT_EQ(Repaints(), 2u);
}

TEST_F(StreamingTimer, KeepsFromThePlatformWhatTheCallbackThrows)
{
    IStatusItem::SetStatusCallback([] { throw std::runtime_error("no repaint"); });
    EXPECT_NO_THROW(Tick(s_lastTimer));
    IStatusItem::SetStatusCallback(nullptr);
    EXPECT_FALSE(IsLit());
}

// The platform may call after the end of the timer.
TEST_F(StreamingTimer, DarkensNothingWhenItsCallComesLate)
{
    const UINT ended = s_lastTimer;
    CStatusStreaming::setState(on);
    s_repaints.Forget();
    Tick(ended);
    EXPECT_TRUE(IsLit());
    CStatusStreaming::setState(toDisk);
    s_repaints.Forget();
    Tick(ended);
    EXPECT_TRUE(IsLit()) << "another timer blinks now";
    EXPECT_EQ(Repaints(), 0u);
    Tick(s_lastTimer);
    EXPECT_FALSE(IsLit());
}

TEST_F(StreamingTimer, ABlinkingThatTheTimerHasDarkenedIsLitInAnyOtherState)
{
    Tick(s_lastTimer);
    CStatusStreaming::setState(on);
    EXPECT_TRUE(IsLit());
}

// The item is destroyed here, so the test has a process of its own. One call of the timer runs
// meanwhile, and another comes late.
TEST_F(StreamingTimer, DISABLED_AfterTheDestruction)
{
    static HANDLE entered, released;
    entered = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    released = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    IStatusItem::SetStatusCallback([] {
        SetEvent(entered);
        WaitForSingleObject(released, 60'000);
        s_repaints.Note();
    });
    std::jthread call([] { Tick(s_lastTimer); });
    EXPECT_EQ(WaitForSingleObject(entered, 60'000), WAIT_OBJECT_0);
    std::atomic<bool> isDestroyed = false;
    std::jthread destroyer([&] {
        delete item;
        isDestroyed = true;
    });
    Sleep(200); // gives a destruction that fails to wait the time to show it
    EXPECT_FALSE(isDestroyed);
    SetEvent(released);
    destroyer.join();
    call.join();
    EXPECT_EQ(s_timerCalls, Calls{"end " + std::to_string(s_lastTimer)});
    Tick(s_lastTimer);
    EXPECT_EQ(Repaints(), 1u);
    std::exit(HasFailure() ? 1 : 42);
}

TEST(StreamingTimerOfADestroyedItem, IsEndedAndWaitedFor)
{
    test_support::ChildTest child("StreamingTimer.DISABLED_AfterTheDestruction");
    EXPECT_EQ(child.Wait(60'000), 42u);
}

// ---- The caption

TEST_F(StatusStreaming, WritesTheAddressOverTheIcon)
{
    Want(true, false);
    CStatusStreaming::setState(on);
    Row row;
    Draw(item, row);
    EXPECT_EQ(Caption(row), CRect());
    Want(true, true);
    row.Clear();
    EXPECT_EQ(Draw(item, row), 80);
    const CRect caption = Caption(row);
    EXPECT_GT(caption.Width(), 20);
    EXPECT_GT(caption.Height(), 4);
    EXPECT_GT(caption.right, 190) << "it ends at the right";
    EXPECT_GT(caption.bottom, 50) << "and at the bottom";
    EXPECT_GT(caption.top, 40);
}

TEST_F(StatusStreaming, TheCaptionEndsInTheCornerOfTheRectangle)
{
    Want(true, true);
    CStatusStreaming::setState(on);
    Row row;
    item->drawIcon(CRect(20, 4, 150, 44), row.Graphics());
    const CRect caption = Caption(row);
    EXPECT_LE(caption.right, 150);
    EXPECT_GT(caption.right, 140);
    EXPECT_LE(caption.bottom, 44);
    EXPECT_GT(caption.bottom, 34);
}

TEST_F(StatusStreaming, TheCaptionIsSmallPlainWhiteArial)
{
    Want(true, true);
    CStatusStreaming::setState(on);
    Row row;
    DrawingRecord record;
    item->drawIcon(CRect(20, 4, 150, 44), row.Graphics());
    EXPECT_EQ(record.Take(),
              (std::vector<std::wstring>{
                  L"family Arial", L"10.1.2.3, 8pt regular, far/far, FFFFFFFF in 0 4 150 40"}));
    DrawingRecord without(false);
    Draw(item, row);
    EXPECT_EQ(without.Take().back(), L"10.1.2.3, 8pt regular, far/far, FFFFFFFF in 0 0 200 60");
}

TEST_F(StatusStreaming, TheCaptionIsWrittenWhateverTheOtherSetting)
{
    Want(false, true);
    CStatusStreaming::setState(on);
    Row row;
    Draw(item, row);
    EXPECT_NE(Caption(row), CRect());
}

TEST_F(StatusStreaming, NoCaptionIsWrittenToDisk)
{
    Want(true, true);
    CStatusStreaming::setState(toDisk);
    Row row;
    Draw(item, row);
    EXPECT_EQ(Caption(row), CRect());
}

// The width of the caption identifies its text.
TEST_F(StatusStreaming, AnAddressThatReachesNobodyIsReplacedByAText)
{
    TestStringTable table;
    table.Add("streaming.noipaddress", "I", "I");
    table.Load();
    CStatusStreaming::setState(on);
    const auto widthFor = [&](std::array<unsigned char, 4> address) {
        s_address = address;
        Want(true, true);
        Row row;
        Draw(item, row);
        return Caption(row).Width();
    };
    EXPECT_LT(widthFor({127, 0, 0, 1}), 6);
    EXPECT_GT(widthFor({127, 0, 0, 2}), 20) << "compared exactly";
    EXPECT_GT(widthFor({127, 0, 0, 10}), 20);
}

TEST_F(StatusStreaming, NoAddressAtAllIsWrittenAsNothing)
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "gethostbyname", &NoHost);
    Want(true, true);
    CStatusStreaming::setState(on);
    Row row;
    EXPECT_EQ(Draw(item, row), 80);
    EXPECT_EQ(Caption(row), CRect());
}

} // namespace
