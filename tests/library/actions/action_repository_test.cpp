// The repository of button actions: which file it reads, when, and its answers then.
#include "ActionsFixture.h"
#include "RandomDocument.h"

#include <test_support/NoMemory.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <vector>

namespace {

// The protocol folders, a vocabulary, a log, and no repository yet.
class RepositoryTest : public testing::Test
{
protected:
    RepositoryTest() { ActionRepository::DestroyInstance(); }
    ~RepositoryTest() override { ActionRepository::DestroyInstance(); }

    // Makes the text the factory's file, and reads it.
    ActionRepository* Load(const std::string& text)
    {
        test_support::WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml", text);
        ActionRepository::DestroyInstance();
        return ActionRepository::GetInstance();
    }

    ProtocolFolders m_protocol;
    TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    test_support::LogCapture m_log;
};

using test_support::LoggedMessage;
using test_support::WriteFile;

const LoggedMessage loadFailed{"Utils_Statics/ActionRepository", 32, 1,
                               L"Could not load actions from file"};

int Push1Param(const wchar_t* name)
{
    const ButtonAction* const button = ActionRepository::GetInstance()->GetAction(name);
    return button ? button->push1.param : -1;
}

TEST_F(RepositoryTest, LooksUpWithoutAllocating)
{
    const std::wstring longName(1000, L'x');
    const ActionRepository* const repository =
        Load("<r><b name='" + std::string(1000, 'x') + "'/></r>");
    test_support::NoMemory noMemory;
    noMemory.From(0);
    const ButtonAction* const found = repository->GetAction(longName.c_str());
    const ButtonAction* const missing = repository->GetAction(longName.c_str() + 1);
    EXPECT_FALSE(test_support::NoMemory::End());
    EXPECT_TRUE(found);
    EXPECT_FALSE(missing);
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

// Random documents, read by the repository and by a plain reference.

// A repository written by the words of the contract.
class PlainRepository
{
public:
    explicit PlainRepository(const PlainElement& root)
    {
        for (const PlainElement& element : root.children) {
            const std::wstring name = element.Attribute("name");
            const bool known = std::any_of(m_buttons.begin(), m_buttons.end(),
                                           [&](const auto& each) { return each.name == name; });
            if (!name.empty() && !known) m_buttons.push_back(Read(element));
        }
    }

    const ButtonAction* Find(const std::wstring& name) const
    {
        for (const ButtonAction& button : m_buttons)
            if (button.name == name) return &button;
        return nullptr;
    }

    std::size_t size() const { return m_buttons.size(); }

private:
    static ActionInfo ReadAction(const PlainElement* element)
    {
        if (!element) return {};
        const int type = PlainType(element->Attribute("actionType"));
        return {static_cast<ActionType>(type), PlainAction(type, element->Attribute("action")),
                PlainParam(element->Attribute("actionParam")), element->Attribute("name")};
    }

    static ButtonAction Read(const PlainElement& element)
    {
        ButtonAction button;
        button.name = element.Attribute("name");
        button.push1 = ReadAction(element.Child("Push1"));
        button.push2 = ReadAction(element.Child("Push2"));
        button.decrement = ReadAction(element.Child("Decrement"));
        button.increment = ReadAction(element.Child("Increment"));
        if (const PlainElement* const states = element.Child("States"))
            for (const PlainElement& child : states->children)
                if (const auto state = PlainState(child)) button.states.insert(*state);
        return button;
    }

    std::vector<ButtonAction> m_buttons;
};

bool SameAction(const ActionInfo& a, const ActionInfo& b)
{
    return a.type == b.type && a.action == b.action && a.param == b.param && a.name == b.name;
}

bool SameButton(const ButtonAction& a, const ButtonAction& b)
{
    return a.name == b.name && SameAction(a.push1, b.push1) && SameAction(a.push2, b.push2) &&
           SameAction(a.decrement, b.decrement) && SameAction(a.increment, b.increment) &&
           a.states == b.states;
}

TEST_F(RepositoryTest, AgreesWithAPlainReferenceOverRandomDocuments)
{
    std::size_t buttons = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomDocument random(seed);
        const PlainElement root = random.Buttons(static_cast<int>(random.Pick(60)));
        const std::string xml = random.ToXml(root);
        const ActionRepository* const repository = Load(xml);
        const PlainRepository plain(root);
        for (const std::wstring& name : RandomDocument::ButtonNames()) {
            const ButtonAction* const expected = plain.Find(name);
            const ButtonAction* const found = repository->GetAction(name.c_str());
            ASSERT_EQ(found != nullptr, expected != nullptr) << xml;
            ASSERT_TRUE(!found || SameButton(*found, *expected)) << xml;
        }
        buttons += plain.size();
        ASSERT_TRUE(m_log.Take().empty()) << xml;
    }
    EXPECT_GT(buttons, 3000u);
}

// Random bytes of a sound document are changed. The result is a repository, empty or not, whose
// records have their own names.
TEST_F(RepositoryTest, DamagedDocumentsDoNoMoreThanFail)
{
    int read = 0;
    for (unsigned seed = 0; seed < 700; ++seed) {
        RandomDocument random(seed);
        std::string xml = random.ToXml(random.Buttons(12));
        random.Damage(xml, random.Pick(5));
        const ActionRepository* const repository = Load(xml);
        for (const std::wstring& name : RandomDocument::ButtonNames())
            if (const ButtonAction* const button = repository->GetAction(name.c_str())) {
                ASSERT_EQ(button->name, name);
                ++read;
            }
        ASSERT_LE(m_log.Take().size(), 1u);
    }
    EXPECT_GT(read, 500);
}

} // namespace
