// Reading one action and one button from their elements.
#include "ActionsFixture.h"

#include <Utils_Statics/ActionInfo.h>
#include <Utils_Statics/ButtonAction.h>

#include <vector>

namespace {

void ExpectAction(const ActionInfo& info, int type, int action, int param, const wchar_t* name)
{
    EXPECT_EQ(info.type, type);
    EXPECT_EQ(info.action, action);
    EXPECT_EQ(info.param, param);
    EXPECT_EQ(info.name, name);
}

void ExpectDefault(const ActionInfo& info)
{
    ExpectAction(info, -1, -1, 0, L"");
}

ActionInfo Some()
{
    return {static_cast<ActionType>(5), 6, 7, L"some"};
}

std::vector<ActionStateInfo> StatesOf(const ButtonAction& button)
{
    return {button.states.begin(), button.states.end()};
}

using ActionInfoTest = ElementTest;
using ButtonActionTest = ElementTest;

TEST_F(ActionInfoTest, IsNoActionAtFirst)
{
    ExpectDefault(ActionInfo());
}

TEST_F(ActionInfoTest, TakesItsFieldsInTheirOrderAndIsCopied)
{
    const ActionInfo info = Some();
    ExpectAction(info, 5, 6, 7, L"some");
    ActionInfo copy(info);
    ExpectAction(copy, 5, 6, 7, L"some");
    copy = ActionInfo();
    ExpectDefault(copy);
    ExpectAction(info, 5, 6, 7, L"some");
}

TEST_F(ActionInfoTest, ReadsItsFourAttributes)
{
    ActionInfo info;
    EXPECT_TRUE(info.Load(
        Element("<x name='n' actionParam='-4' action='Depth' actionType='Imaging' other='1'/>")));
    ExpectAction(info, 1, 7, -4, L"n");
}

TEST_F(ActionInfoTest, AMissingAttributeTakesItsFieldBack)
{
    ActionInfo info = Some();
    EXPECT_TRUE(info.Load(Element("<x/>")));
    ExpectDefault(info);
    info = Some();
    EXPECT_TRUE(info.Load(Element("<x actionType='Imaging'/>")));
    ExpectAction(info, 1, -1, 0, L"");
    info = Some();
    EXPECT_TRUE(info.Load(Element("<x action='Depth'/>")));
    ExpectDefault(info);
}

TEST_F(ActionInfoTest, AnActionIsLookedUpWithinTheTypeJustRead)
{
    ActionInfo info(static_cast<ActionType>(1), 0, 0, L"");
    EXPECT_TRUE(info.Load(Element("<x actionType='Mode' action='Freeze'/>")));
    ExpectAction(info, 2, 3, 0, L"");
    EXPECT_TRUE(info.Load(Element("<x actionType='Empty' action='Freeze'/>")));
    ExpectAction(info, 0, -1, 0, L"");
}

TEST_F(ActionInfoTest, KeepsWhatTheVocabularyAnswersForUnknownTexts)
{
    ActionInfo info = Some();
    EXPECT_TRUE(
        info.Load(Element("<x actionType='imaging' action='Depth' actionParam='3' name='kept'/>")));
    ExpectAction(info, -1, -1, 3, L"kept");
    EXPECT_TRUE(info.Load(Element("<x actionType='Imaging' action='depth'/>")));
    ExpectAction(info, 1, -1, 0, L"");
}

TEST_F(ActionInfoTest, AParameterThatIsNoIntegerIsZero)
{
    for (const char* param : {"", "x", "1.5", "2147483648", "0x1"}) {
        ActionInfo info = Some();
        EXPECT_TRUE(info.Load(Element(std::string("<x actionParam='") + param + "'/>")));
        ExpectDefault(info);
    }
}

TEST_F(ActionInfoTest, AnInvalidElementChangesNothing)
{
    ActionInfo info = Some();
    EXPECT_FALSE(info.Load(zelXMLNode()));
    ExpectAction(info, 5, 6, 7, L"some");
}

TEST_F(ButtonActionTest, IsEmptyAtFirst)
{
    const ButtonAction button;
    EXPECT_EQ(button.name, L"");
    for (const ActionInfo* info :
         {&button.push1, &button.push2, &button.decrement, &button.increment})
        ExpectDefault(*info);
    EXPECT_TRUE(button.states.empty());
}

TEST_F(ButtonActionTest, ReadsAllItHas)
{
    ButtonAction button;
    ASSERT_TRUE(button.Load(
        Element("<b name='Gain'>text<Increment actionType='Imaging' action='Depth' "
                "actionParam='1'/><Decrement actionType='Imaging' action='Depth' "
                "actionParam='-1'/><Push2 actionType='Mode' action='M'/><Push1 name='first'/>"
                "<States><s actionType='Mode' action='M'/><x actionType='Imaging' "
                "action='Freeze' actionParam='2'/></States></b>")));
    EXPECT_EQ(button.name, L"Gain");
    ExpectAction(button.push1, -1, -1, 0, L"first");
    ExpectAction(button.push2, 2, 1, 0, L"");
    ExpectAction(button.decrement, 1, 7, -1, L"");
    ExpectAction(button.increment, 1, 7, 1, L"");
    EXPECT_EQ(StatesOf(button), (std::vector<ActionStateInfo>{State(1, 0, 2), State(2, 1)}));
}

TEST_F(ButtonActionTest, TheFirstChildOfANameCounts)
{
    ButtonAction button;
    ASSERT_TRUE(button.Load(
        Element("<b name='x'><push1 actionParam='9'/><Push1 actionParam='1'/><Push1 "
                "actionParam='2'/><States><s actionType='Mode' action='M'/></States><States>"
                "<s actionType='Mode' action='B'/></States></b>")));
    EXPECT_EQ(button.push1.param, 1);
    EXPECT_EQ(StatesOf(button), std::vector<ActionStateInfo>{State(2, 1)});
}

TEST_F(ButtonActionTest, ANameAloneIsEnough)
{
    ButtonAction button;
    ASSERT_TRUE(button.Load(Element("<b name='x'/>")));
    EXPECT_EQ(button.name, L"x");
    for (const ActionInfo* info :
         {&button.push1, &button.push2, &button.decrement, &button.increment})
        ExpectDefault(*info);
    EXPECT_TRUE(button.states.empty());
}

TEST_F(ButtonActionTest, MissingActionsStayAndMissingStatesDoNot)
{
    const std::pair<const char*, ActionInfo ButtonAction::*> actions[] = {
        {"Push1", &ButtonAction::push1},
        {"Push2", &ButtonAction::push2},
        {"Decrement", &ButtonAction::decrement},
        {"Increment", &ButtonAction::increment}};
    for (const auto& [present, changed] : actions) {
        ButtonAction button;
        button.states.insert(State(3, 3));
        for (const auto& [name, action] : actions)
            button.*action = Some();
        ASSERT_TRUE(button.Load(Element(std::string("<b name='x'><") + present +
                                        " actionType='Mode' action='B'/></b>")));
        for (const auto& [name, action] : actions)
            if (action == changed)
                ExpectAction(button.*action, 2, 0, 0, L"");
            else
                ExpectAction(button.*action, 5, 6, 7, L"some");
        EXPECT_TRUE(button.states.empty());
    }
}

TEST_F(ButtonActionTest, WithoutANameOnlyTheNameChanges)
{
    for (const char* text : {"<b><Push1/><States/></b>", "<b name=''><Push1/><States/></b>"}) {
        ButtonAction button;
        button.name = L"before";
        button.push1 = Some();
        button.states.insert(State(3, 3));
        EXPECT_FALSE(button.Load(Element(text)));
        EXPECT_EQ(button.name, L"");
        ExpectAction(button.push1, 5, 6, 7, L"some");
        EXPECT_EQ(StatesOf(button), std::vector<ActionStateInfo>{State(3, 3)});
    }
}

TEST_F(ButtonActionTest, AnInvalidElementChangesNothing)
{
    ButtonAction button;
    button.name = L"before";
    button.states.insert(State(3, 3));
    EXPECT_FALSE(button.Load(zelXMLNode()));
    EXPECT_EQ(button.name, L"before");
    EXPECT_EQ(StatesOf(button), std::vector<ActionStateInfo>{State(3, 3)});
}

TEST_F(ButtonActionTest, HoldsEquivalentStatesOnceAndLeavesOutUnusableOnes)
{
    ButtonAction button;
    ASSERT_TRUE(button.Load(
        Element("<b name='x'><States><a actionType='Mode' action='M' actionParam='0'/>"
                "<a actionType='Mode' action='M'/><a actionType='Mode'/><a/>"
                "<a actionType='Mode' action='none'/><a actionType='Imaging' action='Freeze' "
                "actionParam='x'/></States></b>")));
    EXPECT_EQ(StatesOf(button), (std::vector<ActionStateInfo>{State(1, 0), State(2, 1)}));
}

TEST_F(ButtonActionTest, ACopyIsItsOwn)
{
    ButtonAction button;
    ASSERT_TRUE(button.Load(Element("<b name='x'><Push1 name='p'/><States><s actionType='Mode' "
                                    "action='B'/></States></b>")));
    ButtonAction copy(button);
    button = ButtonAction();
    EXPECT_EQ(copy.name, L"x");
    EXPECT_EQ(copy.push1.name, L"p");
    EXPECT_EQ(StatesOf(copy), std::vector<ActionStateInfo>{State(2, 0)});
}

} // namespace
