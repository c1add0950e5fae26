// BalloonMessageService from many threads at once.
#include "BalloonFixture.h"

#include <atomic>
#include <thread>
#include <vector>

using Service = BalloonMessageService;

namespace {

constexpr int threadCount = 8;

// Eight threads that raise notices, with an equal share each.
class Raisers
{
public:
    explicit Raisers(int each, bool logged = false)
    {
        for (int thread = 0; thread < threadCount; ++thread)
            m_threads.emplace_back([=, this] { Raise(thread, each, logged); });
    }
    ~Raisers() { Join(); }
    Raisers(const Raisers&) = delete;
    Raisers& operator=(const Raisers&) = delete;

    bool AreDone() const { return m_done == threadCount; }
    void Join() { m_threads.clear(); }

private:
    void Raise(int thread, int each, bool logged)
    {
        const Service service("exam/threads", thread, logged,
                              static_cast<Service::MsgType>(thread % 4));
        const wchar_t* const none = nullptr;
        for (int i = 0; i < each; ++i) {
            switch (i % 4) {
            case 0: service(60000u, L"title", L"%d of %d %s", i, thread, L"text"); break;
            case 1: service(L"%d without title", i); break;
            case 2: service(60000u, L"", L"%s%s", none, L"null argument"); break;
            default:
                service(1000u,
                        std::wstring(static_cast<std::size_t>(i) * 97 % 20000, L'z').c_str());
                break;
            }
        }
        ++m_done;
    }

    std::atomic<int> m_done = 0;
    std::vector<std::jthread> m_threads;
};

class BalloonThreadsTest : public BalloonTest
{
};

} // namespace

TEST_F(BalloonThreadsTest, EveryNoticeReachesTheWindow)
{
    constexpr int each = 50;
    Raisers raisers(each);
    EXPECT_TRUE(PumpUntil([&] { return raisers.AreDone(); }, 60000));
    EXPECT_TRUE(PumpUntil([&] { return m_requests.Alive() == 0; }, 60000));
    EXPECT_EQ(m_requests.Posted(), threadCount * each);
}

TEST_F(BalloonThreadsTest, EveryNoticeIsLoggedOnce)
{
    Service::Destroy();
    constexpr int each = 40;
    Raisers raisers(each, true);
    raisers.Join();
    EXPECT_EQ(m_log.Take().size(), std::size_t{threadCount * each});
    EXPECT_EQ(m_requests.Posted(), 0);
}

// The queue of a window holds 10,000 messages.
TEST_F(BalloonThreadsTest, AFullQueueLosesNoticesButNoMemory)
{
    Raisers raisers(1500);
    raisers.Join();
    EXPECT_EQ(m_requests.Posted(), threadCount * 1500);
    EXPECT_LE(m_requests.Alive(), threadCount * 1500);
    Service::Destroy();
    EXPECT_EQ(m_requests.Alive(), 0);
}

TEST_F(BalloonThreadsTest, TheServiceMayComeAndGoMeanwhile)
{
    Raisers raisers(1000);
    while (!raisers.AreDone()) {
        Service::Destroy();
        Service::Create();
        Pump();
        Service::Create();
    }
    raisers.Join();
    Service::Destroy();
    EXPECT_EQ(m_requests.Alive(), 0);
    EXPECT_GT(m_requests.Posted(), 0);
}

TEST_F(BalloonThreadsTest, TheWindowMayBeDestroyedByOthersMeanwhile)
{
    int cut = 0; // rounds that ended with notices still to come
    for (int i = 0; i < 5; ++i) {
        Service::Create();
        const HWND window = MessageOnlyWindows().at(0);
        const int before = m_requests.Posted();
        Raisers raisers(1000);
        while (m_requests.Posted() == before) // dispatches nothing, so that requests wait
            SwitchToThread();
        DestroyWindow(window);
        if (m_requests.Posted() - before < threadCount * 1000) ++cut;
        raisers.Join();
        EXPECT_EQ(m_requests.Alive(), 0);
    }
    EXPECT_GT(cut, 0);
}

// A thread has no main window of the framework, so the desktop counts.
TEST_F(BalloonThreadsTest, StandsOnTheDesktopWhenAnotherThreadRaisesIt)
{
    CWnd main;
    main.CreateEx(0, nullptr, L"main", WS_POPUP, CRect(0, 0, 1100, 800), nullptr, 0);
    application.m_pMainWnd = &main;
    std::jthread([] {
        Service("exam/threads", 1, false, Service::error)(60000u, L"title", L"from elsewhere");
    }).join();
    CRect desktop;
    GetClientRect(GetDesktopWindow(), &desktop);
    ExpectPointer(WaitForTip(L"from elsewhere"),
                  {(desktop.Width() + 1024) / 2, (desktop.Height() + 768) / 2});
    application.m_pMainWnd = nullptr;
}
