#pragma once

#include <pro_actions/IActionStateConsumer.h>
#include <Utils_Statics/ButtonAction.h>

#include <functional>
#include <map>
#include <optional>

namespace exam {

/// The last values of the action states that the panel's buttons show.
class Lamps : public IActionStateConsumer
{
public:
    /// `changed` is called after each value that differs from the one before.
    explicit Lamps(std::function<void()> changed);

    /// Listens to all states of a button from now on.
    void Follow(const ButtonAction& button);

    /// True when any state of the button is on.
    bool IsLit(const ButtonAction& button) const;

    /// The value of the button's first state; none before its first broadcast.
    std::optional<int> ValueOf(const ButtonAction& button) const;

    void ActionStateChanged(const ActionStateInfo& source, int value) override;
    void ActionNotification(ActionType type, int action, int param) override;

private:
    std::function<void()> m_changed;
    std::map<ActionStateInfo, int> m_values;
};

} // namespace exam
