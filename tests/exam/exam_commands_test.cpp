// The table of commands has keys, texts and actions, and a press carries a command out.
#include "commands/Commands.h"
#include "CommandsFixture.h"

#include <pro_actions/NotifiedConsumer.h>
#include <test_support/Program.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace exam;

namespace {

// Keeps the states and actions that it is told.
class Listener : public pro_actions::NotifiedConsumer
{
public:
    explicit Listener(const std::vector<ActionStateInfo>& states)
    {
        for (const ActionStateInfo& state : states)
            RegisterActionSignal(state);
        RegisterActionNotification();
    }
    void ActionStateChanged(const ActionStateInfo&, int value) override
    {
        m_values.push_back(value);
    }
    void ActionNotification(ActionType, int, int param) override { m_params.push_back(param); }

    std::vector<int> m_values;
    std::vector<int> m_params;
};

} // namespace

TEST_F(CommandsTest, EachKeyAndEachActionBelongToOneCommand)
{
    std::set<std::pair<UINT, bool>> keys;
    std::set<std::pair<ActionType, int>> actions;
    for (const Command& command : Commands()) {
        if (command.key.code != 0) {
            EXPECT_TRUE(keys.insert({command.key.code, command.key.withControl}).second)
                << command.key.code;
            EXPECT_EQ(CommandOfKey(command.key.code, command.key.withControl), &command);
        }
        if (!command.action.type) continue;
        const ActionInfo action = Action(command.action.type, command.action.name);
        EXPECT_TRUE(actions.insert({action.type, action.action}).second) << command.action.name;
        EXPECT_EQ(CommandOfAction(action), &command);
    }
    EXPECT_EQ(CommandOfKey(0), nullptr);
    EXPECT_EQ(CommandOfKey('X'), nullptr);
    EXPECT_EQ(CommandOfKey('Q'), nullptr);
    EXPECT_EQ(CommandOfKey('C', true), nullptr);
    EXPECT_EQ(CommandOfAction(ActionInfo()), nullptr);
}

TEST_F(CommandsTest, TheVocabularyKnowsEachAction)
{
    for (const Command& command : Commands()) {
        EXPECT_EQ(command.action.type == nullptr, command.action.name == nullptr);
        if (!command.action.type) continue;
        const ActionInfo action = Action(command.action.type, command.action.name);
        EXPECT_NE(action.type, actionTypeNone) << command.action.type;
        EXPECT_NE(action.action, -1) << command.action.name;
    }
}

TEST_F(CommandsTest, EachHasAKeyAMenuAndTextsInBothLanguages)
{
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        for (const Command& command : Commands()) {
            const bool isMet = command.carryOut != nullptr;
            EXPECT_EQ(command.text.name != nullptr, isMet);
            EXPECT_EQ(command.text.tip != nullptr, isMet);
            if (!isMet) continue;
            EXPECT_NE(command.key.code, 0u) << command.text.name;
            EXPECT_NE(command.menu, Menu::none) << command.text.name;
            for (const char* const key : {command.text.name, command.text.tip}) {
                EXPECT_FALSE(GetStr(key).IsEmpty()) << key;
                EXPECT_NE(GetStr(key), CString(key)) << key;
            }
        }
    }
}

TEST_F(CommandsTest, PicturesAreInTheSample)
{
    int pictures = 0;
    for (const Command& command : Commands()) {
        if (!command.picture) continue;
        ++pictures;
        EXPECT_NE(command.key.code, 0u); // the tip names it
        EXPECT_TRUE(std::filesystem::exists(
            test_support::BesideProgram(L"sample\\images\\buttons\\") + command.picture));
    }
    EXPECT_EQ(pictures, 5);
}

TEST_F(CommandsTest, TheHelpHasOneLineForEachKey)
{
    const std::wstring help = KeyHelp();
    for (const wchar_t* const line : {L"  1               the next drag measures a distance\n",
                                      L"  Space           shows the next recording\n",
                                      L"  Ctrl++          shows a part of the image larger\n",
                                      L"  Ctrl+Q          leaves the exam\n"})
        EXPECT_NE(help.find(line), std::wstring::npos) << line;
    const auto keys = std::count_if(Commands().begin(), Commands().end(),
                                    [](const Command& command) { return command.key.code != 0; });
    EXPECT_EQ(std::count(help.begin(), help.end(), L'\n'), keys);
}

