// A list with small pictures and the menu of recent files lead to images.
#include "image/OpenFrames.h"
#include "service/RecentFiles.h"
#include "state/ExamState.h"
#include "window/Menus.h"
#include "window/StudyImages.h"

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <test_support/Messages.h>
#include <test_support/Program.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

class WaysToImages : public testing::Test
{
protected:
    WaysToImages()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
        s_app.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
        EXPECT_TRUE(m_owner.CreateEx(0, nullptr, L"owner", WS_POPUP | WS_VISIBLE,
                                     CRect(0, 0, 900, 700), nullptr, 0));
    }
    ~WaysToImages() override
    {
        m_owner.DestroyWindow();
        zel_string_convert::ClearTable();
    }

    std::wstring SavePicture(const std::wstring& name)
    {
        const base::GdiPlusSession session;
        const test_support::DibSection picture(80, 60, 32, test_support::DibSection::topDown);
        EXPECT_TRUE(SaveBitmap(picture.get(), 3, (m_folder / name).c_str()));
        return m_folder / name;
    }

    test_support::TemporaryFolder m_folder;
    CWnd m_owner;
};

// The window's list with what it opened.
class StudyImagesTest : public WaysToImages
{
protected:
    StudyImagesTest()
    {
        m_names = {L"open.cine", SavePicture(L"a.png"), m_folder / L"none.png"};
        m_open = OpenFrames(m_names[1]);
        m_images.Toggle(m_owner);
        m_list = FindWindowExW(m_images.GetSafeHwnd(), nullptr, WC_LISTVIEWW, nullptr);
    }

    std::wstring TextOf(int item) const
    {
        wchar_t text[100] = {};
        LVITEMW asked = {};
        asked.pszText = text;
        asked.cchTextMax = 100;
        SendMessageW(m_list, LVM_GETITEMTEXTW, static_cast<WPARAM>(item),
                     reinterpret_cast<LPARAM>(&asked));
        return text;
    }
    int PictureOf(int item) const
    {
        LVITEMW asked = {};
        asked.mask = LVIF_IMAGE;
        asked.iItem = item;
        SendMessageW(m_list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
        return asked.iImage;
    }

    std::vector<std::wstring> m_names;
    OpenedFrames m_open; // stands for a recording that is open already
    std::vector<std::wstring> m_opened;
    std::vector<std::wstring> m_removed;
    StudyImages m_images{{[this] { return m_names; },
                          [this](const std::wstring& name) {
                              return name == L"open.cine" ? m_open.source.get() : nullptr;
                          },
                          [this](const std::wstring& name) { m_opened.push_back(name); },
                          [this](const std::wstring& name) {
                              m_removed.push_back(name);
                              return std::erase(m_names, name) > 0;
                          }}};
    HWND m_list = nullptr;
};

std::wstring TextOfItem(HMENU menu, UINT place)
{
    wchar_t text[200] = {};
    GetMenuStringW(menu, place, text, 200, MF_BYPOSITION);
    return text;
}

} // namespace

TEST_F(StudyImagesTest, EachHasItsNameAndItsSmallPictureUnlessItCannotBeShown)
{
    ASSERT_EQ(SendMessageW(m_list, LVM_GETITEMCOUNT, 0, 0), 3);
    EXPECT_EQ(TextOf(0), L"open.cine");
    EXPECT_EQ(TextOf(1), L"a.png");
    EXPECT_LT(PictureOf(0), 0); // it is there before the pictures are
    EXPECT_TRUE(m_images.MakeNext());
    EXPECT_TRUE(m_images.MakeNext());
    EXPECT_FALSE(m_images.MakeNext());
    EXPECT_EQ(PictureOf(0), 0);
    EXPECT_EQ(PictureOf(1), 1);
    EXPECT_LT(PictureOf(2), 0);
}

TEST_F(StudyImagesTest, DeleteRemovesTheOneThatIsChosen)
{
    SendMessageW(m_list, WM_KEYDOWN, VK_RIGHT, 1);
    SendMessageW(m_list, WM_KEYDOWN, VK_DELETE, 1);
    ASSERT_EQ(m_removed.size(), 1u);
    EXPECT_EQ(SendMessageW(m_list, LVM_GETITEMCOUNT, 0, 0), 2);
    EXPECT_EQ(std::ranges::count(m_names, m_removed[0]), 0);
    EXPECT_TRUE(m_images.IsShown());
}

