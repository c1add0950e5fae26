#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/ResourceCounts.h>

#include <afxwin.h>

#include <functional>
#include <memory>
#include <thread>

namespace {

constexpr DWORD waitLimit = 30000; // milliseconds; far more than is ever needed

// A worker's view of its own thread.
struct Observation
{
    CWinThread* thread = nullptr;
    CWnd* mainWindow = nullptr;
    HWND mainHandle = nullptr;
    DWORD id = 0;
};

UINT __cdecl Observe(LPVOID parameter)
{
    auto& seen = *static_cast<Observation*>(parameter);
    seen.thread = AfxGetThread();
    seen.mainWindow = AfxGetMainWnd();
    seen.mainHandle = seen.mainWindow ? seen.mainWindow->GetSafeHwnd() : nullptr;
    seen.id = GetCurrentThreadId();
    return 42;
}

UINT __cdecl SetEventOf(LPVOID event)
{
    SetEvent(event);
    return 0;
}

// Runs Observe on a thread of the framework and returns its exit code.
DWORD RunObserver(Observation& seen)
{
    CWinThread* const thread =
        AfxBeginThread(&Observe, &seen, THREAD_PRIORITY_NORMAL, 0, CREATE_SUSPENDED);
    if (!thread) return 0;
    thread->m_bAutoDelete = FALSE;
    const std::unique_ptr<CWinThread> owner(thread);
    thread->ResumeThread();
    EXPECT_EQ(WaitForSingleObject(thread->m_hThread, waitLimit), WAIT_OBJECT_0);
    EXPECT_EQ(seen.thread, thread);
    EXPECT_EQ(seen.id, thread->m_nThreadID);
    DWORD code = 0;
    GetExitCodeThread(thread->m_hThread, &code);
    return code;
}

} // namespace

TEST(Thread, RunsItsProcedureAndAnswersItsCode)
{
    Observation seen;
    EXPECT_EQ(RunObserver(seen), 42u);
    EXPECT_NE(seen.id, GetCurrentThreadId());
    EXPECT_EQ(seen.mainWindow, nullptr); // there is no application
}

TEST(Thread, HasAnObjectOfItsOwnForTheApplicationsMainWindow)
{
    CWinApp application;
    CWnd main;
    ASSERT_TRUE(main.CreateEx(0, nullptr, L"main", WS_OVERLAPPED, CRect(0, 0, 10, 10), nullptr, 0));
    application.m_pMainWnd = &main;
    EXPECT_EQ(AfxGetMainWnd(), &main);
    Observation seen;
    RunObserver(seen);
    EXPECT_NE(seen.mainWindow, nullptr);
    EXPECT_NE(seen.mainWindow, &main);
    EXPECT_EQ(seen.mainHandle, main.m_hWnd);
    EXPECT_TRUE(IsWindow(main.m_hWnd)); // the worker's end left the window alone
    application.m_pMainWnd = nullptr;
}

TEST(Thread, DeletesItselfWhenItEnds)
{
    const base::Event ran(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    CWinThread* const thread =
        AfxBeginThread(&SetEventOf, ran.get(), THREAD_PRIORITY_BELOW_NORMAL, 0, CREATE_SUSPENDED);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->GetThreadPriority(), THREAD_PRIORITY_BELOW_NORMAL);
    base::Thread handle;
    DuplicateHandle(GetCurrentProcess(), thread->m_hThread, GetCurrentProcess(), handle.put(),
                    SYNCHRONIZE, FALSE, 0);
    thread->ResumeThread();
    EXPECT_EQ(WaitForSingleObject(ran.get(), waitLimit), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(handle.get(), waitLimit), WAIT_OBJECT_0);
}

TEST(Thread, LeaksNoHandles)
{
    const auto run = [](int count) {
        for (int i = 0; i < count; ++i) {
            Observation seen;
            RunObserver(seen);
        }
    };
    run(5); // lets the first threads fill caches
    const DWORD before = test_support::HandleCount();
    run(50);
    EXPECT_LE(test_support::HandleCount(), before + 5);
}

TEST(Thread, WithoutTheFrameworkHasNoObject)
{
    CWinApp application;
    CWinThread* seen = &application;
    std::thread([&] { seen = AfxGetThread(); }).join();
    EXPECT_EQ(seen, nullptr);
    EXPECT_EQ(AfxGetThread(), &application);
}

