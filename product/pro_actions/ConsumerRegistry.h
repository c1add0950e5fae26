#pragma once

#include <pro_actions/ActionStateInfo.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

class IActionStateConsumer;

namespace pro_actions {

// Who is registered for what.
//
// Each registration gets a serial number, greater than all before it. A broadcast walks the numbers
// that were given out before it began, and looks its place up anew whenever registrations have
// changed. So nothing is copied, nothing can be left dangling by what a consumer does, and a new
// consumer at the address of a destroyed one is not taken for it.
class ConsumerRegistry
{
private:
    using Serial = std::uint64_t;
    struct Registration
    {
        Serial serial;
        IActionStateConsumer* consumer;
    };
    using Registrations = std::vector<Registration>; // by ascending serial number

public:
    // Where a broadcast stands.
    class Walk
    {
    private:
        friend class ConsumerRegistry;

        ActionStateInfo m_topic;
        Serial m_next = 0;                              // of the next consumer at least
        Serial m_end = 0;                               // of those that are not told any more
        std::uint64_t m_change = 0;                     // the place below is as of this change
        const Registrations* m_registrations = nullptr; // null: none of the topic
        std::size_t m_place = 0;
    };

    // The process's two registries: of consumers of states, and (all under the default topic) of
    // notifications.
    static ConsumerRegistry& OfStates() noexcept;
    static ConsumerRegistry& OfNotifications() noexcept;

    // Each does nothing when there is nothing to do. Add throws only for want of memory.
    void Add(IActionStateConsumer& consumer, const ActionStateInfo& topic);
    void Remove(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept;
    void RemoveAll(IActionStateConsumer& consumer) noexcept;

    // A walk over the consumers that are registered for the topic now.
    Walk Begin(const ActionStateInfo& topic) noexcept;

    // The next consumer of the walk that is still registered; null when there is none.
    IActionStateConsumer* Next(Walk& walk) noexcept;

private:
    void Erase(Registrations& registrations, const IActionStateConsumer& consumer) noexcept;
    void LookUp(Walk& walk) const noexcept;

    std::mutex m_mutex;
    std::map<ActionStateInfo, Registrations> m_topics;
    Serial m_nextSerial = 1;
    std::uint64_t m_change = 0; // counts the changes of m_topics
};

} // namespace pro_actions