// The status line's text is written by hand: "1 2 3: tools   Tab: next point ...".
TEST_F(CommandsTest, TheStatusLineNamesKeysOfTheTable)
{
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        std::set<std::wstring> known;
        std::wistringstream help(KeyHelp());
        for (std::wstring line; std::getline(help, line);)
            known.insert(line.substr(2, line.find(L' ', 2) - 2));
        std::wstring text = GetStr("exam.keys").GetString();
        int named = 0;
        for (std::size_t end = text.find(L':'); end != std::wstring::npos; end = text.find(L':')) {
            const std::size_t gap = text.rfind(L"   ", end);
            const std::size_t begin = gap == std::wstring::npos ? 0 : gap;
            std::wistringstream keys(text.substr(begin, end - begin));
            for (std::wstring key; keys >> key; ++named)
                EXPECT_TRUE(known.contains(key)) << key;
            text.erase(0, end + 1);
        }
        EXPECT_EQ(named, 10);
    }
}

TEST_F(CommandsTest, TipsNameTheKey)
{
    EXPECT_EQ(TipOf(*CommandOfKey('1')), L"Key 1: the next drag measures a distance");
    zel_string_convert::SetLanguage(L"de");
    EXPECT_EQ(TipOf(*CommandOfKey(VK_SPACE)), L"Taste Leertaste: zeigt die nächste Aufzeichnung");
}

TEST_F(CommandsTest, AKeySwitchesItsStateOnAndOff)
{
    for (const UINT key : {UINT{'1'}, UINT{'2'}, UINT{'3'}, UINT{'S'}, UINT{'P'}, UINT{'H'}}) {
        EXPECT_FALSE(IsOn(key)) << key;
        Press(key);
        EXPECT_TRUE(IsOn(key)) << key;
        Press(key);
        EXPECT_FALSE(IsOn(key)) << key;
    }
    Press('R');
    EXPECT_EQ(m_state.ImageOrientation(), (Orientation{false, false, 1}));
    Press('F');
    EXPECT_EQ(m_state.Frame(), 0); // the curved recording has one frame
    Press(VK_SPACE);
    Press('F');
    EXPECT_EQ(m_state.Frame(), 1);
    EXPECT_FALSE(IsOn('F')); // it has no state
}

TEST_F(CommandsTest, AskTheWindowForWhatOnlyAWindowCanDo)
{
    Press('K');
    m_desk.Press({.key = 'K', .control = true});
    m_desk.Press({.key = 'R', .control = true});
    m_desk.Press({.key = 'Q', .control = true});
    EXPECT_EQ(m_window.m_toggled, 1);
    EXPECT_EQ(m_window.m_lockToggled, 1);
    EXPECT_EQ(m_window.m_reset, 1);
    EXPECT_EQ(m_window.m_closed, 1);
    CarryOut(L"Document", L"SaveImage");
    EXPECT_EQ(m_window.m_picture, m_folder / L"picture-1.png");
    EXPECT_EQ(m_state.Status(), GetStr("exam.picture.saved", m_window.m_picture.c_str()));
    m_window.m_canSave = false;
    CarryOut(L"Document", L"SaveImage");
    EXPECT_EQ(m_state.Status(), GetStr("exam.picture.notsaved", m_window.m_picture.c_str()));
}

TEST_F(CommandsTest, ActionsTakeTheParameterOfTheProtocolFile)
{
    CarryOut(L"Imaging", L"Gain", 4);
    EXPECT_EQ(m_state.Gain(), 4);
    CarryOut(L"Probe", L"Select", 1);
    EXPECT_EQ(m_state.Current(), 1u);
    CarryOut(L"Cine", L"Step", -1);
    EXPECT_EQ(m_state.Frame(), 3);
    CarryOut(L"Imaging", L"Gain", INT_MAX);
    EXPECT_EQ(m_state.Gain(), 20);
    CarryOut(L"Imaging", L"Rotate", INT_MIN);
    EXPECT_EQ(m_state.ImageOrientation().quarters, 0); // 112 quarters hold 10,000 degrees
    CarryOut(L"Probe", L"Select", INT_MIN);
    EXPECT_EQ(m_state.Current(), 1u);
}

TEST_F(CommandsTest, KeysMoveTheGreyWindowAndBringAllLevelsBack)
{
    Press('N');
    m_desk.Press({.key = 'M', .control = true, .isRepeat = true});
    EXPECT_EQ(m_state.Levels(), (GreyWindow{136, 248}));
    m_desk.Press({.key = 'N', .control = true});
    Press('M');
    EXPECT_EQ(m_state.Levels(), GreyWindow());
    EXPECT_FALSE(exam::IsPossible(*CommandOfKey('0', true), m_state));
    Press('N');
    m_desk.Press({.key = '0', .control = true});
    EXPECT_EQ(m_state.Levels(), GreyWindow());
}

