// This reads 10,000 button actions, and changes a state that 1,000 derived states follow. Each is
// compared with a plain form or a peer in the same run. It ends with the ratios.
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <boost/signals2.hpp>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/DerivedState.h>
#include <zel_xml/zelXMLFile.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::wstring>;

// A folder for the console's protocols, with the vocabulary in force.
class Protocol
{
public:
    Protocol()
    {
        test_support::WriteFile(m_folder / L"actions.xml",
                                "<actions><type name='Imaging' value='1'><a name='Depth' code='0'/>"
                                "</type><type name='Lamp' value='2'><a name='On' code='0'/></type>"
                                "</actions>");
        pro_actions::LoadVocabulary(m_folder / L"actions.xml");
        qor_utils::SetStoreFolder(qor_utils::currentFactoryStore, m_folder.Path());
        qor_utils::SetStoreFolder(qor_utils::savedProtocolsStore, m_folder / L"saved");
        qor_utils::SetStoreFolder(qor_utils::fallbackFactoryStore, m_folder.Path());
    }
    ~Protocol() { pro_actions::ClearVocabulary(); }
    Protocol(const Protocol&) = delete;
    Protocol& operator=(const Protocol&) = delete;

    std::wstring ButtonFile() const { return m_folder / L"ButtonActions.xml"; }
    std::wstring StateFile() const { return m_folder / L"button_states.xml"; }

private:
    test_support::TemporaryFolder m_folder;
};

std::string Number(std::int64_t number)
{
    return std::to_string(number);
}

// Makes that many button names as protocols form them: by page, row and function.
Names MakeNames(std::int64_t count)
{
    static constexpr const wchar_t* functions[] = {L"Freeze", L"Gain", L"Depth", L"ColorFlow",
                                                   L"Print"};
    Names names;
    for (std::int64_t i = 0; i < count; ++i)
        names.push_back(L"Page" + std::to_wstring(i / 50) + L".Row" + std::to_wstring(i / 5 % 10) +
                        L"." + functions[i % 5]);
    return names;
}

std::string ActionElement(const char* element, std::int64_t param)
{
    return std::string("    <") + element +
           " actionType=\"Imaging\" action=\"Depth\" actionParam=\"" + Number(param) +
           "\" name=\"depth\"/>\n";
}

// A document of buttons with everything: four actions and three states each.
std::string ButtonDocument(const Names& names)
{
    std::string xml = "<ButtonActions>\n";
    for (const std::wstring& name : names) {
        xml += "  <Button name=\"" + std::string(name.begin(), name.end()) + "\">\n";
        for (const char* element : {"Push1", "Push2", "Decrement", "Increment"})
            xml += ActionElement(element, 1);
        xml += "    <States>\n";
        for (int i = 0; i < 3; ++i)
            xml += ActionElement("State", i);
        xml += "    </States>\n  </Button>\n";
    }
    return xml + "</ButtonActions>\n";
}

void LoadRepository(const Names& names, const Protocol& protocol)
{
    test_support::WriteFile(protocol.ButtonFile(), ButtonDocument(names));
    ActionRepository::DestroyInstance();
    ActionRepository::GetInstance();
}

void LoadButtons(benchmark::State& state)
{
    const Protocol protocol;
    LoadRepository(MakeNames(state.range(0)), protocol);
    for (auto _ : state) {
        ActionRepository::DestroyInstance();
        benchmark::DoNotOptimize(ActionRepository::GetInstance());
    }
    ActionRepository::DestroyInstance();
}

// The part of the loading that every reader needs.
void OpenDocument(benchmark::State& state)
{
    const Protocol protocol;
    LoadRepository(MakeNames(state.range(0)), protocol);
    for (auto _ : state) {
        zelXMLFile file;
        benchmark::DoNotOptimize(file.open(protocol.ButtonFile(), true));
    }
    ActionRepository::DestroyInstance();
}

const ActionStateInfo source{static_cast<ActionType>(1), 0, 0};

ActionStateInfo Lamp(std::int64_t number)
{
    return {static_cast<ActionType>(2), 0, static_cast<int>(number)};
}

