// Combo boxes, toggle keys and fonts.
#include <gtest/gtest.h>
#include <test_support/ExamWindow.h>
#include <Utils_Statics/utilsExam.h>

#include <climits>
#include <optional>

using test_support::ExamWindow;

CWinApp theApplication;

namespace {

constexpr int itemCount = 20;

class ComboBoxTest : public testing::Test
{
protected:
    ComboBoxTest()
    {
        m_parent.Attach(m_window.Handle());
        box.Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST | CBS_NOINTEGRALHEIGHT,
                   CRect(10, 12, 130, 40), &m_parent, 1);
        for (int i = 0; i < itemCount; ++i)
            box.AddString(L"item");
    }
    ~ComboBoxTest() override
    {
        box.DestroyWindow();
        m_parent.Detach();
    }

    // The height of the dropped list, in selection fields; the list's own border is less than a
    // quarter of one.
    double ListFields()
    {
        COMBOBOXINFO parts = {};
        parts.cbSize = sizeof parts;
        GetComboBoxInfo(box.GetSafeHwnd(), &parts);
        box.ShowDropDown();
        CRect list;
        GetWindowRect(parts.hwndList, &list);
        box.ShowDropDown(FALSE);
        return static_cast<double>(list.Height()) / box.GetItemHeight(-1);
    }
    CRect Place()
    {
        CRect rect;
        box.GetWindowRect(&rect);
        return rect;
    }

private:
    ExamWindow m_window;
    CWnd m_parent;

protected:
    CComboBox box;
};

TEST_F(ComboBoxTest, ShowsAsManyItemsAsAskedFor)
{
    for (const int count : {4, 1, 7}) {
        utilsExam::SetComboBoxDropdownHeight(box, count, 10);
        EXPECT_NEAR(ListFields(), count, 0.25);
    }
}

TEST_F(ComboBoxTest, ShowsNoMoreThanTheMost)
{
    utilsExam::SetComboBoxDropdownHeight(box, 8, 3);
    EXPECT_NEAR(ListFields(), 3, 0.25);
    utilsExam::SetComboBoxDropdownHeight(box, 0, 5);
    EXPECT_NEAR(ListFields(), 5, 0.25);
    utilsExam::SetComboBoxDropdownHeight(box, 3, 3);
    EXPECT_NEAR(ListFields(), 3, 0.25);
}

TEST_F(ComboBoxTest, StaysWhereItIsAndAsWide)
{
    const CRect before = Place();
    utilsExam::SetComboBoxDropdownHeight(box, 4, 10);
    EXPECT_EQ(Place().TopLeft(), before.TopLeft());
    EXPECT_EQ(Place().Width(), before.Width());
    box.ShowDropDown();
    EXPECT_TRUE(box.GetDroppedState());
    box.ShowDropDown(FALSE);
}

std::optional<CSize> s_askedFor;
UINT s_flags;

LRESULT CALLBACK RecordSize(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
WNDPROC s_before;

LRESULT CALLBACK RecordSize(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_WINDOWPOSCHANGING && !s_askedFor) {
        const auto* const position = reinterpret_cast<WINDOWPOS*>(lParam);
        s_askedFor = CSize(position->cx, position->cy);
        s_flags = position->flags;
    }
    return CallWindowProcW(s_before, window, message, wParam, lParam);
}

// The size that the box is told to take, whatever it makes of it.
TEST_F(ComboBoxTest, IsResizedByItsSelectionFieldTimesTheItems)
{
    const CRect before = Place();
    const int field = box.GetItemHeight(-1);
    s_before = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
        box.GetSafeHwnd(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&RecordSize)));
    const struct
    {
        int count, most, fields;
    } rows[] = {{4, 10, 4}, {0, 30, itemCount}, {0, 10, 10}, {20, 10, 10},
                {1, 10, 1}, {4, 0, 0},          {4, -1, -1}};
    for (const auto& row : rows) {
        const CRect now = Place();
        s_askedFor.reset();
        utilsExam::SetComboBoxDropdownHeight(box, row.count, row.most);
        ASSERT_TRUE(s_askedFor);
        EXPECT_EQ(*s_askedFor, CSize(now.Width(), now.Height() + row.fields * field));
        EXPECT_EQ(s_flags & (SWP_NOMOVE | SWP_NOZORDER | SWP_NOSIZE), SWP_NOMOVE | SWP_NOZORDER);
    }
    box.ResetContent();
    s_askedFor.reset();
    const CRect now = Place();
    utilsExam::SetComboBoxDropdownHeight(box, 0, 10);
    EXPECT_EQ(*s_askedFor, CSize(now.Width(), now.Height() + field)) << "one item at least";
    utilsExam::SetComboBoxDropdownHeight(box, INT_MAX, INT_MAX); // wraps around
    EXPECT_EQ(Place().TopLeft(), before.TopLeft());
}

TEST(EmptyComboBox, IsLeftAlone)
{
    CComboBox box;
    utilsExam::SetComboBoxDropdownHeight(box, 4, 10);
    EXPECT_EQ(box.GetSafeHwnd(), nullptr);
}

