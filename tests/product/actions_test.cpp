// The action vocabulary, and action states by their names in it.
#include "Readers.h"

#include <gtest/gtest.h>
#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <test_support/Files.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/TemporaryFolder.h>
#include <zel_xml/zelXMLFile.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

using test_support::State;
using test_support::TemporaryFolder;
using test_support::WriteFile;

class VocabularyTest : public testing::Test
{
protected:
    ~VocabularyTest() override { pro_actions::ClearVocabulary(); }

    bool Load(const std::string& text)
    {
        const std::wstring path = m_folder / L"actions.xml";
        WriteFile(path, text);
        return pro_actions::LoadVocabulary(path);
    }

    zelXMLNode Element(const std::string& text)
    {
        const std::wstring path = m_folder / L"element.xml";
        WriteFile(path, text);
        m_file.open(path, true);
        return m_file.getRootElement();
    }

    static constexpr const char* sample =
        "<actions><type name='Imaging' value='1'><a name='Freeze' code='0'/><a name='Depth' "
        "code='7'/></type>"
        "<type name='Report' value='-5'><a name='Freeze' code='3'/></type><type name='Empty' "
        "value='0'/></actions>";

    TemporaryFolder m_folder;
    zelXMLFile m_file;
};

TEST_F(VocabularyTest, IsEmptyBeforeAFileWasLoaded)
{
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), actionTypeNone);
    EXPECT_EQ(CProActionCollection::MapAction(actionTypeNone, L"Freeze"), -1);
    EXPECT_EQ(pro_actions::ActionTypeName(actionTypeNone), L"");
}

TEST_F(VocabularyTest, MapsNamesToNumbersAndBack)
{
    ASSERT_TRUE(Load(sample));
    const ActionType imaging = CProActionCollection::MapActionType(L"Imaging");
    const ActionType report = CProActionCollection::MapActionType(std::wstring(L"Report"));
    EXPECT_EQ(imaging, 1);
    EXPECT_EQ(report, -5);
    EXPECT_EQ(CProActionCollection::MapAction(imaging, L"Freeze"), 0);
    EXPECT_EQ(CProActionCollection::MapAction(imaging, L"Depth"), 7);
    EXPECT_EQ(CProActionCollection::MapAction(report, std::wstring(L"Freeze")), 3);
    EXPECT_EQ(pro_actions::ActionTypeName(report), L"Report");
    EXPECT_EQ(pro_actions::ActionName(imaging, 7), L"Depth");
}

TEST_F(VocabularyTest, AnswersMinusOneForWhatItDoesNotKnow)
{
    ASSERT_TRUE(Load(sample));
    for (const wchar_t* name : {L"", L"imaging", L"Imaging ", L"Other"})
        EXPECT_EQ(CProActionCollection::MapActionType(name), actionTypeNone);
    EXPECT_EQ(CProActionCollection::MapActionType(static_cast<const wchar_t*>(nullptr)),
              actionTypeNone);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(1),
                                              static_cast<const wchar_t*>(nullptr)),
              -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(1), L"freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(0), L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(static_cast<ActionType>(99), L"Freeze"), -1);
    EXPECT_EQ(CProActionCollection::MapAction(actionTypeNone, L"Freeze"), -1);
    EXPECT_EQ(pro_actions::ActionName(static_cast<ActionType>(99), 0), L"");
}

TEST_F(VocabularyTest, AnUnusableFileLeavesTheVocabularyInUse)
{
    ASSERT_TRUE(Load(sample));
    for (const char* text :
         {"<actions><type name='A' value='1'/><type name='A' value='2'/></actions>",
          "<actions><type name='A' value='1'/><type name='B' value='1'/></actions>",
          "<actions><type name='' value='1'/></actions>", "<actions><type value='1'/></actions>",
          "<actions><type name='A'/></actions>", "<actions><type name='A' value='-1'/></actions>",
          "<actions><type name='A' value='x'/></actions>",
          "<actions><type name='A' value='99999999999'/></actions>",
          "<actions><type name='A' value='1'><a name='x'/></type></actions>",
          "<actions><type name='A' value='1'><a name='x' code='1'/><a name='x' "
          "code='2'/></type></actions>",
          "<actions><type name='A' value='1'><a name='x' code='1'/><a name='y' "
          "code='1'/></type></actions>",
          "<actions>", ""})
        EXPECT_FALSE(Load(text)) << text;
    EXPECT_FALSE(pro_actions::LoadVocabulary(m_folder / L"missing.xml"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), 1);
}

