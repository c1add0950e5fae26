#pragma once

#include <pro_actions/ActionStateInfo.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

class IActionStateConsumer;

namespace pro_actions {

// The registrations of consumers for topics.
//
// Each registration gets a serial number greater than all earlier ones. A broadcast walks the
// numbers that were assigned before it began, and finds its place again whenever registrations have
// changed. So nothing is copied, no consumer's action leaves a dangling pointer, and a new consumer
// at the address of a destroyed one is not mistaken for it.
class ConsumerRegistry
{
private:
    using Serial = std::uint64_t;
    struct Registration
    {
        Serial serial;
        IActionStateConsumer* consumer;
    };
    using Registrations = std::vector<Registration>; // in ascending order of serial numbers

public:
    // The position of a broadcast, which begins when the first consumer is asked for.
    class Walk
    {
    public:
        explicit Walk(const ActionStateInfo& topic) noexcept : m_topic(topic) {}

    private:
        friend class ConsumerRegistry;

        ActionStateInfo m_topic;
        bool m_isOver = false;                          // no further consumer is told
        Serial m_next = 0;                              // the least number of the next consumer
        Serial m_end = 0;                               // the first number that is not told
        std::uint64_t m_change = 0;                     // the change when m_place was found
        const Registrations* m_registrations = nullptr; // null when the topic has none
        std::size_t m_place = 0;
    };

    // The process's two registries: of consumers of states, and of consumers of notifications (all
    // under the default topic).
    static ConsumerRegistry& OfStates() noexcept;
    static ConsumerRegistry& OfNotifications() noexcept;

    // Each does nothing when there is nothing to change. Add throws only when memory is short.
    void Add(IActionStateConsumer& consumer, const ActionStateInfo& topic);
    void Remove(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept;
    void RemoveAll(IActionStateConsumer& consumer) noexcept;

    // The next consumer of the walk that is still registered; null when there is none. Those that
    // are registered at the first call are told. The call for each takes the lock once; it costs
    // more than all else that is done here.
    IActionStateConsumer* Next(Walk& walk) noexcept;

private:
    void Erase(Registrations& registrations, const IActionStateConsumer& consumer) noexcept;
    void LookUp(Walk& walk) const noexcept;
    static bool IsAtEnd(const Walk& walk) noexcept;

    std::mutex m_mutex;
    std::map<ActionStateInfo, Registrations> m_topics;
    Serial m_nextSerial = 1;
    std::uint64_t m_change = 0; // counts the changes of m_topics
};

} // namespace pro_actions
