#include "BalloonFixture.h"

CWinApp application(L"balloon_message_test");

namespace {

constexpr UINT_PTR tipTimer = 8345;

UINT s_lastTime = 0;

UINT_PTR WINAPI WatchingSetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure)
{
    if (id == tipTimer) s_lastTime = milliseconds;
    return SetTimer(window, id, milliseconds, procedure);
}

} // namespace

BalloonTest::BalloonTest()
    : m_setTimer(L"Utils_Statics.dll", "SetTimer", reinterpret_cast<void*>(&WatchingSetTimer))
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
