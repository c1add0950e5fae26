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

// The queries and settings of windows: family, place, state, and the items of a combo box.

TEST(Window, KnowsItsFamily)
{
    RecordingWindow parent;
    parent.Open();
    CWnd child;
    ASSERT_TRUE(child.Create(L"STATIC", L"child", WS_VISIBLE, CRect(1, 2, 11, 22), &parent, 7));
    EXPECT_EQ(child.GetParent(), &parent);
    EXPECT_EQ(parent.GetDlgItem(7), &child);
    EXPECT_EQ(child.GetDlgCtrlID(), 7);
    EXPECT_TRUE(parent.IsChild(&child));
    EXPECT_FALSE(child.IsChild(nullptr));
    CRect client;
    child.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 10, 20));
    CPoint point(0, 0);
    child.ClientToScreen(&point);
    parent.ScreenToClient(&point);
    EXPECT_EQ(point, CPoint(1, 2));
    CRect rect;
    child.GetWindowRect(&rect);
    parent.ScreenToClient(&rect);
    EXPECT_EQ(rect, CRect(1, 2, 11, 22));
    parent.DestroyWindow();
    EXPECT_EQ(child.m_hWnd, nullptr); // children go with their parent
}

TEST(Window, AnswersItsParentWhereItHasNoOwner)
{
    RecordingWindow main, owned;
    main.Open();
    owned.Open(WS_OVERLAPPEDWINDOW, &main);
    CWnd child;
    ASSERT_TRUE(child.Create(L"STATIC", L"", 0, CRect(0, 0, 1, 1), &owned, 7));
    EXPECT_EQ(main.GetOwner(), nullptr);
    EXPECT_EQ(owned.GetOwner(), &main);
    EXPECT_EQ(child.GetOwner(), &owned);
}

TEST(Window, ChangesItsState)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    EXPECT_FALSE(window.EnableWindow(FALSE));
    EXPECT_FALSE(window.IsWindowEnabled());
    window.EndModalState();
    EXPECT_TRUE(window.IsWindowEnabled());
    window.BeginModalState();
    EXPECT_FALSE(window.IsWindowEnabled());
    window.EnableWindow();
    EXPECT_EQ(window.Take(), (Calls{L"enable 0", L"enable 1", L"enable 0", L"enable 1"}));
    window.ShowWindow(SW_SHOWNOACTIVATE);
    EXPECT_TRUE(window.IsWindowVisible());
    EXPECT_TRUE(Contains(window.Take(), L"show 1 0"));
    window.SetWindowText(L"new text");
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, L"new text");
    EXPECT_TRUE(window.ModifyStyle(WS_MAXIMIZEBOX, WS_HSCROLL, SWP_FRAMECHANGED));
    EXPECT_FALSE(window.ModifyStyle(WS_MAXIMIZEBOX, WS_HSCROLL));
    EXPECT_EQ(window.GetStyle() & (WS_MAXIMIZEBOX | WS_HSCROLL), static_cast<DWORD>(WS_HSCROLL));
    window.MoveWindow(CRect(5, 6, 305, 206));
    CRect rect;
    window.GetWindowRect(&rect);
    EXPECT_EQ(rect.Size(), CSize(300, 200));
    CFont font;
    font.CreatePointFont(90, L"Arial");
    CWnd label;
    label.Create(L"STATIC", L"", 0, CRect(0, 0, 5, 5), &window, 1);
    label.SetFont(&font);
    EXPECT_EQ(label.GetFont(), &font);
}

TEST(ComboBox, KeepsItems)
{
    RecordingWindow parent;
    parent.Open();
    CComboBox box;
    ASSERT_TRUE(box.Create(WS_VISIBLE | CBS_DROPDOWNLIST, CRect(0, 0, 100, 200), &parent, 7));
    EXPECT_EQ(box.GetCount(), 0);
    EXPECT_EQ(box.AddString(L"one"), 0);
    EXPECT_EQ(box.AddString(L"three"), 1);
    EXPECT_EQ(box.InsertString(1, L"two"), 1);
    EXPECT_EQ(box.GetCount(), 3);
    CString text;
    box.GetLBText(1, text);
    EXPECT_EQ(text, L"two");
    box.GetLBText(9, text);
    EXPECT_EQ(text, L"two");
    EXPECT_EQ(box.FindStringExact(-1, L"three"), 2);
    EXPECT_EQ(box.GetCurSel(), CB_ERR);
    EXPECT_EQ(box.SetCurSel(2), 2);
    EXPECT_EQ(box.GetCurSel(), 2);
    EXPECT_GT(box.GetItemHeight(-1), 0);
    EXPECT_EQ(box.DeleteString(0), 2);
    parent.Take();
    parent.SendMessage(WM_COMMAND, MAKEWPARAM(7, CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(box.m_hWnd));
    EXPECT_EQ(parent.Take(), (Calls{L"selection"}));
    box.ResetContent();
    EXPECT_EQ(box.GetCount(), 0);
}
