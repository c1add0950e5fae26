// Random documents, read by the repository and by a plain reference.
#include "PlainVocabulary.h"
#include "RandomDocument.h"
#include "RepositoryFixture.h"

#include <algorithm>

namespace {

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
        for (unsigned change = random.Pick(5); change > 0; --change) {
            const std::size_t at = random.Pick(xml.size());
            switch (random.Pick(3)) {
            case 0: xml[at] = static_cast<char>(random.Pick(256)); break;
            case 1: xml.erase(at, random.Pick(40)); break;
            default: xml.insert(at, xml.substr(random.Pick(xml.size()), random.Pick(200)));
            }
        }
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
