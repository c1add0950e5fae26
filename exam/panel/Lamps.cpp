#include "panel/Lamps.h"

#include <algorithm>
#include <utility>

namespace exam {

Lamps::Lamps(std::function<void()> changed) : m_changed(std::move(changed)) {}

void Lamps::Follow(const ButtonAction& button)
{
    for (const ActionStateInfo& state : button.states)
        RegisterActionSignal(state);
}

bool Lamps::IsLit(const ButtonAction& button) const
{
    return std::any_of(button.states.begin(), button.states.end(),
                       [this](const ActionStateInfo& state) {
                           const auto found = m_values.find(state);
                           return found != m_values.end() && found->second != 0;
                       });
}

std::optional<int> Lamps::ValueOf(const ButtonAction& button) const
{
    if (button.states.empty()) return std::nullopt;
    const auto found = m_values.find(*button.states.begin());
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void Lamps::ActionStateChanged(const ActionStateInfo& source, int value)
{
    const auto [entry, isNew] = m_values.try_emplace(source, value);
    if (!isNew && std::exchange(entry->second, value) == value) return;
    m_changed();
}

void Lamps::ActionNotification(ActionType, int, int) {}

} // namespace exam