TEST_F(StudyImagesTest, AnImageThatIsRemovedLeavesNoPicturesBehind)
{
    DWORD before = 0;
    for (int removed = 0; removed < 3; ++removed) {
        SendMessageW(m_list, WM_KEYDOWN, VK_DELETE, 1);
        if (removed == 0) before = test_support::DrawingObjectCount();
    }
    EXPECT_TRUE(m_names.empty());
    EXPECT_EQ(test_support::DrawingObjectCount(), before);
}

TEST_F(StudyImagesTest, TheWindowFollowsTheLanguage)
{
    EXPECT_TRUE(zel_string_convert::SetLanguage(L"de"));
    m_images.FollowLanguage();
    CString title;
    m_images.GetWindowText(title);
    EXPECT_EQ(title, GetStr("exam.command.images"));
    zel_string_convert::SetLanguage(L"en");
    EXPECT_NE(title, GetStr("exam.command.images"));
}

TEST_F(StudyImagesTest, TheyAreMadeByThemselves)
{
    EXPECT_TRUE(test_support::PumpUntil([&] { return PictureOf(1) == 1; }));
}

TEST_F(StudyImagesTest, EnterOpensTheOneThatIsChosenAndEscapeNone)
{
    SendMessageW(m_list, WM_KEYDOWN, VK_DOWN, 1);
    SendMessageW(m_list, WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_TRUE(test_support::PumpUntil([&] { return !m_images.IsShown(); }));
    ASSERT_EQ(m_opened.size(), 1u);
    EXPECT_NE(std::ranges::find(m_names, m_opened[0]), m_names.end());
    EXPECT_TRUE(m_images.Toggle(m_owner));
    MSG escape = {m_images.GetSafeHwnd(), WM_KEYDOWN, VK_ESCAPE, 1, 0, {}};
    EXPECT_TRUE(m_images.PreTranslateMessage(&escape));
    EXPECT_FALSE(m_images.IsShown());
    EXPECT_EQ(m_opened.size(), 1u);
}

TEST_F(WaysToImages, TheMenuOfRecentFilesSaysWhenThereAreNone)
{
    const MenuHandle menu = MakeRecentMenu();
    ASSERT_EQ(GetMenuItemCount(menu.get()), 1);
    EXPECT_EQ(TextOfItem(menu.get(), 0), GetStr("exam.image.norecent").GetString());
    EXPECT_NE(GetMenuState(menu.get(), 0, MF_BYPOSITION) & MF_GRAYED, 0u);
    EXPECT_EQ(RecentFileOfItem(GetMenuItemID(menu.get(), 0)), L"");
}

TEST_F(WaysToImages, TheMenuBarLeadsToTheRecentFilesOfThatMoment)
{
    const MenuHandle bar = MakeMenuBar();
    HMENU recent = nullptr;
    for (int i = 0; i < GetMenuItemCount(GetSubMenu(bar.get(), 0)); ++i)
        if (const HMENU below = GetSubMenu(GetSubMenu(bar.get(), 0), i)) recent = below;
    ASSERT_NE(recent, nullptr);
    const std::wstring first = m_folder / L"fish & chips.png";
    AddRecentFile(first);
    AddRecentFile(m_folder / L"b.avi");
    ExamState state;
    ShowStates(recent, state); // as it opens
    ASSERT_EQ(GetMenuItemCount(recent), 2);
    EXPECT_EQ(RecentFileOfItem(GetMenuItemID(recent, 0)), m_folder / L"b.avi");
    EXPECT_EQ(RecentFileOfItem(GetMenuItemID(recent, 1)), first);
    EXPECT_TRUE(TextOfItem(recent, 1).ends_with(L"fish && chips.png"));
    EXPECT_TRUE(TextOfItem(recent, 1).starts_with(L"&2"));
    EXPECT_EQ(FindItemByLetter(recent, L'2'), 1);
}
