// The control panel is tried as the user has it, with a real window, mouse messages and protocol
// files.
#include "panel/ControlPanel.h"
#include "panel/PanelLayout.h"

#include <test_support/ProtocolFolders.h>

#include <optional>

using namespace exam;
using test_support::ProtocolFolders;
using test_support::State;
using test_support::TestVocabulary;

namespace {

const ActionStateInfo freeze = State(1, 0);

// Notes the places at which it is asked for a context menu.
class Owner : public CWnd
{
public:
    std::vector<CPoint> m_menus;

protected:
    LRESULT OnContextMenu(WPARAM, LPARAM place)
    {
        m_menus.emplace_back(place);
        return 0;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Owner, CWnd)
    ON_MESSAGE(WM_CONTEXTMENU, OnContextMenu)
END_MESSAGE_MAP()

class ControlPanelTest : public testing::Test
{
protected:
    ControlPanelTest()
    {
        WriteFactory(L"ButtonActions.xml",
                     "<b><b name='Freeze'><Push1 actionType='Imaging' action='Freeze'/><States>"
                     "<s actionType='Imaging' action='Freeze'/></States></b>"
                     "<b name='Mode'><Push1 actionType='Mode' action='B'/>"
                     "<Push2 actionType='Mode' action='M'/></b>"
                     "<b name='Depth'><Push1 actionType='Imaging' action='Depth' actionParam='9'/>"
                     "<Decrement actionType='Imaging' action='Depth' actionParam='-1'/>"
                     "<Increment actionType='Imaging' action='Depth' actionParam='1'/></b>"
                     "<b name='Lamp'><States><s actionType='Lamp' action='A'/></States></b>"
                     "<b name='Hidden'/></b>");
        WriteFactory(L"panel.xml", "<p><b name='Freeze'><Grid row='0' column='0'/></b>"
                                   "<b name='Mode'><Grid row='0' column='1'/></b>"
                                   "<b name='Depth'><Grid row='0' column='2' span='2'/></b>"
                                   "<b name='Lamp'><Grid row='1' column='0'/></b>"
                                   "<b name='Nobody'><Grid row='1' column='1'/></b>"
                                   "<b name='Hidden'><Grid row='7' column='1'/></b></p>");
        test_support::WriteFile(
            m_protocol / L"fallback\\button_states.xml",
            "<s><s actionType='Lamp' action='A' combine='Or'><s actionType='Imaging' "
            "action='Freeze'/><s actionType='Mode' action='Freeze'/></s></s>");
        m_owner.CreateEx(0, nullptr, L"owner", WS_POPUP, CRect(0, 0, 200, 100), nullptr, 0);
        Start();
    }

    // Does the work of a program start.
    void Start()
    {
        m_panel.emplace(ControlPanel::Listener{
            [this](const ActionInfo& action) { m_done.push_back(action); },
            [this](const CString&) { ++m_sentences; }, [this] { ++m_broadcasts; }});
        m_panel->Reload();
        ASSERT_TRUE(m_panel->Open(m_owner, PanelForm::below, ControlPanel::AreaBelow(m_owner)));
        m_panel->SetLocked(false);
    }
    void End() { m_panel.reset(); }

    void WriteFactory(const std::wstring& name, const std::string& text)
    {
        test_support::WriteFile(m_protocol / (L"factory\\P1\\" + name), text);
    }

    CRect AreaOf(const wchar_t* name) const { return m_panel->Find(name)->area; }
    CPoint Middle(const wchar_t* name) const { return AreaOf(name).CenterPoint(); }

    void Send(UINT message, CPoint at) { m_panel->SendMessage(message, 0, MAKELPARAM(at.x, at.y)); }
    void Click(CPoint at)
    {
        Send(WM_LBUTTONDOWN, at);
        Send(WM_LBUTTONUP, at);
    }
    void Drag(CPoint from, CPoint to)
    {
        Send(WM_LBUTTONDOWN, from);
        Send(WM_MOUSEMOVE, to);
        Send(WM_LBUTTONUP, to);
    }

