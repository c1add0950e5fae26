// Finding and closing pop-up windows.
#include "ExamWindow.h"

#include <Utils_Statics/utilsExam.h>

#include <base/Handles.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

CWinApp theApplication;

namespace {

using Messages = std::vector<std::pair<UINT, WPARAM>>;

// Closes at Escape, as dialogs do.
bool CloseAtEscape(ExamWindow& window, UINT message, WPARAM key)
{
    if (message != WM_KEYDOWN || key != VK_ESCAPE) return false;
    DestroyWindow(window.Handle());
    return true;
}

bool CloseAtReturn(ExamWindow& window, UINT message, WPARAM key)
{
    if (message != WM_KEYDOWN || key != VK_RETURN) return false;
    DestroyWindow(window.Handle());
    return true;
}

class PopupTest : public testing::Test
{
protected:
    // Runs ClosePopup as it is meant to be run, on another thread; how long it took in ms.
    static DWORD ClosePopup(HWND popup, HWND owner)
    {
        std::atomic<bool> isDone = false;
        const ULONGLONG start = GetTickCount64();
        std::jthread closer([&] {
            utilsExam::ClosePopup(popup, owner);
            isDone = true;
        });
        EXPECT_TRUE(DispatchUntil([&] { return isDone.load(); }));
        return static_cast<DWORD>(GetTickCount64() - start);
    }

    ExamWindow owner;
};

TEST_F(PopupTest, AWindowWithoutPopupsHasNone)
{
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
    EXPECT_FALSE(utilsExam::ClosePopups(owner.Handle()));
}

TEST_F(PopupTest, FindsTheEnabledPopupOfAnOwner)
{
    const ExamWindow popup(owner.Handle());
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), popup.Handle());
    const ExamWindow other;
    EXPECT_EQ(utilsExam::FindPopupWindow(other.Handle()), nullptr);
    EnableWindow(popup.Handle(), FALSE);
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
}

TEST_F(PopupTest, ANullOwnerMeansTheMainWindow)
{
    EXPECT_EQ(utilsExam::FindPopupWindow(nullptr), nullptr);
    const AsMainWindow main(owner);
    EXPECT_EQ(utilsExam::FindPopupWindow(nullptr), nullptr);
    const ExamWindow popup(owner.Handle());
    EXPECT_EQ(utilsExam::FindPopupWindow(nullptr), popup.Handle());
    std::jthread other([&] { EXPECT_EQ(utilsExam::FindPopupWindow(nullptr), popup.Handle()); });
}

TEST_F(PopupTest, ABalloonHelpWindowIsNoPopup)
{
    const ExamWindow balloon(owner.Handle(), L"BalloonHelpClassDS");
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
    EXPECT_FALSE(utilsExam::ClosePopups(owner.Handle()));
    ClosePopup(balloon.Handle(), owner.Handle());
    EXPECT_TRUE(balloon.Exists());
}

TEST_F(PopupTest, TheClassNameIsComparedExactly)
{
    const ExamWindow popup(owner.Handle(), L"BalloonHelpClassDS2");
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), popup.Handle());
}

TEST_F(PopupTest, AToolWindowIsNoPopup)
{
    const ExamWindow tool(owner.Handle(), L"ExamTestWindow", WS_EX_TOOLWINDOW);
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
    EXPECT_FALSE(utilsExam::ClosePopups(owner.Handle()));
}

Messages s_keys;

