// The life of windows: creation, destruction, and which object belongs to which window.
#include "RecordingWindow.h"

#include <gtest/gtest.h>
#include <test_support/ResourceCounts.h>

#include <stdexcept>

namespace {

constexpr UINT deleteMessage = WM_APP + 24;

class HeapWindow : public CWnd
{
public:
    explicit HeapWindow(bool& gone) : m_gone(gone) {}
    ~HeapWindow() override { m_gone = true; }

protected:
    void PostNcDestroy() override { delete this; }
    LRESULT OnDelete(WPARAM, LPARAM)
    {
        DestroyWindow();
        return 5; // the object is gone
    }
    DECLARE_MESSAGE_MAP()

private:
    bool& m_gone;
};

BEGIN_MESSAGE_MAP(HeapWindow, CWnd)
    ON_MESSAGE(deleteMessage, OnDelete)
END_MESSAGE_MAP()

} // namespace

TEST(Window, ReceivesItsFirstMessages)
{
    RecordingWindow window;
    ASSERT_TRUE(window.Open());
    EXPECT_TRUE(IsWindow(window.m_hWnd));
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
    const Calls calls = window.Take();
    EXPECT_TRUE(Contains(calls, L"create recording"));
}

TEST(Window, LetsTheHandlerOfTheFirstMessageRefuse)
{
    RecordingWindow window;
    window.refuseCreation = true;
    EXPECT_FALSE(window.Open());
    EXPECT_EQ(window.m_hWnd, nullptr);
    window.refuseCreation = false;
    EXPECT_TRUE(window.Open());
    EXPECT_FALSE(window.Open()); // it has a window already
}

