// The message maps of windows: which handler is called, with which arguments, and which exceptions
// it must not let out.
#include "RecordingWindow.h"

#include <gtest/gtest.h>
#include <test_support/Messages.h>

namespace {

// Overrides one entry of its base class and leaves the others.
class DerivedWindow : public RecordingWindow
{
protected:
    afx_msg void OnDerivedCommand() { Note(L"command of the derived class"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedWindow, RecordingWindow)
    ON_COMMAND(100, OnDerivedCommand)
END_MESSAGE_MAP()

} // namespace

TEST(Window, TranslatesTheParametersOfMessages)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    window.SendMessage(WM_SIZE, SIZE_MAXIMIZED, MAKELPARAM(40000, 5));
    window.SendMessage(WM_MOVE, 0, MAKELPARAM(0xFFFF, 7));
    window.SendMessage(WM_TIMER, 8345, 0);
    window.SendMessage(WM_KEYDOWN, VK_ESCAPE, 0x00010001);
    window.SendMessage(WM_KEYUP, VK_ESCAPE, static_cast<LPARAM>(0xC0010001u));
    window.SendMessage(WM_CHAR, L'x', 2);
    window.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(0xFFFE, 12));
    window.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, 0xFF88), MAKELPARAM(3, 4));
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 2));
    window.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(1, 2));
    window.SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(window.m_hWnd),
                       MAKELPARAM(HTERROR, WM_MOUSEMOVE));
    window.SendMessage(WM_CLOSE);
    EXPECT_EQ(window.Take(),
              (Calls{L"size 2 40000 5", L"move -1 7", L"timer 8345", L"down 27 1 1",
                     L"up 27 1 49153", L"char 120 2 0", L"mouse 1 -2 12", L"wheel 4 -120 3 4",
                     L"left 1 1 2", L"left up 0 1 2", L"cursor 1 65534 512", L"close"}));
    EXPECT_TRUE(IsWindow(window)); // the handler of WM_CLOSE did not pass it on
}

TEST(Window, AnswersApplicationMessages)
{
    RecordingWindow window;
    window.Open();
    EXPECT_EQ(window.SendMessage(askMessage, 40, 2), 42);
    EXPECT_EQ(window.SendMessage(WM_APP + 999, 1, 1), 0);
}

TEST(Window, PaintsAndErases)
{
    RecordingWindow window;
    window.Open(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    window.UpdateWindow();
    test_support::Pump();
    window.Take();
    window.eraseItself = true;
    window.Invalidate();
    window.UpdateWindow();
    const Calls calls = window.Take();
    EXPECT_TRUE(Contains(calls, L"paint"));
    EXPECT_TRUE(Contains(calls, L"erase 1"));
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
}

TEST(Window, RoutesCommandsToTheMostDerivedHandler)
{
    DerivedWindow window;
    window.Open();
    window.Take();
    window.SendMessage(WM_COMMAND, MAKEWPARAM(100, 0), 0);
    window.SendMessage(WM_COMMAND, MAKEWPARAM(101, 1), 0); // an accelerator
    window.SendMessage(WM_COMMAND, MAKEWPARAM(102, 0), 0);
    EXPECT_EQ(window.Take(), (Calls{L"command of the derived class", L"chosen"}));
    EXPECT_EQ(window.SendMessage(askMessage, 1, 2), 3); // an entry of the base class
}

TEST(Window, LetsNoExceptionOut)
{
    RecordingWindow window;
    window.Open(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    EXPECT_EQ(window.SendMessage(throwMessage), 0);
    window.UpdateWindow();
    test_support::Pump(); // a new window may be exposed once more
    window.throwInPaint = true;
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE)); // otherwise it would be painted for ever
    RecordingWindow other;
    other.throwInCreation = true;
    EXPECT_FALSE(other.Open());
    EXPECT_EQ(other.m_hWnd, nullptr);
}

TEST(Window, DefaultsOutsideOfAMessageDoNothing)
{
    class Caller : public CWnd
    {
    public:
        using CWnd::OnPaint;
    };
    Caller window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(CWnd::GetCurrentMessage(), nullptr);
    window.OnPaint();
    EXPECT_TRUE(IsWindow(window));
}

TEST(Window, MayBeOfAControlsClassFromItsFirstMessageOn)
{
    class Hidden : public RecordingWindow
    {
    };
    Hidden window;
    ASSERT_TRUE(
        window.CWnd::CreateEx(0, L"Static", L"message only", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr));
    EXPECT_EQ(window.Take(), (Calls{L"create message only"}));
    EXPECT_EQ(window.SendMessage(askMessage, 1, 1), 2);
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, L"message only");
    wchar_t name[20] = {};
    GetClassNameW(window, name, 20);
    EXPECT_STREQ(name, L"Static");
}

TEST(Window, ReceivesItsTimers)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    EXPECT_NE(window.SetTimer(8345, 10, nullptr), 0u);
    EXPECT_TRUE(test_support::PumpUntil([&] { return Contains(window.calls, L"timer 8345"); }));
    EXPECT_TRUE(window.KillTimer(8345));
}
