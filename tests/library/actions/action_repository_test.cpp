// The repository of button actions: which file it reads, when, and its answers then.
#include "RepositoryFixture.h"

#include <Utils_Statics/utilsExam.h>

#include <vector>

namespace {

using test_support::LoggedMessage;
using test_support::WriteFile;

const LoggedMessage loadFailed{"Utils_Statics/ActionRepository", 32, 1,
                               L"Could not load actions from file"};

int Push1Param(const wchar_t* name)
{
    const ButtonAction* const button = ActionRepository::GetInstance()->GetAction(name);
    return button ? button->push1.param : -1;
}

TEST_F(RepositoryTest, ReadsEveryChildOfTheDocumentElement)
{
    const ActionRepository* const repository =
        Load("<any><Button name='A'><Push1 actionType='Imaging' action='Depth' actionParam='4' "
             "name='p'/></Button><Rotary name='B'/><!-- c --><Button/></any>");
    const ButtonAction* const a = repository->GetAction(L"A");
    ASSERT_TRUE(a);
    EXPECT_EQ(a->name, L"A");
    EXPECT_EQ(a->push1.type, 1);
    EXPECT_EQ(a->push1.action, 7);
    EXPECT_EQ(a->push1.param, 4);
    EXPECT_EQ(a->push1.name, L"p");
    EXPECT_TRUE(repository->GetAction(L"B"));
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(RepositoryTest, NamesDifferByCase)
{
    const ActionRepository* const repository = Load("<b><b name='Freeze'/></b>");
    EXPECT_TRUE(repository->GetAction(L"Freeze"));
    for (const wchar_t* const name : {L"freeze", L"FREEZE", L"Freeze ", L"Freez", L"", L"Freeze1"})
        EXPECT_FALSE(repository->GetAction(name)) << testing::PrintToString(name);
    EXPECT_FALSE(repository->GetAction(nullptr));
}

TEST_F(RepositoryTest, OfTwoButtonsWithOneNameTheFirstStays)
{
    Load("<b><b name='x'><Push1 actionParam='1'/></b><b name='y'><Push1 actionParam='2'/></b>"
         "<c name='x'><Push1 actionParam='3'/></c></b>");
    EXPECT_EQ(Push1Param(L"x"), 1);
    EXPECT_EQ(Push1Param(L"y"), 2);
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(RepositoryTest, AButtonWithANameOnlyIsStored)
{
    const ButtonAction* const button = Load("<b><b name='x'/></b>")->GetAction(L"x");
    ASSERT_TRUE(button);
    for (const ActionInfo* info :
         {&button->push1, &button->push2, &button->decrement, &button->increment}) {
        EXPECT_EQ(info->type, -1);
        EXPECT_EQ(info->action, -1);
        EXPECT_EQ(info->param, 0);
        EXPECT_EQ(info->name, L"");
    }
    EXPECT_TRUE(button->states.empty());
}

TEST_F(RepositoryTest, AFileWithoutButtonsIsNoFailure)
{
    for (const char* text : {"<b/>", "<b>text<!-- c --></b>", "<b><b/><b name=''/></b>"}) {
        EXPECT_FALSE(Load(text)->GetAction(L""));
        EXPECT_TRUE(m_log.Take().empty()) << text;
    }
}

TEST_F(RepositoryTest, AMissingFileIsLoggedOnceAndNotTriedAgain)
{
    // The protocol's own search reports first that it found nothing; then the repository reports
    // it.
    ActionRepository* const repository = ActionRepository::GetInstance();
    ASSERT_TRUE(repository);
    std::vector<LoggedMessage> messages = m_log.Take();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].line, 1497);
    EXPECT_EQ(messages[1], loadFailed);
    EXPECT_FALSE(repository->GetAction(L"x"));

    WriteFile(m_protocol / L"base\\ButtonActions.xml", "<b><b name='x'/></b>");
    EXPECT_EQ(ActionRepository::GetInstance(), repository);
    EXPECT_FALSE(repository->GetAction(L"x"));
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(RepositoryTest, AFileThatCannotBeReadIsLoggedAndLeavesTheRepositoryEmpty)
{
    for (const char* text :
         {"", "<b", "<b><b name='x'/>", "<b/><b/>", "\xFF\xFE<", "<b><b name='x'/>R&D</b>",
          "<b><b name='x'/></b>x", "<b><b name='x' note='<'/></b>",
          "<b><b name='x'/><!-- -- --></b>", "<b><b name='x' note='&undefined;'/></b>"}) {
        EXPECT_FALSE(Load(text)->GetAction(L"x"));
        EXPECT_EQ(m_log.Take(), std::vector<LoggedMessage>{loadFailed}) << text;
    }
}

TEST_F(RepositoryTest, TheSavedCopyShadowsTheFactorysAndThatTheBases)
{
    utilsExam::CreateDirectoryW((m_protocol / L"saved\\P1").c_str());
    const std::wstring layers[] = {
        m_protocol / L"saved\\P1\\ButtonActions.xml",
        m_protocol / L"factory\\P1\\ButtonActions.xml", m_protocol / L"base\\ButtonActions.xml",
        m_protocol / L"second\\ButtonActions.xml", m_protocol / L"fallback\\ButtonActions.xml"};
    int layer = 0;
    for (const std::wstring& path : layers)
        WriteFile(path,
                  "<b><b name='x'><Push1 actionParam='" + std::to_string(layer++) + "'/></b></b>");
    for (layer = 0; layer < 5; ++layer) {
        ActionRepository::DestroyInstance();
        EXPECT_EQ(Push1Param(L"x"), layer);
        ASSERT_TRUE(DeleteFileW(layers[layer].c_str()));
    }
}

TEST_F(RepositoryTest, ASavedCopyThatIsBrokenIsNotPassedOver)
{
    utilsExam::CreateDirectoryW((m_protocol / L"saved\\P1").c_str());
    WriteFile(m_protocol / L"saved\\P1\\ButtonActions.xml", "<b>");
    EXPECT_FALSE(Load("<b><b name='x'/></b>")->GetAction(L"x"));
    EXPECT_EQ(m_log.Take(), std::vector<LoggedMessage>{loadFailed});
}

TEST_F(RepositoryTest, DestroyingItMakesTheNextOneReadTheFileAgain)
{
    EXPECT_TRUE(Load("<b><b name='x'/></b>")->GetAction(L"x"));
    WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml", "<b><b name='y'/></b>");
    EXPECT_TRUE(ActionRepository::GetInstance()->GetAction(L"x"));
    ActionRepository::DestroyInstance();
    EXPECT_FALSE(ActionRepository::GetInstance()->GetAction(L"x"));
    EXPECT_TRUE(ActionRepository::GetInstance()->GetAction(L"y"));
}

TEST_F(RepositoryTest, DestroyingNoneDoesNothing)
{
    ActionRepository::DestroyInstance();
    ActionRepository::DestroyInstance();
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(RepositoryTest, ARecordStaysAtItsPlace)
{
    const ActionRepository* const repository = Load("<b><b name='x'/><b name='y'/></b>");
    const ButtonAction* const x = repository->GetAction(L"x");
    repository->GetAction(L"y");
    repository->GetAction(L"z");
    EXPECT_EQ(repository->GetAction(L"x"), x);
    EXPECT_EQ(repository->GetAction(x->name.c_str()), x);
}

TEST_F(RepositoryTest, EncodingsAndMarksMakeNoDifference)
{
    const std::wstring name = L"\u00E4\u20AC\U0001F600";
    const std::string utf8 = "<b><b name='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'/></b>";
    EXPECT_TRUE(Load(utf8)->GetAction(name.c_str()));
    EXPECT_TRUE(Load("\xEF\xBB\xBF" + utf8)->GetAction(name.c_str()));
    const std::wstring wide = L"\uFEFF<b><b name='" + name + L"'/></b>";
    EXPECT_TRUE(Load(std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2))
                    ->GetAction(name.c_str()));
}

} // namespace