TEST(Window, ReportsAClassThatDoesNotExist)
{
    CWnd window;
    EXPECT_FALSE(
        window.CreateEx(0, L"no such class", L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    // The refused window must not take the next one that the thread creates.
    const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr,
                                       nullptr, nullptr, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(other), nullptr);
    ::DestroyWindow(other);
}

TEST(Window, IsDestroyedWithItsObject)
{
    HWND handle;
    {
        RecordingWindow window;
        window.Open();
        handle = window;
    }
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(Window, IsForgottenWhenItIsDestroyedFromOutside)
{
    RecordingWindow window;
    window.Open();
    ::DestroyWindow(window);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_TRUE(Contains(window.Take(), L"destroy"));
    EXPECT_TRUE(window.Open()); // can be opened again
}

TEST(Window, OnTheHeapMayDeleteItself)
{
    bool gone = false;
    auto* const window = new HeapWindow(gone);
    ASSERT_TRUE(window->CreateEx(0, nullptr, L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(::SendMessageW(window->m_hWnd, deleteMessage, 0, 0), 5);
    EXPECT_TRUE(gone);
}

TEST(Window, OnTheHeapDeletesItselfAlsoWhenItCannotBeCreated)
{
    bool gone = false;
    auto* const window = new HeapWindow(gone);
    EXPECT_FALSE(
        window->CreateEx(0, L"no such class", L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_TRUE(gone);
}

TEST(Window, IsNotCreatedWhenItsObjectFailsBeforeTheFirstMessage)
{
    class Throwing : public RecordingWindow
    {
    protected:
        void PreSubclassWindow() override { throw std::runtime_error("before the first message"); }
        void PostNcDestroy() override { Note(L"gone"); }
    };
    Throwing window;
    EXPECT_FALSE(window.Open());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.Take(), (Calls{L"gone"}));
}

TEST(Window, CreatesOthersWhileItIsCreated)
{
    class Parent : public RecordingWindow
    {
    public:
        RecordingWindow child;

    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
        {
            const LRESULT result = RecordingWindow::WindowProc(message, wParam, lParam);
            if (message == WM_CREATE) child.Open(WS_CHILD, this);
            return result;
        }
    };
    Parent window;
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(window.child.GetParent(), &window);
    EXPECT_TRUE(Contains(window.child.Take(), L"create recording"));
}

TEST(Window, OfAnotherThreadIsForgottenWithItsObject)
{
    const HWND handle = GetDesktopWindow();
    {
        CWnd window;
        ASSERT_TRUE(window.Attach(handle));
    }
    EXPECT_TRUE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(Window, SubclassesAnExistingOneAndGivesItBack)
{
    const HWND handle = CreateWindowExW(0, L"STATIC", L"text", WS_OVERLAPPED, 0, 0, 5, 5, nullptr,
                                        nullptr, nullptr, nullptr);
    const LONG_PTR procedure = GetWindowLongPtrW(handle, GWLP_WNDPROC);
    RecordingWindow window;
    ASSERT_TRUE(window.SubclassWindow(handle));
    EXPECT_EQ(::SendMessageW(handle, askMessage, 2, 3), 5);
    RecordingWindow second;
    EXPECT_FALSE(second.SubclassWindow(handle)); // the handle has an object already
    EXPECT_EQ(window.UnsubclassWindow(), handle);
    EXPECT_EQ(GetWindowLongPtrW(handle, GWLP_WNDPROC), procedure);
    EXPECT_EQ(::SendMessageW(handle, askMessage, 2, 3), 0);
    EXPECT_TRUE(::DestroyWindow(handle));
}

TEST(Window, AttachesWithoutRouting)
{
    const HWND handle = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 5, 5, nullptr,
                                        nullptr, nullptr, nullptr);
    {
        RecordingWindow window;
        EXPECT_FALSE(window.Attach(nullptr));
        ASSERT_TRUE(window.Attach(handle));
        EXPECT_EQ(window.SendMessage(askMessage, 2, 3), 0);
        EXPECT_EQ(window.Detach(), handle);
        EXPECT_EQ(window.Detach(), nullptr);
    }
    EXPECT_TRUE(IsWindow(handle));
    {
        CWnd window;
        window.Attach(handle);
    }
    EXPECT_FALSE(IsWindow(handle)); // an attached window belongs to its object
}

TEST(Window, HasTemporaryObjectsThatOwnNothing)
{
    const HWND handle = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 5, 5, nullptr,
                                        nullptr, nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(handle);
    EXPECT_EQ(CWnd::FromHandle(handle), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    CWnd::DeleteTempMap();
    EXPECT_TRUE(IsWindow(handle));
    ::DestroyWindow(handle);
}

TEST(Window, OfTheApplicationEndsItsLoop)
{
    CWinApp application;
    RecordingWindow window;
    window.Open();
    application.m_pMainWnd = &window;
    window.DestroyWindow();
    EXPECT_EQ(application.m_pMainWnd, nullptr);
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
}

TEST(Window, LeaksNoUserHandles)
{
    const auto work = [] {
        RecordingWindow window;
        window.Open();
        CWnd child;
        child.Create(L"STATIC", L"", 0, CRect(0, 0, 5, 5), &window, 1);
    };
    for (int i = 0; i < 3; ++i)
        work();
    const DWORD before = test_support::UserObjectCount();
    for (int i = 0; i < 100; ++i)
        work();
    EXPECT_LE(test_support::UserObjectCount(), before + 2);
}

TEST(WindowClass, IsRegisteredOnce)
{
    const CString name = AfxRegisterWndClass(CS_HREDRAW, LoadCursorW(nullptr, IDC_ARROW));
    EXPECT_FALSE(name.IsEmpty());
    EXPECT_EQ(CString(AfxRegisterWndClass(CS_HREDRAW, LoadCursorW(nullptr, IDC_ARROW))), name);
    EXPECT_NE(CString(AfxRegisterWndClass(CS_VREDRAW, LoadCursorW(nullptr, IDC_ARROW))), name);
    WNDCLASS description = {};
    EXPECT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), name, &description));
    EXPECT_EQ(description.style, static_cast<UINT>(CS_HREDRAW));
}