    void LeadPointer(CPoint to) const
    {
        m_panel->ClientToScreen(&to);
        SetCursorPos(to.x, to.y);
    }
    static void PressPointer(DWORD button)
    {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = button;
        SendInput(1, &input, sizeof input);
    }

    // False when the condition does not hold within a time limit.
    template <class Condition>
    static bool HandleMessagesUntil(const Condition& condition)
    {
        const ULONGLONG end = GetTickCount64() + 5000;
        MSG next;
        while (!condition() && GetTickCount64() < end) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
            while (PeekMessage(&next, nullptr, 0, 0, PM_REMOVE))
                DispatchMessage(&next);
        }
        return condition();
    }

    std::vector<int> TakeParams()
    {
        std::vector<int> params;
        for (const ActionInfo& action : std::exchange(m_done, {}))
            params.push_back(action.param);
        return params;
    }

    bool IsLit(const wchar_t* name) const { return m_panel->IsLit(*m_panel->Find(name)); }

    ProtocolFolders m_protocol;
    TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    Owner m_owner;
    std::vector<ActionInfo> m_done;
    int m_sentences = 0;
    int m_broadcasts = 0;
    std::optional<ControlPanel> m_panel;
};

TEST_F(ControlPanelTest, ShowsButtonsThatHaveAnActionAndAPlace)
{
    EXPECT_EQ(m_broadcasts, 1); // of all states, for the lamps
    EXPECT_EQ(m_panel->Buttons().size(), 4u);
    EXPECT_EQ(m_panel->Find(L"Nobody"), nullptr);
    EXPECT_EQ(m_panel->Find(L"Hidden"), nullptr);
    EXPECT_EQ(m_panel->Find(L"Freeze")->label, L"Freeze"); // no table of texts is loaded
    EXPECT_TRUE(m_panel->IsWindowVisible());
    EXPECT_EQ(m_panel->SendMessage(WM_MOUSEACTIVATE), MA_NOACTIVATE);
}

TEST_F(ControlPanelTest, AClickCarriesTheActionOut)
{
    Click(Middle(L"Freeze"));
    ASSERT_EQ(m_done.size(), 1u);
    EXPECT_EQ(m_done[0].type, 1);
    EXPECT_EQ(m_done[0].action, 0);
    Click(Middle(L"Lamp")); // has no action
    Click({5, 190});        // no button
    Send(WM_LBUTTONUP, Middle(L"Freeze"));
    EXPECT_EQ(m_done.size(), 1u);
}

TEST_F(ControlPanelTest, PushesTakeTurnsWhereThereIsASecondOne)
{
    for (int i = 0; i < 3; ++i)
        Click(Middle(L"Mode"));
    Click(Middle(L"Freeze")); // another button comes between, so the next push is a first one
    Click(Middle(L"Mode"));
    Click(Middle(L"Freeze"));
    Click(Middle(L"Freeze"));
    std::vector<int> actions;
    for (const ActionInfo& action : m_done)
        actions.push_back(10 * action.type + action.action);
    EXPECT_EQ(actions, (std::vector<int>{20, 21, 20, 10, 20, 10, 10}));
}

TEST_F(ControlPanelTest, TheEndsOfARotaryControlTurnIt)
{
    const CRect area = AreaOf(L"Depth");
    EXPECT_TRUE(m_panel->Find(L"Depth")->IsRotary());
    EXPECT_FALSE(m_panel->Find(L"Freeze")->IsRotary());
    Click({area.left + 2, area.top + 2});
    Click({area.right - 2, area.top + 2});
    Click(area.CenterPoint());
    EXPECT_EQ(TakeParams(), (std::vector<int>{-1, 1, 9}));
}

TEST_F(ControlPanelTest, LampsFollowStatesAndDerivedStates)
{
    EXPECT_FALSE(IsLit(L"Freeze"));
    IActionStateConsumer::ActionStateSignal(freeze, 1);
    EXPECT_TRUE(IsLit(L"Freeze"));
    EXPECT_TRUE(IsLit(L"Lamp"));
    IActionStateConsumer::ActionStateSignal(State(2, 3), 1);
    IActionStateConsumer::ActionStateSignal(freeze, 0);
    EXPECT_FALSE(IsLit(L"Freeze"));
    EXPECT_TRUE(IsLit(L"Lamp"));
    IActionStateConsumer::ActionStateSignal(State(2, 3), 0);
    EXPECT_FALSE(IsLit(L"Lamp"));
}

TEST_F(ControlPanelTest, ADraggedButtonGoesToItsCellAndIsStillThereAfterARestart)
{
    const CRect lamp = AreaOf(L"Lamp");
    const CPoint to =
        lamp.CenterPoint() + (AreaOf(L"Mode").TopLeft() - AreaOf(L"Freeze").TopLeft());
    Drag(Middle(L"Freeze"), to + CPoint(10, -10));
    const CRect moved = AreaOf(L"Freeze");
    EXPECT_EQ(moved.top, lamp.top);
    EXPECT_GT(moved.left, lamp.left);
    EXPECT_TRUE(m_done.empty());
    EXPECT_EQ(PanelFileInForce(), PanelSaveFile());
    End();
    Start();
    EXPECT_EQ(AreaOf(L"Freeze"), moved);
    EXPECT_EQ(m_panel->Buttons().size(), 4u);
    // The buttons that are not shown were saved too.
    EXPECT_EQ(m_panel->Layout().Placements().size(), 6u);
}

TEST_F(ControlPanelTest, ADragOntoAnotherButtonExchangesThem)
{
    const CRect freezeArea = AreaOf(L"Freeze");
    const CRect modeArea = AreaOf(L"Mode");
    Drag(freezeArea.CenterPoint(), modeArea.CenterPoint());
    EXPECT_EQ(AreaOf(L"Freeze"), modeArea);
    EXPECT_EQ(AreaOf(L"Mode"), freezeArea);
}

TEST_F(ControlPanelTest, ALockedPanelLetsNoButtonBeMoved)
{
    const CRect before = AreaOf(L"Freeze");
    m_panel->SetLocked(true);
    Drag(Middle(L"Freeze"), Middle(L"Mode"));
    EXPECT_EQ(AreaOf(L"Freeze"), before);
    EXPECT_FALSE(test_support::FileExists(PanelSaveFile()));
    EXPECT_TRUE(m_done.empty()); // it was let go over another button
    Drag(Middle(L"Freeze"), Middle(L"Freeze") + CPoint(12, 8));
    EXPECT_EQ(m_done.size(), 1u);
    End();
    m_panel.emplace(ControlPanel::Listener{});
    EXPECT_TRUE(m_panel->IsLocked()); // at first
}

TEST_F(ControlPanelTest, GoesBackToTheLayoutThatItCameWith)
{
    const CRect before = AreaOf(L"Freeze");
    Drag(before.CenterPoint(), Middle(L"Mode"));
    m_panel->Reset();
    EXPECT_EQ(AreaOf(L"Freeze"), before);
    EXPECT_FALSE(test_support::FileExists(PanelSaveFile()));
    m_panel->Reset(); // changes nothing
    EXPECT_EQ(AreaOf(L"Freeze"), before);
}

TEST_F(ControlPanelTest, ADragToNowhereChangesAndSavesNothing)
{
    const CRect before = AreaOf(L"Freeze");
    for (const CPoint to : {CPoint(-300, -300), CPoint(2000, 50), Middle(L"Depth") + CPoint(50, 0)})
        Drag(Middle(L"Freeze"), to);
    EXPECT_EQ(AreaOf(L"Freeze"), before);
    EXPECT_FALSE(test_support::FileExists(PanelSaveFile()));
    EXPECT_TRUE(m_done.empty());
    // A small movement of the pointer still counts as a click.
    Drag(Middle(L"Freeze"), Middle(L"Freeze") + CPoint(5, 5));
    EXPECT_EQ(m_done.size(), 1u);
}

// The system's pointer captures the mouse and leaves the window on the way.
TEST_F(ControlPanelTest, TheSystemsPointerDragsToo)
{
    const HWND panel = m_panel->GetSafeHwnd();
    const CRect mode = AreaOf(L"Mode");
    const HWND focus = GetFocus();
    LeadPointer(Middle(L"Freeze"));
    PressPointer(MOUSEEVENTF_LEFTDOWN);
    if (!HandleMessagesUntil([&] { return GetCapture() == panel; }))
        GTEST_SKIP() << "this screen lets no program press its pointer";
    LeadPointer({-20, -20});
    LeadPointer(mode.CenterPoint());
    PressPointer(MOUSEEVENTF_LEFTUP);
    EXPECT_TRUE(HandleMessagesUntil([] { return GetCapture() == nullptr; }));
    EXPECT_EQ(AreaOf(L"Freeze"), mode);
    EXPECT_EQ(GetFocus(), focus); // keys still go to the same window
}

TEST_F(ControlPanelTest, LosingTheMouseEndsADragWithoutAMove)
{
    const CRect before = AreaOf(L"Freeze");
    Send(WM_LBUTTONDOWN, Middle(L"Freeze"));
    Send(WM_MOUSEMOVE, Middle(L"Mode"));
    m_panel->SendMessage(WM_CAPTURECHANGED);
    Send(WM_LBUTTONUP, Middle(L"Mode"));
    EXPECT_EQ(AreaOf(L"Freeze"), before);
    EXPECT_TRUE(m_done.empty());
}

TEST_F(ControlPanelTest, AClickWithCtrlTicksAndPushesNothing)
{
    const auto click = [&](CPoint at) {
        m_panel->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(at.x, at.y));
        m_panel->SendMessage(WM_LBUTTONUP, MK_CONTROL, MAKELPARAM(at.x, at.y));
    };
    click(Middle(L"Mode"));
    click(CPoint(5, 190));
    EXPECT_TRUE(m_done.empty());
    End();
    Start();
    const auto& placements = m_panel->Layout().Placements();
    EXPECT_TRUE(placements[m_panel->Find(L"Mode")->placement].check);
    EXPECT_FALSE(placements[m_panel->Find(L"Freeze")->placement].check);
}