class LampListener : public IActionStateConsumer
{
public:
    explicit LampListener(std::int64_t number) { RegisterActionSignal(Lamp(number)); }
    void ActionStateChanged(const ActionStateInfo&, int value) override { m_lit = value; }
    void ActionNotification(ActionType, int, int) override {}

private:
    int m_lit = 0;
};

// One change of a state that this many derived states follow, each with a lamp that listens to it.
void DerivedStates(benchmark::State& state)
{
    const Protocol protocol;
    std::string xml = "<States>\n";
    for (std::int64_t i = 0; i < state.range(0); ++i)
        xml += "<State actionType='Lamp' action='On' actionParam='" + Number(i) +
               "'><Source actionType='Imaging' action='Depth'/></State>\n";
    test_support::WriteFile(protocol.StateFile(), xml + "</States>\n");
    DerivedState::LoadAll();
    std::vector<std::unique_ptr<LampListener>> lamps;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        lamps.push_back(std::make_unique<LampListener>(i));
    int value = 0;
    for (auto _ : state)
        IActionStateConsumer::ActionStateSignal(source, value ^= 1);
    DerivedState::DestroyAll();
}

// A derived state with only its own work.
struct PlainDerived
{
    ActionStateInfo state;
    std::map<ActionStateInfo, int> values;

    int Change(const ActionStateInfo& changed, int value)
    {
        values[changed] = value;
        return std::all_of(values.begin(), values.end(),
                           [](const auto& entry) { return entry.second != 0; });
    }
};

// Makes the same change by lists of who follows what, without locks and without support for
// consumers that come and go.
void PlainDerivedStates(benchmark::State& state)
{
    std::map<ActionStateInfo, std::vector<IActionStateConsumer*>> listeners;
    std::vector<std::unique_ptr<LampListener>> lamps;
    std::vector<PlainDerived> followers;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        lamps.push_back(std::make_unique<LampListener>(i));
        listeners[Lamp(i)].push_back(lamps.back().get());
        followers.push_back({Lamp(i), {}});
    }
    int value = 0;
    for (auto _ : state) {
        value ^= 1;
        for (PlainDerived& follower : followers) {
            const int result = follower.Change(source, value);
            for (IActionStateConsumer* const listener : listeners[follower.state])
                listener->ActionStateChanged(follower.state, result);
        }
    }
}

// Makes the same change with a Boost signal for every state.
void BoostDerivedStates(benchmark::State& state)
{
    using Signal = boost::signals2::signal<void(const ActionStateInfo&, int)>;
    std::map<ActionStateInfo, Signal> signals;
    std::vector<std::unique_ptr<LampListener>> lamps;
    std::vector<std::unique_ptr<PlainDerived>> followers;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        lamps.push_back(std::make_unique<LampListener>(i));
        followers.push_back(std::make_unique<PlainDerived>(PlainDerived{Lamp(i), {}}));
        signals[Lamp(i)].connect(
            [lamp = lamps.back().get()](const ActionStateInfo& changed, int value) {
                lamp->ActionStateChanged(changed, value);
            });
        signals[source].connect([&signals, follower = followers.back().get()](
                                    const ActionStateInfo& changed, int value) {
            signals[follower->state](follower->state, follower->Change(changed, value));
        });
    }
    int value = 0;
    for (auto _ : state)
        signals[source](source, value ^= 1);
}

constexpr int stateCounts[] = {10, 1000};

void Register(const char* name, void (*function)(benchmark::State&), int argument)
{
    benchmark::RegisterBenchmark(name, function)->Arg(argument)->Repetitions(5)->MinTime(0.1);
}

void RegisterAll()
{
    Register("LoadButtons", LoadButtons, 10000);
    Register("OpenDocument", OpenDocument, 10000);
    for (const int count : stateCounts) {
        Register("DerivedStates", DerivedStates, count);
        Register("PlainDerivedStates", PlainDerivedStates, count);
        Register("BoostDerivedStates", BoostDerivedStates, count);
    }
}

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("LoadButtons/10000", "OpenDocument/10000");
    for (const int count : stateCounts) {
        reporter.PrintRatioAt(count, "DerivedStates", "PlainDerivedStates");
        reporter.PrintRatioAt(count, "BoostDerivedStates", "DerivedStates");
    }
}

} // namespace

int main(int argc, char** argv)
{
    RegisterAll();
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
