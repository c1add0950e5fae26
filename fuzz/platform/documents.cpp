// The target reads one XML document as each kind that the product has: buttons, placements, states,
// a panel, a vocabulary.
#include "panel/PanelLayout.h"

#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>
#include <pro_actions/VocabularyLoading.h>
#include <test_support/Files.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/DerivedState.h>

namespace {

// The places where the library looks for its documents.
struct Places
{
    test_support::ProtocolFolders protocols;
    test_support::TemporaryFolder folder;
};

void ReadButtons()
{
    ActionRepository::GetInstance()->GetAction(L"Freeze");
    ActionRepository::DestroyInstance();
}

void ReadStates()
{
    if (DerivedState::LoadAll())
        for (int value = 0; value < 2; ++value)
            IActionStateConsumer::ActionStateSignal(test_support::State(1, 0), value);
    DerivedState::DestroyAll();
}

void ReadPanel(const std::wstring& path)
{
    exam::PanelLayout panel;
    if (!panel.Load(path)) return;
    const auto& placements = panel.Placements();
    for (std::size_t i = 0; i < placements.size() && i < 8; ++i) {
        if (exam::PanelGrid::Holds(placements[i].grid))
            fuzz::Require(!exam::PanelGrid::AreaOf(placements[i].grid, exam::PanelGrid::consoleSize)
                               .IsRectEmpty(),
                          "a button on the grid has pixels");
        panel.Move(i, 1, 1);
        panel.ToggleCheck(i);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Places places;
    const fuzz::Input input(data, size);
    const std::string bytes(input.Rest());
    static const test_support::TestVocabulary vocabulary(places.folder / L"actions.xml");
    test_support::WriteFile(places.protocols / L"factory\\P1\\ButtonActions.xml", bytes);
    test_support::WriteFile(places.protocols / L"fallback\\button_states.xml", bytes);
    const std::wstring path = fuzz::InputFile(bytes);
    ReadButtons();
    ReadStates();
    ReadPanel(path);
    return 0;
}
