#include "ConsumerRegistry.h"

#include <algorithm>

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

void ConsumerRegistry::Add(IActionStateConsumer& consumer, const ActionStateInfo& topic)
{
    const std::scoped_lock guard{m_mutex};
    Registrations& registrations = m_topics[topic];
    const bool known =
        std::any_of(registrations.begin(), registrations.end(),
                    [&](const Registration& each) { return each.consumer == &consumer; });
    if (known) return;
    ++m_change;
    registrations.push_back({m_nextSerial++, &consumer});
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

IActionStateConsumer* ConsumerRegistry::Next(Walk& walk) noexcept
{
    if (walk.m_isOver) return nullptr;
    const std::scoped_lock guard{m_mutex};
    if (walk.m_end == 0) {
        walk.m_end = m_nextSerial;
        LookUp(walk);
    } else if (walk.m_change != m_change)
        LookUp(walk);
    walk.m_isOver = IsAtEnd(walk);
    if (walk.m_isOver) return nullptr;
    const Registration& registration = (*walk.m_registrations)[walk.m_place];
    walk.m_next = registration.serial + 1;
    ++walk.m_place;
    // Whoever is registered from now on gets a number that is not told.
    walk.m_isOver = IsAtEnd(walk);
    return registration.consumer;
}

bool ConsumerRegistry::IsAtEnd(const Walk& walk) noexcept
{
    const Registrations* const registrations = walk.m_registrations;
    return !registrations || walk.m_place == registrations->size() ||
           (*registrations)[walk.m_place].serial >= walk.m_end;
}

void ConsumerRegistry::LookUp(Walk& walk) const noexcept
{
    walk.m_change = m_change;
    const auto found = m_topics.find(walk.m_topic);
    walk.m_registrations = found == m_topics.end() ? nullptr : &found->second;
    if (!walk.m_registrations) return;
    const Registrations& all = *walk.m_registrations;
    const auto isBefore = [](const Registration& each, Serial serial) {
        return each.serial < serial;
    };
    const auto place = std::lower_bound(all.begin(), all.end(), walk.m_next, isBefore);
    walk.m_place = static_cast<std::size_t>(place - all.begin());
}

void ConsumerRegistry::Erase(Registrations& registrations,
                             const IActionStateConsumer& consumer) noexcept
{
    ++m_change;
    std::erase_if(registrations,
                  [&](const Registration& each) { return each.consumer == &consumer; });
}

} // namespace pro_actions