// ---- Toggle keys

struct Key
{
    UINT message;
    WPARAM key;
    UINT scanCode;
    bool isExtended;

    friend bool operator==(const Key&, const Key&) = default;
};

class ToggleKeyTest : public testing::Test
{
protected:
    ToggleKeyTest()
    {
        SetForegroundWindow(m_window.Handle());
        ::SetFocus(m_window.Handle());
        TakeKeys();
    }
    ~ToggleKeyTest() override
    {
        for (const int key : {VK_CAPITAL, VK_NUMLOCK})
            Set(static_cast<unsigned char>(key), 0);
    }

    void Set(unsigned char key, int on)
    {
        utilsExam::SetKeyState(key, on);
        keys = TakeKeys();
    }
    static bool IsOn(int key) { return (GetKeyState(key) & 1) != 0; }

    std::vector<Key> keys; // the keys that the last setting pressed

private:
    // The keys pressed since then. A thread's key state follows the messages that it takes.
    // Synthesised keys are in its queue when the call that made them returns.
    static std::vector<Key> TakeKeys()
    {
        std::vector<Key> taken;
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
            if (message.message == WM_KEYDOWN || message.message == WM_KEYUP)
                taken.push_back({message.message, message.wParam,
                                 static_cast<UINT>(message.lParam >> 16) & 0xff,
                                 (message.lParam & (1 << 24)) != 0});
            DispatchMessageW(&message);
        }
        return taken;
    }

    ExamWindow m_window;
};

TEST_F(ToggleKeyTest, ReallyToggles)
{
    for (const auto key :
         {static_cast<unsigned char>(VK_CAPITAL), static_cast<unsigned char>(VK_NUMLOCK)}) {
        Set(key, 1);
        EXPECT_TRUE(IsOn(key));
        Set(key, 0);
        EXPECT_FALSE(IsOn(key));
        Set(key, -5);
        EXPECT_TRUE(IsOn(key)) << "anything but 0 is on";
        Set(key, 0);
        EXPECT_FALSE(IsOn(key));
    }
}

TEST_F(ToggleKeyTest, PressesOnceAndOnlyWhenItHasTo)
{
    Set(VK_CAPITAL, 0);
    Set(VK_CAPITAL, 1);
    EXPECT_EQ(keys, (std::vector<Key>{{WM_KEYDOWN, VK_CAPITAL, 0x45, true},
                                      {WM_KEYUP, VK_CAPITAL, 0x45, true}}));
    Set(VK_CAPITAL, 1);
    EXPECT_TRUE(keys.empty());
    EXPECT_TRUE(IsOn(VK_CAPITAL));
}

// ---- Fonts

HFONT FontOf(HWND window)
{
    return reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
}

class DialogFontTest : public testing::Test
{
protected:
    DialogFontTest()
    {
        dialog.Attach(m_window.Handle());
        font.CreatePointFont(140, L"Arial");
        button = Child(L"BUTTON", m_window.Handle());
        group = Child(L"BUTTON", m_window.Handle());
        inner = Child(L"EDIT", group);
    }
    ~DialogFontTest() override { dialog.Detach(); }

    static HWND Child(const wchar_t* className, HWND parent)
    {
        return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, parent,
                               nullptr, nullptr, nullptr);
    }

private:
    ExamWindow m_window;

protected:
    CWnd dialog;
    CFont font;
    HWND button, group, inner;
};

HFONT s_dialogFont;
bool s_isRedrawn;

TEST_F(DialogFontTest, IsSetOnTheDialogAndAllItsControls)
{
    utilsExam::ChangeDialogFont(&dialog, &font, 1);
    for (const HWND window : {button, group, inner})
        EXPECT_EQ(FontOf(window), static_cast<HFONT>(font));
    utilsExam::ChangeDialogFont(&dialog, nullptr, 0);
    for (const HWND window : {button, group, inner})
        EXPECT_EQ(FontOf(window), nullptr) << "the system's";
}

TEST(DialogFont, ReachesTheDialogItselfAndRepaintsItAtWill)
{
    ExamWindow window;
    window.onMessage = [](ExamWindow&, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_SETFONT) return false;
        s_dialogFont = reinterpret_cast<HFONT>(wParam);
        s_isRedrawn = LOWORD(lParam) != 0;
        return true;
    };
    CWnd dialog;
    dialog.Attach(window.Handle());
    CFont font;
    font.CreatePointFont(100, L"Arial");
    for (const int redraw : {0, 1, 2}) {
        utilsExam::ChangeDialogFont(&dialog, &font, redraw);
        EXPECT_EQ(s_dialogFont, static_cast<HFONT>(font));
        EXPECT_EQ(s_isRedrawn, redraw != 0);
    }
    dialog.Detach();
}

TEST(DialogFont, OfNothingIsNothing)
{
    CFont font;
    utilsExam::ChangeDialogFont(nullptr, &font, 1);
    CWnd windowless;
    utilsExam::ChangeDialogFont(&windowless, &font, 1);
    SUCCEED();
}

} // namespace