TEST_F(CommandsTest, WithTheTrackballTheLastPointOfAFrozenImageLetsGo)
{
    m_state.SetInput(InputTrackball);
    Press('1');
    ASSERT_TRUE(MouseCapture::IsLocked());
    for (int points = 3; points > 0; --points) { // the third moves the mark as a whole
        EXPECT_TRUE(MouseCapture::IsLocked()) << points;
        Press(VK_TAB);
    }
    EXPECT_FALSE(MouseCapture::IsLocked());
    m_state.SetInput(InputPointer);
}

TEST_F(CommandsTest, AnActionIsToldWhenItWasCarriedOutAndNoOther)
{
    Listener listener({});
    CarryOut(L"Imaging", L"Gain", 2);
    EXPECT_EQ(listener.m_params, std::vector<int>{2});
    CarryOut(L"Document", L"Burn");
    EXPECT_EQ(m_state.Status(), GetStr("exam.action.noeffect", L"Document", L"Burn"));
    CarryOut(L"Measurement", L"Measure"); // has a state and no effect
    EXPECT_EQ(m_state.Status(), GetStr("exam.action.noeffect", L"Measurement", L"Measure"));
    EXPECT_EQ(listener.m_params.size(), 1u);
}

TEST_F(CommandsTest, BroadcastsAStateWhenItHasChanged)
{
    m_desk.BroadcastAll();
    Listener listener({StateOf(L"Imaging", L"Freeze"), StateOf(L"Probe", L"Select", 0),
                       StateOf(L"Probe", L"Select", 1), StateOf(L"Measurement", L"Measure")});
    CarryOut(L"Imaging", L"Freeze");
    EXPECT_EQ(std::exchange(listener.m_values, {}), std::vector<int>{0});
    m_state.SetStatus(L"nothing of theirs");
    EXPECT_TRUE(listener.m_values.empty());
    CarryOut(L"Probe", L"Select", 1);
    EXPECT_EQ(std::exchange(listener.m_values, {}), (std::vector<int>{0, 1}));
    Press('2'); // lets the frames stand, too
    EXPECT_EQ(std::exchange(listener.m_values, {}), (std::vector<int>{1, 1}));
    m_desk.BroadcastAll();
    EXPECT_EQ(listener.m_values, (std::vector<int>{1, 0, 1, 1}));
}

TEST_F(CommandsTest, AKeyNeedsItsModifiersAndNoOther)
{
    m_desk.Press({.key = 'C', .control = true});
    m_desk.Press({.key = 'C', .other = true});
    m_desk.Press({.key = 'Q'});
    m_desk.Press({.key = 'Q', .control = true, .other = true});
    EXPECT_FALSE(m_state.Recording());
    EXPECT_EQ(m_window.m_closed, 0);
    m_desk.Press({.key = 'C'});
    EXPECT_TRUE(m_state.Recording());
}

TEST_F(CommandsTest, AHeldKeyRepeatsOnlyWhatSteps)
{
    for (const UINT key : {UINT{'C'}, UINT{'Z'}, UINT{'1'}, UINT{VK_SPACE}, UINT{'L'}})
        m_desk.Press({.key = key, .isRepeat = true});
    EXPECT_FALSE(m_state.Recording());
    EXPECT_TRUE(m_state.Status().IsEmpty());
    EXPECT_FALSE(IsOn('1'));
    EXPECT_EQ(m_state.Current(), 0u);
    Press(VK_SPACE);
    for (int i = 0; i < 3; ++i)
        m_desk.Press({.key = 'F', .isRepeat = true});
    EXPECT_EQ(m_state.Frame(), 3);
}

TEST_F(CommandsTest, EscapeEndsWhatIsUnderWayAndNeverTheExam)
{
    m_state.SetInput(InputTrackball);
    Press('1');
    MouseCapture::Unlock();
    MouseCapture::LockNext();
    Press('C');
    Press(VK_ESCAPE);
    EXPECT_FALSE(MouseCapture::IsLocked());
    EXPECT_TRUE(m_state.Recording());
    Press(VK_ESCAPE);
    EXPECT_FALSE(m_state.Recording());
    Press(VK_ESCAPE);
    EXPECT_EQ(m_window.m_closed, 0);
    m_state.SetInput(InputPointer);
}

TEST_F(CommandsTest, TheLampOfTheTrackballShowsTheStyle)
{
    m_desk.BroadcastAll();
    Listener lamp({StateOf(L"Console", L"Pointer")});
    CarryOut(L"Console", L"Pointer");
    EXPECT_EQ(MouseCapture::GetInput(), InputTrackball);
    EXPECT_EQ(std::exchange(lamp.m_values, {}), std::vector<int>{1});
    CarryOut(L"Console", L"Pointer");
    EXPECT_EQ(MouseCapture::GetInput(), InputPointer);
    EXPECT_EQ(lamp.m_values, std::vector<int>{0});
}
