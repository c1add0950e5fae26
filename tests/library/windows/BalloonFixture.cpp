#include "BalloonFixture.h"

#include <atomic>
#include <mutex>
#include <set>

CWinApp application(L"balloon_message_test");

namespace {

constexpr UINT_PTR tipTimer = 8345;

UINT s_lastTime = 0;

UINT_PTR WINAPI WatchingSetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure)
{
    if (id == tipTimer) s_lastTime = milliseconds;
    return SetTimer(window, id, milliseconds, procedure);
}

constexpr UINT showBalloon = 0x83E8;

std::mutex s_mutex;
std::set<const void*> s_alive;
int s_posted = 0;
std::atomic<bool> s_refusing = false;
BOOL WINAPI CountingPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != showBalloon) return PostMessageW(window, message, wParam, lParam);
    const auto* const request = reinterpret_cast<const void*>(wParam);
    {
        const std::lock_guard lock(s_mutex);
        ++s_posted;
        s_alive.insert(request);
    }
    return !s_refusing && PostMessageW(window, message, wParam, lParam);
}

void CountingDelete(void* block, std::size_t size)
{
    {
        const std::lock_guard lock(s_mutex);
        s_alive.erase(block);
    }
    ::operator delete(block, size);
}

// The compiler's name for the sized operator delete.
#ifdef _WIN64
constexpr const char* sizedDelete = "_ZdlPvy";
#else
constexpr const char* sizedDelete = "_ZdlPvj";
#endif

} // namespace

// The hooks see the library's calls only, not this program's own.
RequestCounter::RequestCounter()
    : m_post(L"Utils_Statics.dll", "PostMessageW", &CountingPostMessage),
      m_delete(L"Utils_Statics.dll", sizedDelete, &CountingDelete)
{
    const std::lock_guard lock(s_mutex);
    s_alive.clear();
    s_posted = 0;
    s_refusing = false;
}

int RequestCounter::Posted() const
{
    const std::lock_guard lock(s_mutex);
    return s_posted;
}

int RequestCounter::Alive() const
{
    const std::lock_guard lock(s_mutex);
    return static_cast<int>(s_alive.size());
}

void RequestCounter::Refuse()
{
    s_refusing = true;
}

BalloonTest::BalloonTest() : m_setTimer(L"Utils_Statics.dll", "SetTimer", &WatchingSetTimer)
{
    utilsExam::SetConsoleType(eConsoleUnknown);
    BalloonMessageService::Create();
}

BalloonTest::~BalloonTest()
{
    BalloonMessageService::Destroy();
    EXPECT_EQ(m_requests.Alive(), 0);
    EXPECT_TRUE(TipWindows().empty());
    EXPECT_TRUE(MessageOnlyWindows().empty());
    utilsExam::SetConsoleType(eConsoleUnknown);
}

HWND BalloonTest::WaitForTip(const std::wstring& text)
{
    const bool shown = PumpUntil([&] { return ShownTip() && ShowsText(ShownTip(), text); }, 3000);
    return shown ? ShownTip() : nullptr;
}

UINT BalloonTest::LastTime()
{
    return s_lastTime;
}

void BalloonTest::ExpectPointer(HWND tip, POINT at)
{
    ASSERT_TRUE(tip);
    RECT area;
    GetWindowRect(tip, &area);
    // The balloon stands on its point, hangs from it, or is moved to stay on the screen.
    const int width = GetSystemMetrics(SM_CXSCREEN);
    EXPECT_LE(area.left, at.x);
    EXPECT_TRUE(area.right >= at.x || area.right >= width);
    EXPECT_TRUE(area.top == at.y || area.bottom == at.y) << area.top << ' ' << area.bottom;
}
