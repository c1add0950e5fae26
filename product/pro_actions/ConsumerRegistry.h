#pragma once

#include <pro_actions/ActionStateInfo.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

class IActionStateConsumer;

namespace pro_actions {

// Who is registered for what.
//
// Each registration gets a serial number, greater than all before it. A broadcast walks the numbers
// that were given out before it began, looking the next one up each time, so that nothing is
// copied, nothing can be left dangling by what a consumer does, and a new consumer at the address
// of a destroyed one is not taken for it.
class ConsumerRegistry
{
public:
    using Serial = std::uint64_t;

    // The process's two registries: of consumers of states, and (all under the default topic) of
    // notifications.
    static ConsumerRegistry& OfStates() noexcept;
    static ConsumerRegistry& OfNotifications() noexcept;

    // Each does nothing when there is nothing to do. Add is false only for want of memory.
    bool Add(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept;
    void Remove(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept;
    void RemoveAll(IActionStateConsumer& consumer) noexcept;

    // The serial number that the next registration will get.
    Serial NextSerial() noexcept;

    // The first consumer of the topic whose serial number is at least from and less than end; null
    // when there is none. from moves on behind it.
    IActionStateConsumer* Next(const ActionStateInfo& topic, Serial& from, Serial end) noexcept;

private:
    struct Registration
    {
        Serial serial;
        IActionStateConsumer* consumer;
    };
    using Registrations = std::vector<Registration>; // by ascending serial number

    static void Erase(Registrations& registrations, const IActionStateConsumer& consumer) noexcept;

    std::mutex m_mutex;
    std::map<ActionStateInfo, Registrations> m_topics;
    Serial m_nextSerial = 1;
};

} // namespace pro_actions
