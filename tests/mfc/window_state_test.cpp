// The queries and settings of windows: family, place, state, and the items of a combo box.
#include "RecordingWindow.h"

#include <gtest/gtest.h>

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
