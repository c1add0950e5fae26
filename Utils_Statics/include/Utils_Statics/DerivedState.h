#pragma once

#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/IActionStateConsumer.h>
#include <Utils_Statics/export.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class zelXMLNode;

/// An action state that follows from others: on when any of its sources is on, or when all are. The
/// file "button_states.xml" of the fall-back factory settings defines these states
/// (docs/formats/button-states.md).
///
/// Derived states live from LoadAll to DestroyAll; neither may run while a state is being
/// broadcast. Each state is computed on the thread that broadcasts its source, inside that
/// broadcast.
class UTILS_STATICS_API DerivedState : public IActionStateConsumer
{
public:
    DerivedState(const DerivedState&) = delete;
    DerivedState& operator=(const DerivedState&) = delete;

    /// Keeps the source's value and broadcasts the resulting state, 0 or 1, even when it has not
    /// changed. Only sources that have reported since LoadAll take part.
    void ActionStateChanged(const ActionStateInfo& source, int value) override;

    /// Does nothing, because no state follows from an action.
    void ActionNotification(ActionType type, int action, int param) override;

    ~DerivedState() override;

    /// Replaces all derived states by those of the file. Nothing is broadcast. When the file cannot
    /// be read, the result is false and there are no derived states. Elements that name no state
    /// are left out silently.
    static bool LoadAll();

    /// Destroys all derived states; their sources are no longer followed.
    static void DestroyAll();

private:
    DerivedState();

    static std::unique_ptr<DerivedState> FromElement(const zelXMLNode& element);
    void Register(const zelXMLNode& source);
    int Combine() const noexcept;

    static std::vector<std::unique_ptr<DerivedState>> m_derivedStates; // in file order

    ActionStateInfo state;
    std::map<ActionStateInfo, std::int32_t> values; // the sources that have reported
    bool combineOr = false;                         // false: all sources have to be on
};
