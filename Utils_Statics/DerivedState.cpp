#include "Utils_Statics/DerivedState.h"

#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <zel_xml/zelXMLFile.h>

#include <algorithm>
#include <new>
#include <utility>

DerivedState::DerivedState() = default;

DerivedState::~DerivedState() = default;

bool DerivedState::LoadAll()
try {
    DestroyAll();
    zelXMLFile file;
    if (!file.open(zelPath::getPath(qor_utils::fallbackFactoryStore, L"button_states.xml"), true))
        return false;
    zelXMLNode element = file.getRootElement().getFirstChild();
    for (; element.isValid(); ++element)
        if (auto derived = FromElement(element)) m_derivedStates.push_back(std::move(derived));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void DerivedState::DestroyAll()
{
    m_derivedStates.clear();
}

std::unique_ptr<DerivedState> DerivedState::FromElement(const zelXMLNode& element)
{
    std::unique_ptr<DerivedState> derived(new DerivedState);
    if (!derived->state.Load(element)) return nullptr;
    derived->combineOr = element.getAttribute(L"combine") == L"Or";
    for (zelXMLNode source = element.getFirstChild(); source.isValid(); ++source)
        derived->Register(source);
    return derived;
}

void DerivedState::Register(const zelXMLNode& source)
{
    ActionStateInfo info;
    if (info.Load(source)) RegisterActionSignal(info);
}

void DerivedState::ActionStateChanged(const ActionStateInfo& source, int value)
{
    values[source] = value;
    ActionStateSignal(state, Combine());
}

void DerivedState::ActionNotification(ActionType, int, int) {}

int DerivedState::Combine() const noexcept
{
    const auto isOn = [](const auto& entry) { return entry.second != 0; };
    const bool on = combineOr ? std::any_of(values.begin(), values.end(), isOn)
                              : std::all_of(values.begin(), values.end(), isOn);
    return on ? 1 : 0;
}