TEST_F(PopupTest, IsAskedToCloseByFocusEscapeAndReturn)
{
    ExamWindow popup(owner.Handle());
    s_keys.clear();
    popup.onMessage = [](ExamWindow& window, UINT message, WPARAM wParam) {
        if (message != WM_SETFOCUS && message != WM_KEYDOWN && message != WM_KEYUP) return false;
        s_keys.emplace_back(message, wParam);
        if (s_keys.size() == 5) DestroyWindow(window.Handle());
        return true;
    };
    ShowWindow(popup.Handle(), SW_SHOW);
    ClosePopup(popup.Handle(), owner.Handle());
    EXPECT_FALSE(popup.Exists());
    EXPECT_EQ(s_keys, (Messages{{WM_SETFOCUS, 0},
                                {WM_KEYDOWN, VK_ESCAPE},
                                {WM_KEYUP, VK_ESCAPE},
                                {WM_KEYDOWN, VK_RETURN},
                                {WM_KEYUP, VK_RETURN}}));
}

TEST_F(PopupTest, ClosesWithinTheNextCheck)
{
    for (const auto handler : {CloseAtEscape, CloseAtReturn}) {
        ExamWindow popup(owner.Handle());
        popup.onMessage = handler;
        EXPECT_LT(ClosePopup(popup.Handle(), owner.Handle()), 2500u);
        EXPECT_FALSE(popup.Exists());
    }
}

TEST_F(PopupTest, GivesUpAfterFiveSecondsOnOneThatRefuses)
{
    ExamWindow popup(owner.Handle());
    s_keys.clear();
    popup.onMessage = [](ExamWindow&, UINT message, WPARAM wParam) {
        if (message == WM_KEYDOWN) s_keys.emplace_back(message, wParam);
        return message == WM_CLOSE;
    };
    const DWORD time = ClosePopup(popup.Handle(), owner.Handle());
    EXPECT_TRUE(popup.Exists());
    EXPECT_GE(time, 4900u);
    EXPECT_LT(time, 9000u);
    EXPECT_EQ(s_keys.size(), 2u) << "one attempt";
}

TEST_F(PopupTest, OnlyTheOwnersOwnPopupIsClosed)
{
    const ExamWindow other;
    ExamWindow popup(other.Handle());
    popup.onMessage = CloseAtEscape;
    EXPECT_LT(ClosePopup(popup.Handle(), owner.Handle()), 2500u);
    EXPECT_TRUE(popup.Exists());
    ClosePopup(nullptr, owner.Handle());
    ClosePopup(popup.Handle(), nullptr);
    EXPECT_TRUE(popup.Exists());
}

TEST_F(PopupTest, ClosePopupsReturnsAtOnceAndClosesInTheBackground)
{
    const AsMainWindow main(owner);
    ExamWindow popup(owner.Handle());
    popup.onMessage = CloseAtEscape;
    EXPECT_TRUE(utilsExam::ClosePopups(nullptr));
    EXPECT_TRUE(popup.Exists()) << "its messages have not been dispatched yet";
    EXPECT_TRUE(DispatchUntil([&] { return !popup.Exists(); }));
    EXPECT_FALSE(utilsExam::ClosePopups(nullptr));
}

// Each that closes leaves another one behind, for ever.
HWND s_owner;
std::vector<std::unique_ptr<ExamWindow>> s_popups;

void OpenAnother();

bool CloseAndOpenAnother(ExamWindow& window, UINT message, WPARAM key)
{
    if (message != WM_KEYDOWN || key != VK_ESCAPE) return false;
    DestroyWindow(window.Handle());
    OpenAnother();
    return true;
}

void OpenAnother()
{
    s_popups.push_back(std::make_unique<ExamWindow>(s_owner));
    s_popups.back()->onMessage = CloseAndOpenAnother;
}

TEST_F(PopupTest, ClosePopupsGivesUpAtTheTenth)
{
    s_owner = owner.Handle();
    OpenAnother();
    EXPECT_TRUE(utilsExam::ClosePopups(owner.Handle()));
    EXPECT_TRUE(DispatchUntil([] { return s_popups.size() == 10; }));
    EXPECT_FALSE(DispatchUntil([] { return s_popups.size() > 10; }, 1500));
    EXPECT_TRUE(s_popups.back()->Exists());
    s_popups.clear();
}

} // namespace
