// Finding and closing pop-up windows.
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/ExamWindow.h>
#include <test_support/ImportHook.h>
#include <test_support/Messages.h>
#include <Utils_Statics/utilsExam.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using test_support::AsMainWindow;
using test_support::ExamWindow;
using test_support::ImportHook;
using test_support::PumpUntil;

CWinApp theApplication;

namespace {

using Messages = std::vector<std::pair<UINT, WPARAM>>;

// Closes the window at Escape, as dialogs do.
bool CloseAtEscape(ExamWindow& window, UINT message, WPARAM key, LPARAM)
{
    if (message != WM_KEYDOWN || key != VK_ESCAPE) return false;
    DestroyWindow(window.Handle());
    return true;
}

bool CloseAtReturn(ExamWindow& window, UINT message, WPARAM key, LPARAM)
{
    if (message != WM_KEYDOWN || key != VK_RETURN) return false;
    DestroyWindow(window.Handle());
    return true;
}

class PopupTest : public testing::Test
{
protected:
    // Runs ClosePopup on another thread, as intended. The result is its duration in ms.
    static DWORD ClosePopup(HWND popup, HWND owner)
    {
        std::atomic<bool> isDone = false;
        const ULONGLONG start = GetTickCount64();
        std::jthread closer([&] {
            utilsExam::ClosePopup(popup, owner);
            isDone = true;
        });
        EXPECT_TRUE(PumpUntil([&] { return isDone.load(); }));
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
    ExamWindow balloon(owner.Handle(), L"BalloonHelpClassDS");
    balloon.onMessage = CloseAtEscape;
    ASSERT_EQ(GetLastActivePopup(owner.Handle()), balloon.Handle());
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
    EXPECT_FALSE(utilsExam::ClosePopups(owner.Handle()));
    ClosePopup(balloon.Handle(), owner.Handle());
    EXPECT_FALSE(PumpUntil([&] { return !balloon.Exists(); }, 300));
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
    popup.onMessage = [](ExamWindow& window, UINT message, WPARAM wParam, LPARAM) {
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
    popup.onMessage = [](ExamWindow&, UINT message, WPARAM wParam, LPARAM) {
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
    EXPECT_TRUE(PumpUntil([&] { return !popup.Exists(); }));
    EXPECT_FALSE(utilsExam::ClosePopups(nullptr));
}

// ---- The platform, simulated

// The pop-up that the platform names as enabled, whoever asks.
HWND s_enabledPopup;
std::vector<std::pair<HWND, UINT>> s_questions;
std::vector<std::string> s_calls;

HWND WINAPI PlayGetWindow(HWND window, UINT command)
{
    s_questions.emplace_back(window, command);
    return command == GW_ENABLEDPOPUP ? s_enabledPopup : nullptr;
}

BOOL WINAPI NoteShow(HWND window, int command)
{
    s_calls.push_back("show " + std::to_string(command));
    return ShowWindow(window, command);
}

BOOL WINAPI NotePost(HWND, UINT message, WPARAM wParam, LPARAM)
{
    s_calls.push_back(std::to_string(message) + " " + std::to_string(wParam));
    return TRUE;
}

void WINAPI NoteSleep(DWORD milliseconds)
{
    s_calls.push_back("sleep " + std::to_string(milliseconds));
}

class PlayedPopupTest : public PopupTest
{
protected:
    PlayedPopupTest()
    {
        s_enabledPopup = nullptr;
        s_questions.clear();
        s_calls.clear();
    }

    static constexpr wchar_t library[] = L"Utils_Statics.dll";
    const std::vector<std::string> attempt = {"show 5", "7 0",    "256 27",
                                              "257 27", "256 13", "257 13"};

private:
    const ImportHook m_getWindow{library, "GetWindow", &PlayGetWindow};
    const ImportHook m_show{library, "ShowWindow", &NoteShow};
    const ImportHook m_post{library, "PostMessageW", &NotePost};
    const ImportHook m_sleep{library, "Sleep", &NoteSleep};
};

TEST_F(PlayedPopupTest, TheEnabledPopupIsTheOneThatThePlatformNames)
{
    const ExamWindow other;
    const ExamWindow popup(other.Handle()), active(owner.Handle());
    s_enabledPopup = popup.Handle();
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), popup.Handle());
    EXPECT_EQ(s_questions.at(0), std::pair(owner.Handle(), UINT{GW_ENABLEDPOPUP}));
    s_enabledPopup = owner.Handle(); // the platform names the owner when there is no pop-up
    EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
    const ExamWindow balloon(owner.Handle(), L"BalloonHelpClassDS");
    const ExamWindow tool(owner.Handle(), L"ExamTestWindow", WS_EX_TOOLWINDOW);
    for (const HWND no : {balloon.Handle(), tool.Handle()}) {
        s_enabledPopup = no;
        EXPECT_EQ(utilsExam::FindPopupWindow(owner.Handle()), nullptr);
        utilsExam::ClosePopup(no, owner.Handle());
    }
    EXPECT_TRUE(s_calls.empty());
}

TEST_F(PlayedPopupTest, IsShownAndAskedOnceAndLookedForEveryTenthOfASecondForFiveSeconds)
{
    const ExamWindow popup(owner.Handle());
    ShowWindow(popup.Handle(), SW_HIDE);
    s_enabledPopup = popup.Handle();
    utilsExam::ClosePopup(popup.Handle(), owner.Handle());
    EXPECT_TRUE(IsWindowVisible(popup.Handle()));
    std::vector<std::string> expected = attempt;
    expected.insert(expected.end(), 50, "sleep 100");
    EXPECT_EQ(s_calls, expected);
}

TEST_F(PlayedPopupTest, IsAskedFiveTimesAtMost)
{
    auto popup = std::make_unique<ExamWindow>(owner.Handle());
    s_enabledPopup = popup->Handle(); // it stays so although the window goes
    popup.reset();
    utilsExam::ClosePopup(s_enabledPopup, owner.Handle());
    std::vector<std::string> expected;
    for (int i = 0; i < 5; ++i)
        expected.insert(expected.end(), attempt.begin(), attempt.end());
    EXPECT_EQ(s_calls, expected);
}

TEST_F(PlayedPopupTest, IsLeftAloneWhenItIsNotTheEnabledOneAnyMore)
{
    const ExamWindow popup(owner.Handle()), another(owner.Handle());
    s_enabledPopup = another.Handle();
    utilsExam::ClosePopup(popup.Handle(), owner.Handle());
    EXPECT_TRUE(s_calls.empty());
}

// Each window that closes opens another one, without end.
HWND s_owner;
std::vector<std::unique_ptr<ExamWindow>> s_popups;

void OpenAnother();

bool CloseAndOpenAnother(ExamWindow& window, UINT message, WPARAM key, LPARAM)
{
    if (message != WM_KEYDOWN || key != VK_ESCAPE) return false;
    OpenAnother(); // first, because the closing ends when it finds no window
    DestroyWindow(window.Handle());
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
    EXPECT_TRUE(PumpUntil([] { return s_popups.size() == 10; }));
    EXPECT_FALSE(PumpUntil([] { return s_popups.size() > 10; }, 1500));
    EXPECT_TRUE(s_popups.back()->Exists());
    s_popups.clear();
}

} // namespace
