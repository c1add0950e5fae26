// Buttons and lamps: protocol files say what a button does and which states its lamp shows, also
// states that follow from others. The application carries actions out and broadcasts states.
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/DerivedState.h>

#include <cstdio>

namespace {

class Lamp : public IActionStateConsumer
{
public:
    explicit Lamp(const ButtonAction& button)
    {
        for (const ActionStateInfo& state : button.states)
            RegisterActionSignal(state);
    }

    void ActionStateChanged(const ActionStateInfo&, int value) override
    {
        std::printf("the lamp is %s\n", value ? "lit" : "dark");
    }
    void ActionNotification(ActionType, int, int) override {}
};

} // namespace

int main()
{
    const auto beside = [](const wchar_t* name) {
        return zelPath::getPath(qor_utils::applicationStore, name);
    };
    qor_utils::SetStoreFolder(qor_utils::currentFactoryStore, beside(L"protocol"));
    qor_utils::SetStoreFolder(qor_utils::fallbackFactoryStore, beside(L"protocol"));
    if (!pro_actions::LoadVocabulary(beside(L"actions.xml")) || !DerivedState::LoadAll()) return 1;

    const ButtonAction* const button = ActionRepository::GetInstance()->GetAction(L"F1");
    if (!button) return 1;
    std::printf("F1 does %ls\n",
                pro_actions::ActionName(button->push1.type, button->push1.action).c_str());

    const Lamp lamp(*button);
    const ActionType document = CProActionCollection::MapActionType(L"Document");
    const ActionStateInfo recording = {document,
                                       CProActionCollection::MapAction(document, L"Record"), 0};
    const ActionStateInfo frozen = {button->push1.type, button->push1.action, 0};
    IActionStateConsumer::ActionStateSignal(recording, 1);
    IActionStateConsumer::ActionStateSignal(frozen, 1);
    IActionStateConsumer::ActionStateSignal(recording, 0);
    IActionStateConsumer::ActionStateSignal(frozen, 0);

    DerivedState::DestroyAll();
    ActionRepository::DestroyInstance();
}