TEST(Window, OfAHandleHasItAgainAfterItsTemporaryObjectLostIt)
{
    CWnd own;
    own.CreateEx(0, nullptr, L"", WS_OVERLAPPED, CRect(0, 0, 10, 10), nullptr, 0);
    const HWND window = own.Detach();
    EXPECT_EQ(CWnd::FromHandle(window)->Detach(), window);
    EXPECT_EQ(CWnd::FromHandle(window)->m_hWnd, window);
    EXPECT_TRUE(CWnd::FromHandle(window)->DestroyWindow());
    EXPECT_EQ(CWnd::FromHandle(window)->m_hWnd, window); // another window may have it
    CWnd::DeleteTempMap();
}

TEST(Thread, EachHasItsOwnTemporaryObjects)
{
    const HWND desktop = GetDesktopWindow();
    CWnd* const here = CWnd::FromHandle(desktop);
    CWnd* there = nullptr;
    std::thread([&] { there = CWnd::FromHandle(desktop); }).join();
    EXPECT_NE(there, nullptr);
    EXPECT_NE(here, there);
    EXPECT_EQ(CWnd::FromHandle(desktop), here);
}

// Tests of the application's message loop.
namespace {

constexpr UINT quitMessage = WM_APP + 7;
constexpr UINT nestMessage = WM_APP + 8;

// Marks the thread's temporary object of the desktop window, to see whether it stays the same one.
// The mark is a handle that no window has, because the shell's window may be the desktop itself.
void MarkTemporaryDesktop()
{
    CWnd::FromHandle(GetDesktopWindow())->m_hWnd = HWND_MESSAGE;
}

bool TemporaryDesktopIsMarked()
{
    return CWnd::FromHandle(GetDesktopWindow())->m_hWnd != GetDesktopWindow();
}

class QuittingWindow : public CWnd
{
public:
    std::function<void()> nested = [] {};
    bool keptInNestedLoop = false;

protected:
    LRESULT OnNest(WPARAM, LPARAM)
    {
        MarkTemporaryDesktop();
        nested();
        keptInNestedLoop = TemporaryDesktopIsMarked();
        CWnd::DeleteTempMap();
        PostMessage(quitMessage);
        return 0;
    }
    LRESULT OnQuit(WPARAM wParam, LPARAM)
    {
        PostQuitMessage(static_cast<int>(wParam));
        return 0;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(QuittingWindow, CWnd)
    ON_MESSAGE(nestMessage, OnNest)
    ON_MESSAGE(quitMessage, OnQuit)
END_MESSAGE_MAP()

class LoopApplication : public CWinApp
{
public:
    // The main window's end asks the thread to quit; the next test must not see that request.
    ~LoopApplication() override
    {
        window.DestroyWindow();
        MSG message;
        PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    }
    BOOL InitInstance() override
    {
        window.CreateEx(0, nullptr, L"loop", WS_OVERLAPPED, CRect(0, 0, 10, 10), nullptr, 0);
        m_pMainWnd = &window;
        if (refuse) return FALSE;
        start();
        return TRUE;
    }
    BOOL OnIdle(LONG count) override
    {
        ++idles;
        CWinApp::OnIdle(count);
        if (idles == 1) window.PostMessage(WM_NULL);
        return count < 2;
    }
    BOOL PreTranslateMessage(MSG* message) override
    {
        translated += message->message == quitMessage;
        if (message->message == WM_MOUSEMOVE) idlesAtMove = idles;
        if (message->message == quitMessage) idlesAtQuit = idles;
        return CWinApp::PreTranslateMessage(message);
    }
    // A posted move has the place of the pointer, which any program on the desktop may move.
    BOOL IsIdleMessage(MSG* message) override
    {
        if (message->message == WM_MOUSEMOVE) message->pt = {1, 1};
        return CWinApp::IsIdleMessage(message);
    }
    int ExitInstance() override
    {
        ++exits;
        windowAtExit = window.m_hWnd;
        return CWinApp::ExitInstance();
    }

    QuittingWindow window;
    std::function<void()> start = [] {};
    bool refuse = false;
    int idles = 0;
    int idlesAtMove = -1;
    int idlesAtQuit = -1;
    int exits = 0;
    int translated = 0;
    HWND windowAtExit = nullptr;
};

void CALLBACK QuitByTimer(HWND window, UINT, UINT_PTR, DWORD)
{
    PostMessageW(window, quitMessage, 0, 0);
}

int RunApplication()
{
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_HIDE);
}

} // namespace

TEST(MessageLoop, RunsUntilItIsToldToQuit)
{
    LoopApplication application;
    application.start = [&] { application.window.PostMessage(quitMessage, 33); };
    EXPECT_EQ(RunApplication(), 33);
    EXPECT_EQ(application.exits, 1);
    EXPECT_EQ(application.translated, 1);
    EXPECT_EQ(application.m_nCmdShow, SW_HIDE);
}

TEST(MessageLoop, EndsWhenTheMainWindowIsDestroyed)
{
    LoopApplication application;
    application.start = [&] { application.window.PostMessage(WM_CLOSE); };
    EXPECT_EQ(RunApplication(), 0);
    EXPECT_EQ(application.m_pMainWnd, nullptr);
    EXPECT_EQ(application.windowAtExit, nullptr);
}

TEST(MessageLoop, IsIdleWhenTheQueueIsEmpty)
{
    LoopApplication application;
    application.start = [&] { application.window.SetTimer(1, 50, &QuitByTimer); };
    EXPECT_EQ(RunApplication(), 0);
    EXPECT_GE(application.idles, 3); // asked again until it reports that it is done
}

TEST(MessageLoop, OnlyARedundantMouseMoveIsNoReasonToBeIdle)
{
    CWinThread thread;
    const auto isReason = [&](UINT message, POINT at) {
        MSG queued = {nullptr, message, 0, 0, 0, at};
        return thread.IsIdleMessage(&queued) != FALSE;
    };
    EXPECT_TRUE(isReason(WM_MOUSEMOVE, {0, 0}));
    EXPECT_FALSE(isReason(WM_MOUSEMOVE, {0, 0}));
    EXPECT_TRUE(isReason(WM_MOUSEMOVE, {1, 0}));
    EXPECT_TRUE(isReason(WM_MOUSEMOVE, {1, 1}));
    EXPECT_FALSE(isReason(WM_PAINT, {5, 5}));
    EXPECT_FALSE(isReason(0x0118, {5, 5})) << "the caret";
    EXPECT_TRUE(isReason(WM_TIMER, {5, 5}));
    EXPECT_TRUE(isReason(WM_LBUTTONDOWN, {1, 1}));
    EXPECT_FALSE(isReason(WM_MOUSEMOVE, {1, 1}));
    EXPECT_TRUE(isReason(WM_NCMOUSEMOVE, {1, 1}));
    EXPECT_FALSE(isReason(WM_NCMOUSEMOVE, {1, 1}));
    EXPECT_TRUE(isReason(WM_MOUSEMOVE, {1, 1}));
}

// The queue has been empty for a while before each message.
TEST(MessageLoop, IsNotIdleAgainAfterRedundantMouseMovesAlone)
{
    LoopApplication application;
    std::thread sender;
    application.start = [&] {
        sender = std::thread([window = application.window.m_hWnd] {
            for (const UINT message : std::initializer_list<UINT>{WM_MOUSEMOVE, WM_MOUSEMOVE,
                                                                  WM_MOUSEMOVE, quitMessage}) {
                Sleep(50);
                PostMessageW(window, message, 0, 0);
            }
        });
    };
    EXPECT_EQ(RunApplication(), 0);
    sender.join();
    EXPECT_GE(application.idlesAtMove, 3);
    EXPECT_EQ(application.idlesAtQuit, application.idlesAtMove);
}

TEST(MessageLoop, FreesTemporaryObjectsWhenItIsIdle)
{
    LoopApplication application;
    application.start = [&] {
        MarkTemporaryDesktop();
        application.window.SetTimer(1, 50, &QuitByTimer);
    };
    EXPECT_EQ(RunApplication(), 0);
    EXPECT_FALSE(TemporaryDesktopIsMarked());
}

TEST(MessageLoop, KeepsTemporaryObjectsOfHandlersInNestedLoops)
{
    LoopApplication application;
    application.window.nested = [&] { application.CWinApp::OnIdle(0); };
    application.start = [&] { application.window.PostMessage(nestMessage); };
    EXPECT_EQ(RunApplication(), 0);
    EXPECT_TRUE(application.window.keptInNestedLoop);
}

TEST(MessageLoop, IsNotEnteredWhenTheApplicationRefusesToStart)
{
    LoopApplication application;
    application.refuse = true;
    RunApplication();
    EXPECT_EQ(application.exits, 1);
    EXPECT_EQ(application.windowAtExit, nullptr); // the main window was destroyed already
}

TEST(MessageLoop, EndsAtOnceWithoutAMainWindow)
{
    class Windowless : public CWinApp
    {
        BOOL InitInstance() override { return TRUE; }
    };
    const Windowless application;
    EXPECT_EQ(RunApplication(), 0);
}

TEST(MessageLoop, NeedsAnApplication)
{
    EXPECT_EQ(RunApplication(), -1);
}
