// Controls of the platform look like the rest of the application.
#include "base/DarkControls.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <vector>

namespace {

using namespace exam;

CWinApp application(L"dark_controls_test");

class DarkControls : public testing::Test
{
protected:
    DarkControls()
    {
        m_parent.CreateEx(0, nullptr, L"parent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 100),
                          nullptr, 0);
    }

    HWND Add(const wchar_t* kind, DWORD style)
    {
        const HWND control =
            CreateWindowExW(0, kind, L"text", WS_CHILD | WS_VISIBLE | style, 10, 10, 200, 28,
                            m_parent.GetSafeHwnd(), nullptr, nullptr, nullptr);
        Darken(control);
        RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        return control;
    }

    static std::ptrdiff_t Count(HWND control, COLORREF colour)
    {
        CRect area;
        GetClientRect(control, &area);
        const base::WindowContext context(control);
        std::ptrdiff_t count = 0;
        for (int y = 0; y < area.bottom; ++y)
            for (int x = 0; x < area.right; ++x)
                count += GetPixel(context.get(), x, y) == colour;
        return count;
    }

    CWnd m_parent;
};

TEST_F(DarkControls, ACheckBoxShowsItsTickAtOnce)
{
    const HWND box = Add(L"BUTTON", BS_AUTOCHECKBOX);
    EXPECT_EQ(Count(box, RGB(255, 255, 255)), 0);
    EXPECT_GT(Count(box, palette::panel), 1000);
    EXPECT_EQ(Count(box, palette::accent), 0);
    SendMessageW(box, BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_GT(Count(box, palette::accent), 10);
    EXPECT_EQ(Count(box, RGB(255, 255, 255)), 0);
    SendMessageW(box, BM_CLICK, 0, 0);
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    SetFocus(nullptr);
    EXPECT_EQ(Count(box, palette::accent), 0);
}

TEST_F(DarkControls, APushButtonIsDimWhileItCannotBePressed)
{
    const HWND button = Add(L"BUTTON", BS_PUSHBUTTON);
    EXPECT_EQ(Count(button, RGB(255, 255, 255)), 0);
    EXPECT_GT(Count(button, palette::header), 1000);
    EXPECT_GT(Count(button, palette::text), 0);
    EnableWindow(button, FALSE);
    EXPECT_EQ(Count(button, palette::text), 0);
}

TEST_F(DarkControls, ADropDownListHasADarkFrameAndArrow)
{
    const HWND list = Add(L"COMBOBOX", CBS_DROPDOWNLIST);
    COMBOBOXINFO parts = {};
    parts.cbSize = sizeof parts;
    ASSERT_TRUE(GetComboBoxInfo(list, &parts));
    const base::WindowContext context(list);
    EXPECT_EQ(GetPixel(context.get(), 0, 0), palette::label);
    EXPECT_EQ(GetPixel(context.get(), parts.rcButton.left + 2, parts.rcButton.top + 2),
              palette::header);
    EXPECT_GT(Count(list, palette::text), 5);
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"one"));
    SendMessageW(list, CB_SETCURSEL, 0, 0);
    EXPECT_EQ(GetPixel(context.get(), 0, 0), palette::label);
}

TEST_F(DarkControls, AProgressBarShowsHowFarItIs)
{
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    const HWND bar = Add(PROGRESS_CLASSW, PBS_SMOOTH);
    EXPECT_EQ(Count(bar, palette::accent), 0);
    SendMessageW(bar, PBM_SETRANGE32, 0, 4);
    SendMessageW(bar, PBM_SETPOS, 1, 0);
    EXPECT_EQ(Count(bar, palette::accent), Count(bar, palette::line) / 3);
}

} // namespace
