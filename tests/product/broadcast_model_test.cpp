// Compares the broadcast with a plain model of it.
#include "Consumer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <random>

namespace {

// Random registrations, broadcasts and destructions, also from inside notifications. A plain list
// holds who is registered for what since when.
class BroadcastModel
{
public:
    explicit BroadcastModel(unsigned seed) : m_random(seed) {}

    void Step(int depth)
    {
        switch (Pick(7)) {
        case 0: Create(); break;
        case 1: Destroy(); break;
        case 2:
        case 3: Enlist(); break;
        case 4: Delist(); break;
        default: Broadcast(depth);
        }
    }

    int Delivered() const { return m_delivered; }

private:
    struct Entry
    {
        int id;
        int topic;
        int since;
    };

    int Pick(std::size_t count) { return static_cast<int>(m_random() % count); }

    int PickConsumer()
    {
        if (m_consumers.empty()) Create();
        return std::next(m_consumers.begin(), Pick(m_consumers.size()))->first;
    }

    void Create()
    {
        if (m_consumers.size() >= 12) return;
        const int id = m_nextId++;
        auto consumer = std::make_unique<Consumer>();
        consumer->onChange = [this, id](const ActionStateInfo& source, int value) {
            Told(id, source.action, value);
        };
        m_consumers.emplace(id, std::move(consumer));
    }

    void Destroy()
    {
        if (m_consumers.empty()) return;
        const int id = PickConsumer();
        std::erase_if(m_entries, [id](const Entry& entry) { return entry.id == id; });
        m_consumers.erase(id);
    }

    void Enlist()
    {
        const int id = PickConsumer(), topic = Pick(4);
        m_consumers[id]->RegisterActionSignal(State(6, topic));
        const auto same = [&](const Entry& entry) {
            return entry.id == id && entry.topic == topic;
        };
        if (std::none_of(m_entries.begin(), m_entries.end(), same))
            m_entries.push_back({id, topic, m_clock++});
    }

    void Delist()
    {
        const int id = PickConsumer(), topic = Pick(4);
        m_consumers[id]->UnregisterActionSignal(State(6, topic));
        std::erase_if(m_entries,
                      [&](const Entry& entry) { return entry.id == id && entry.topic == topic; });
    }

    // The entry that must be told next, or null.
    const Entry* Expected(int topic, int after, int before) const
    {
        for (const Entry& entry : m_entries)
            if (entry.topic == topic && entry.since > after && entry.since < before) return &entry;
        return nullptr;
    }

    void Broadcast(int depth)
    {
        if (depth >= 4) return;
        const int topic = Pick(4);
        m_running.push_back({topic, -1, m_clock, depth});
        IActionStateConsumer::ActionStateSignal(State(6, topic), depth);
        const Running ended = m_running.back();
        m_running.pop_back();
        EXPECT_EQ(Expected(topic, ended.after, ended.before), nullptr) << "somebody was not told";
    }

    void Told(int id, int topic, int value)
    {
        ++m_delivered;
        Running& running = m_running.back();
        const Entry* entry = Expected(running.topic, running.after, running.before);
        ASSERT_NE(entry, nullptr) << "told though nobody was left";
        EXPECT_EQ(entry->id, id);
        EXPECT_EQ(topic, running.topic);
        EXPECT_EQ(value, running.depth);
        running.after = entry->since;
        const int depth = running.depth;
        for (int i = Pick(3); i > 0; --i)
            Step(depth + 1);
    }

    struct Running
    {
        int topic;
        int after;  // time of registration of the last one told
        int before; // time when the broadcast began
        int depth;
    };

    std::mt19937 m_random;
    std::map<int, std::unique_ptr<Consumer>> m_consumers;
    std::vector<Entry> m_entries;
    std::vector<Running> m_running;
    int m_nextId = 0;
    int m_clock = 0;
    int m_delivered = 0;
};

TEST(BroadcastTest, AgreesWithAPlainModelOverRandomSteps)
{
    int delivered = 0;
    for (unsigned seed = 0; seed < 20; ++seed) {
        BroadcastModel model(seed);
        for (int i = 0; i < 2000 && !testing::Test::HasFailure(); ++i)
            model.Step(0);
        delivered += model.Delivered();
    }
    EXPECT_GT(delivered, 10000);
}

} // namespace
