// Checks that a console finds its actions in the vocabulary that comes with the library.
#include <gtest/gtest.h>
#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <zel_xml/zelXMLFile.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

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