TEST_F(VocabularyTest, AnotherFileReplacesTheWholeVocabulary)
{
    ASSERT_TRUE(Load(sample));
    ASSERT_TRUE(Load("<actions><type name='Other' value='4'/></actions>"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Imaging"), actionTypeNone);
    EXPECT_EQ(CProActionCollection::MapActionType(L"Other"), 4);
    ASSERT_TRUE(Load("<actions/>"));
    EXPECT_EQ(CProActionCollection::MapActionType(L"Other"), actionTypeNone);
}

TEST_F(VocabularyTest, CanBeReplacedWhileOtherThreadsRead)
{
    ASSERT_TRUE(Load(sample));
    Readers readers([] {
        const int type = CProActionCollection::MapActionType(L"Imaging");
        return type == 1 || type == -1;
    });
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(pro_actions::LoadVocabulary(m_folder / L"actions.xml"));
        if (i % 3 == 0) pro_actions::ClearVocabulary();
    }
    EXPECT_EQ(readers.Finish(), 0);
}

TEST_F(VocabularyTest, AStateIsLoadedFromAnElement)
{
    ASSERT_TRUE(Load(sample));
    ActionStateInfo info;
    ASSERT_TRUE(info.Load(Element("<s actionType='Imaging' action='Depth' actionParam='-3'/>")));
    EXPECT_EQ(info, State(1, 7, -3));
    ASSERT_TRUE(info.Load(Element("<s actionType='Imaging' action='Freeze'/>")));
    EXPECT_EQ(info, State(1, 0, 0));
    info.Reset();
    EXPECT_EQ(info, ActionStateInfo());
    EXPECT_EQ(info, State(-1, -1, 0));
}

TEST_F(VocabularyTest, AnElementThatNamesNoStateChangesNothing)
{
    ASSERT_TRUE(Load(sample));
    ActionStateInfo info = State(8, 8, 8);
    EXPECT_FALSE(info.Load(zelXMLNode()));
    for (const char* text :
         {"<s/>", "<s actionType='Imaging'/>", "<s action='Depth'/>",
          "<s actionType='Other' action='Depth'/>", "<s actionType='Imaging' action='depth'/>",
          "<s actionType='Empty' action='Freeze'/>"})
        EXPECT_FALSE(info.Load(Element(text))) << text;
    EXPECT_EQ(info, State(8, 8, 8));
}

TEST(ActionStateInfoTest, OrdersByTypeActionAndParameter)
{
    const std::vector<ActionStateInfo> ascending{State(-1, 5, 5), State(0, -1, 9), State(0, 3, -2),
                                                 State(0, 3, 0), State(1, -1, 0)};
    for (std::size_t i = 0; i < ascending.size(); ++i)
        for (std::size_t j = 0; j < ascending.size(); ++j)
            EXPECT_EQ(ascending[i] < ascending[j], i < j);
}

// Checks that a console finds its actions in the vocabulary that comes with the library.

class ConsoleVocabularyTest : public testing::Test
{
protected:
    ConsoleVocabularyTest() { m_loaded = pro_actions::LoadVocabulary(m_path); }
    ~ConsoleVocabularyTest() override { pro_actions::ClearVocabulary(); }

    const std::wstring m_path = std::filesystem::path(CONSOLE_VOCABULARY).wstring();
    bool m_loaded = false;
};

TEST_F(ConsoleVocabularyTest, HasWhatEveryConsoleHas)
{
    ASSERT_TRUE(m_loaded);
    const std::pair<const wchar_t*, const wchar_t*> needed[] = {{L"Imaging", L"Freeze"},
                                                                {L"Imaging", L"Gain"},
                                                                {L"Imaging", L"Depth"},
                                                                {L"Imaging", L"Focus"},
                                                                {L"Mode", L"B"},
                                                                {L"Mode", L"M"},
                                                                {L"Mode", L"Color"},
                                                                {L"Mode", L"PulsedDoppler"},
                                                                {L"Measurement", L"Measure"},
                                                                {L"Document", L"Print"},
                                                                {L"Document", L"Record"},
                                                                {L"Annotation", L"Annotate"},
                                                                {L"Probe", L"Select"},
                                                                {L"Patient", L"New"},
                                                                {L"Patient", L"Select"},
                                                                {L"Exam", L"End"},
                                                                {L"Derived", L"User"}};
    for (const auto& [typeName, actionName] : needed) {
        const ActionType type = CProActionCollection::MapActionType(typeName);
        EXPECT_NE(type, actionTypeNone) << testing::PrintToString(typeName);
        EXPECT_NE(CProActionCollection::MapAction(type, actionName), -1)
            << testing::PrintToString(actionName);
    }
}

TEST_F(ConsoleVocabularyTest, EveryEntryMapsToItsNumbersAndBack)
{
    ASSERT_TRUE(m_loaded);
    zelXMLFile file;
    ASSERT_TRUE(file.open(m_path, true));
    int entries = 0;
    for (zelXMLNode element = file.getRootElement().getFirstChild(); element.isValid(); ++element) {
        const ActionType type = CProActionCollection::MapActionType(element.getAttribute(L"name"));
        EXPECT_EQ(type, element.getAttributeInt(L"value", -1));
        for (zelXMLNode action = element.getFirstChild(); action.isValid(); ++action, ++entries) {
            const std::wstring name = action.getAttribute(L"name");
            const int code = action.getAttributeInt(L"code", -1);
            EXPECT_EQ(CProActionCollection::MapAction(type, name), code);
            EXPECT_EQ(pro_actions::ActionName(type, code), name);
        }
    }
    EXPECT_GT(entries, 100);
}

} // namespace
