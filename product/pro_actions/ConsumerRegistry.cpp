#include "ConsumerRegistry.h"

#include <algorithm>
#include <new>

namespace pro_actions {

ConsumerRegistry& ConsumerRegistry::OfStates() noexcept
{
    static ConsumerRegistry registry;
    return registry;
}

ConsumerRegistry& ConsumerRegistry::OfNotifications() noexcept
{
    static ConsumerRegistry registry;
    return registry;
}

bool ConsumerRegistry::Add(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept
try {
    const std::scoped_lock guard{m_mutex};
    Registrations& registrations = m_topics[topic];
    const bool known =
        std::any_of(registrations.begin(), registrations.end(),
                    [&](const Registration& each) { return each.consumer == &consumer; });
    if (!known) registrations.push_back({m_nextSerial++, &consumer});
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void ConsumerRegistry::Remove(IActionStateConsumer& consumer, const ActionStateInfo& topic) noexcept
{
    const std::scoped_lock guard{m_mutex};
    const auto found = m_topics.find(topic);
    if (found == m_topics.end()) return;
    Erase(found->second, consumer);
    if (found->second.empty()) m_topics.erase(found);
}

void ConsumerRegistry::RemoveAll(IActionStateConsumer& consumer) noexcept
{
    const std::scoped_lock guard{m_mutex};
    for (auto topic = m_topics.begin(); topic != m_topics.end();) {
        Erase(topic->second, consumer);
        topic = topic->second.empty() ? m_topics.erase(topic) : std::next(topic);
    }
}

ConsumerRegistry::Serial ConsumerRegistry::NextSerial() noexcept
{
    const std::scoped_lock guard{m_mutex};
    return m_nextSerial;
}

IActionStateConsumer* ConsumerRegistry::Next(const ActionStateInfo& topic, Serial& from,
                                             Serial end) noexcept
{
    const std::scoped_lock guard{m_mutex};
    const auto found = m_topics.find(topic);
    if (found == m_topics.end()) return nullptr;
    const Registrations& registrations = found->second;
    const auto isBefore = [](const Registration& each, Serial serial) {
        return each.serial < serial;
    };
    const auto first = std::lower_bound(registrations.begin(), registrations.end(), from, isBefore);
    if (first == registrations.end() || first->serial >= end) return nullptr;
    from = first->serial + 1;
    return first->consumer;
}

void ConsumerRegistry::Erase(Registrations& registrations,
                             const IActionStateConsumer& consumer) noexcept
{
    std::erase_if(registrations,
                  [&](const Registration& each) { return each.consumer == &consumer; });
}

} // namespace pro_actions