TEST_F(ControlPanelTest, ARightClickOnAButtonAsksTheOwnerForAMenuAndPushesNothing)
{
    Send(WM_RBUTTONDOWN, Middle(L"Mode"));
    Send(WM_RBUTTONUP, Middle(L"Mode"));
    CPoint onScreen = Middle(L"Mode");
    m_panel->ClientToScreen(&onScreen);
    EXPECT_EQ(m_owner.m_menus, std::vector<CPoint>{onScreen});
    EXPECT_TRUE(m_done.empty());
    EXPECT_FALSE(m_panel->Layout().Placements()[m_panel->Find(L"Mode")->placement].check);
}

TEST_F(ControlPanelTest, SaysWhenTheLayoutCannotBeSaved)
{
    CreateDirectoryW(PanelSaveFile().c_str(), nullptr); // a folder in place of the file
    Drag(Middle(L"Freeze"), Middle(L"Mode"));
    EXPECT_EQ(m_sentences, 1);
}

TEST_F(ControlPanelTest, AButtonLooksPressedWhileItIsDragged)
{
    m_panel->UpdateWindow();
    Send(WM_LBUTTONDOWN, Middle(L"Freeze"));
    Send(WM_MOUSEMOVE, CPoint(600, 150));
    m_panel->RedrawWindow();
    const HDC screen = GetDC(m_panel->GetSafeHwnd());
    const COLORREF dragged = GetPixel(screen, 600 - 20, 150 + 15);
    Send(WM_LBUTTONUP, CPoint(600, 150));
    m_panel->RedrawWindow();
    const COLORREF dropped = GetPixel(screen, 600 - 20, 150 + 15);
    ReleaseDC(m_panel->GetSafeHwnd(), screen);
    EXPECT_NE(dragged, CLR_INVALID);
    EXPECT_NE(dragged, dropped); // a pressed button looks different
}

TEST_F(ControlPanelTest, WithoutFilesItIsEmptyAndStillAWindow)
{
    End();
    WriteFactory(L"ButtonActions.xml", "not XML");
    WriteFactory(L"panel.xml", "");
    Start();
    EXPECT_TRUE(m_panel->Buttons().empty());
    Click({30, 30});
    EXPECT_TRUE(m_done.empty());
}

} // namespace
