// Reads the examples of the pages on file formats with the console's own vocabulary, so that a file
// written after them works.
#include "DerivedStateFixture.h"

#include <pro_actions/VocabularyLoading.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/ButtonPlacement.h>

#include <filesystem>

namespace {

using test_support::ReadFile;
using test_support::WriteFile;

// The first XML block of a page.
std::string Example(const std::string& page)
{
    const auto path = std::filesystem::path(FORMAT_PAGES) / page;
    const std::string text = ReadFile(path.wstring());
    const std::string open = "```xml\n";
    const std::size_t begin = text.find(open);
    const std::size_t end = text.find("```", begin + 1);
    EXPECT_NE(end, std::string::npos) << page;
    return text.substr(begin + open.size(), end - begin - open.size());
}

class ActionFormatsTest : public DerivedStateTest
{
protected:
    ActionFormatsTest()
    {
        const std::filesystem::path vocabulary(CONSOLE_VOCABULARY);
        EXPECT_TRUE(pro_actions::LoadVocabulary(vocabulary.wstring()));
        ActionRepository::DestroyInstance();
    }
    ~ActionFormatsTest() override { ActionRepository::DestroyInstance(); }

    static ActionStateInfo Named(const wchar_t* type, const wchar_t* action)
    {
        const ActionType number = CProActionCollection::MapActionType(type);
        return {number, CProActionCollection::MapAction(number, action), 0};
    }

    // True when an action has the meaning that the vocabulary's names say.
    static bool Is(const ActionInfo& info, const wchar_t* type, const wchar_t* action, int param)
    {
        const ActionStateInfo named = Named(type, action);
        return named.action != -1 && info.type == named.type && info.action == named.action &&
               info.param == param;
    }
};

TEST_F(ActionFormatsTest, TheExampleOfButtonActionsIsReadAsItSays)
{
    WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml", Example("button-actions.md"));
    const ActionRepository* const repository = ActionRepository::GetInstance();
    const ButtonAction* const freeze = repository->GetAction(L"Freeze");
    const ButtonAction* const color = repository->GetAction(L"Color");
    const ButtonAction* const depth = repository->GetAction(L"Depth");
    ASSERT_TRUE(freeze && color && depth);
    EXPECT_TRUE(Is(freeze->push1, L"Imaging", L"Freeze", 0));
    EXPECT_EQ(freeze->states, std::set<ActionStateInfo>{Named(L"Imaging", L"Freeze")});
    EXPECT_TRUE(Is(color->push2, L"Mode", L"PowerDoppler", 0));
    EXPECT_EQ(color->push2.name, L"Power");
    EXPECT_EQ(color->states, std::set<ActionStateInfo>{Named(L"Derived", L"AnyFlow")});
    EXPECT_TRUE(Is(depth->push1, L"Imaging", L"ZoomReset", 0));
    EXPECT_TRUE(Is(depth->decrement, L"Imaging", L"Depth", -1));
    EXPECT_TRUE(Is(depth->increment, L"Imaging", L"Depth", 1));
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(ActionFormatsTest, TheExampleOfDerivedStatesIsReadAsItSays)
{
    const ActionStateInfo recording = Named(L"Derived", L"AnyRecording");
    const ActionStateInfo measuring = Named(L"Derived", L"FrozenMeasurement");
    Listener listener;
    listener.ListenTo(recording);
    listener.ListenTo(measuring);
    ASSERT_TRUE(Load(Example("button-states.md")));
    const auto signal = [](const ActionStateInfo& source, int value) {
        IActionStateConsumer::ActionStateSignal(source, value);
    };
    for (const wchar_t* const action : {L"Record", L"RecordMovie", L"Stream"})
        signal(Named(L"Document", action), 1);
    signal(Named(L"Imaging", L"Freeze"), 1);
    signal(Named(L"Measurement", L"Measure"), 0);
    EXPECT_EQ(listener.Take(),
              (std::vector<StateEvent>{
                  {recording, 1}, {recording, 1}, {recording, 1}, {measuring, 1}, {measuring, 0}}));
}

TEST_F(ActionFormatsTest, TheExampleOfPlacementsIsReadAsItSays)
{
    WriteFile(m_protocol / L"placement.xml", Example("button-placements.md"));
    zelXMLFile file;
    ASSERT_TRUE(file.open(m_protocol / L"placement.xml", true));
    ButtonPlacement placement;
    placement.Load(file.getRootElement());
    EXPECT_EQ(placement.name, L"Freeze");
    EXPECT_TRUE(placement.check);
    EXPECT_EQ(placement.grid.row, 0);
    EXPECT_EQ(placement.grid.column, 3);
    EXPECT_EQ(placement.grid.span, 2.0);
    EXPECT_EQ(placement.grid.offset, -0.5);
}

TEST_F(ActionFormatsTest, TheExampleOfAVocabularyAgreesWithTheConsoles)
{
    const int imaging = CProActionCollection::MapActionType(L"Imaging");
    const int derived = CProActionCollection::MapActionType(L"Derived");
    const int depth = Named(L"Imaging", L"Depth").action;
    WriteFile(m_protocol / L"vocabulary.xml", Example("actions.md"));
    ASSERT_TRUE(pro_actions::LoadVocabulary(m_protocol / L"vocabulary.xml"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), imaging);
    EXPECT_EQ(CProActionCollection::MapActionType(L"Derived"), derived);
    EXPECT_EQ(Named(L"Imaging", L"Depth").action, depth);
}

} // namespace
