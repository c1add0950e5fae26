// The state-change signal against a plain model of its rules, step by step over random sequences:
// construct, copy, assign, destroy and emit. The operations also come from inside handlers, with
// throttling and handlers that throw.
#include <gtest/gtest.h>
#include <Utils_Statics/IStateChangeConsumer.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int cellCount = 10; // few, so that addresses are reused often

struct HandlerFailure
{
};

enum class Action
{
    nothing,
    construct,
    copy,
    assign,
    destroy,
    destroySelf,
    emit,
    interval,
    fail
};

struct Operation
{
    Action action;
    int cell, source;
};

// Consumers in numbered cells. Two worlds implement it: the library and the model.
class World
{
public:
    virtual ~World() = default;
    virtual bool IsOccupied(int cell) const = 0;
    virtual void Construct(int cell) = 0;
    virtual void Copy(int cell, int source) = 0;
    virtual void Assign(int cell, int source) = 0;
    virtual void Destroy(int cell) = 0;
    virtual int Emit(int value) = 0;
    virtual void SetThrottled(bool throttled) = 0;
};

// Plays operations in one world and records who was called. The actions of a handler follow from a
// sequence of random numbers. The sequence is the same for both worlds as long as they call the
// same handlers in the same order.
class Player
{
public:
    explicit Player(std::uint32_t seed, bool mayFail) : m_random(seed), m_mayFail(mayFail) {}

    void SetWorld(World& world) { m_world = &world; }

    Operation NextOperation(bool isInHandler)
    {
        static constexpr Action outside[] = {
            Action::construct, Action::construct, Action::copy, Action::assign,  Action::destroy,
            Action::emit,      Action::emit,      Action::emit, Action::interval};
        static constexpr Action inside[] = {Action::nothing,     Action::nothing, Action::nothing,
                                            Action::construct,   Action::copy,    Action::assign,
                                            Action::destroy,     Action::destroy, Action::emit,
                                            Action::destroySelf, Action::interval};
        Operation operation;
        if (isInHandler && m_mayFail && Draw(400) == 0)
            operation.action = Action::fail;
        else
            operation.action =
                isInHandler ? inside[Draw(std::size(inside))] : outside[Draw(std::size(outside))];
        operation.cell = static_cast<int>(Draw(cellCount));
        operation.source = static_cast<int>(Draw(cellCount));
        return operation;
    }

    // Leaves out an operation that does not fit, in both worlds alike.
    void Apply(const Operation& operation)
    {
        const bool occupied = m_world->IsOccupied(operation.cell);
        const bool hasSource = m_world->IsOccupied(operation.source);
        switch (operation.action) {
        case Action::construct:
            if (!occupied) m_world->Construct(operation.cell);
            break;
        case Action::copy:
            if (!occupied && hasSource) m_world->Copy(operation.cell, operation.source);
            break;
        case Action::assign:
            if (occupied && hasSource) m_world->Assign(operation.cell, operation.source);
            break;
        case Action::destroy:
        case Action::destroySelf:
            if (occupied) m_world->Destroy(operation.cell);
            break;
        case Action::emit: Emit(operation.source); break;
        case Action::interval: m_world->SetThrottled(operation.source < 3); break;
        case Action::fail: throw HandlerFailure();
        case Action::nothing: break;
        }
    }

    // Called by every handler; returns the handler's result.
    int Called(int cell, int value)
    {
        trace.push_back(cell);
        trace.push_back(value);
        for (std::uint32_t actions = Draw(4); actions > 0; --actions) {
            Operation operation = NextOperation(true);
            if (operation.action == Action::destroySelf) operation.cell = cell;
            Apply(operation);
        }
        return static_cast<int>(Draw(5));
    }

    std::vector<int> trace;
    bool failed = false;

private:
    static constexpr int emissionMark = 1000, failureMark = 2000;

    void Emit(int value)
    {
        trace.push_back(emissionMark);
        try {
            trace.push_back(m_world->Emit(value));
        } catch (const HandlerFailure&) {
            trace.push_back(failureMark);
            failed = true;
        }
    }

    std::uint32_t Draw(std::size_t range) { return static_cast<std::uint32_t>(m_random() % range); }

    std::mt19937 m_random;
    World* m_world = nullptr;
    bool m_mayFail;
};

// ---- The model: the rules, written as plainly as possible

class Model : public World
{
public:
    // With results, an emission adds them up and stops when the sum exceeds `limit`.
    Model(Player& player, bool hasResults, int limit)
        : m_player(player), m_hasResults(hasResults), m_limit(limit)
    {
    }

    bool IsOccupied(int cell) const override { return At(cell).isAlive; }

    void Construct(int cell) override
    {
        At(cell) = {true, false, ++m_generations};
        m_listed.push_back(cell);
    }
    void Copy(int cell, int source) override
    {
        At(cell) = {true, At(source).isBusy, ++m_generations};
    }
    void Assign(int cell, int source) override { At(cell).isBusy = At(source).isBusy; }
    void Destroy(int cell) override
    {
        At(cell).isAlive = false;
        const auto listed = std::find(m_listed.begin(), m_listed.end(), cell);
        if (listed != m_listed.end()) m_listed.erase(listed);
    }

    int Emit(int value) override
    {
        if (m_isBusy) return 0;
        if (m_isThrottled) {
            const bool isEarly = m_hadAttempt;
            m_hadAttempt = true;
            if (isEarly) return 0;
        }
        m_isBusy = true;
        int running = 0;
        for (std::size_t i = 0; i < m_listed.size(); ++i) {
            const int result = Call(m_listed[i], value);
            if (m_hasResults) running += result;
            if (running > m_limit) break;
        }
        m_isBusy = false;
        return running;
    }

    void SetThrottled(bool throttled) override { m_isThrottled = throttled; }

    const std::vector<int>& Listed() const { return m_listed; }

private:
    struct Cell
    {
        bool isAlive = false;
        bool isBusy = false;
        int generation = 0;
    };

    Cell& At(int cell) { return m_cells[static_cast<std::size_t>(cell)]; }
    const Cell& At(int cell) const { return m_cells[static_cast<std::size_t>(cell)]; }

    int Call(int cell, int value)
    {
        if (At(cell).isBusy) return 0;
        At(cell).isBusy = true;
        const int generation = At(cell).generation;
        const int result = m_player.Called(cell, value);
        if (At(cell).isAlive && At(cell).generation == generation) At(cell).isBusy = false;
        return result;
    }

    Player& m_player;
    bool m_hasResults;
    int m_limit;
    std::array<Cell, cellCount> m_cells;
    std::vector<int> m_listed;
    bool m_isBusy = false, m_isThrottled = false, m_hadAttempt = false;
    int m_generations = 0;
};

// ---- The library

constexpr std::uint32_t oneDay = 24 * 3600 * 1000;

// Places for objects whose addresses are the cells' addresses.
template <class Object>
class Cells
{
public:
    ~Cells()
    {
        for (int cell = 0; cell < cellCount; ++cell)
            Destroy(cell);
    }

    Object* At(int cell) const { return m_objects[static_cast<std::size_t>(cell)]; }

    template <class... Arguments>
    void Construct(int cell, Arguments&&... arguments)
    {
        const auto i = static_cast<std::size_t>(cell);
        m_objects[i] = new (m_places[i].bytes) Object(std::forward<Arguments>(arguments)...);
    }

    void Destroy(int cell)
    {
        Object* const object = std::exchange(m_objects[static_cast<std::size_t>(cell)], nullptr);
        if (object) object->~Object();
    }

private:
    struct Place
    {
        alignas(Object) unsigned char bytes[sizeof(Object)];
    };
    std::array<Place, cellCount> m_places;
    std::array<Object*, cellCount> m_objects{};
};

// The process-wide signal and its consumers.
class ConsumerWorld : public World
{
public:
    explicit ConsumerWorld(Player& player) : m_player(player)
    {
        Consumer::TheSignal().SetMinimumInterval(0);
    }
    ~ConsumerWorld() override { Consumer::TheSignal().SetMinimumInterval(0); }

    bool IsOccupied(int cell) const override { return m_cells.At(cell); }
    void Construct(int cell) override { m_cells.Construct(cell, m_player, cell); }
    void Copy(int cell, int source) override { m_cells.Construct(cell, *m_cells.At(source), cell); }
    void Assign(int cell, int source) override
    {
        IStateChangeConsumer& assigned = *m_cells.At(cell);
        assigned = *m_cells.At(source);
    }
    void Destroy(int cell) override { m_cells.Destroy(cell); }
    int Emit(int value) override
    {
        IStateChangeConsumer::StateChangeSignal(StateChangeType{value}, 0, 0);
        return 0;
    }
    void SetThrottled(bool throttled) override
    {
        Consumer::TheSignal().SetMinimumInterval(throttled ? oneDay : 0);
    }

    static std::uint32_t ListedCount() { return Consumer::TheSignal().GetPeerCount(); }

private:
    class Consumer : public IStateChangeConsumer
    {
    public:
        Consumer(Player& player, int cell) : m_player(&player), m_cell(cell) {}
        Consumer(const Consumer& other, int cell)
            : IStateChangeConsumer(other), m_player(other.m_player), m_cell(cell)
        {
        }
        void OnStateChange(StateChangeType type, unsigned int, long) override
        {
            m_player->Called(m_cell, type); // may destroy this object
        }
        static Signal& TheSignal() { return m_onStateChangeSignal; }

    private:
        Player* m_player;
        int m_cell;
    };

    Player& m_player;
    Cells<Consumer> m_cells;
};

// A signal of its own with results and a combiner. It has two kinds of slots: those of the usual
// method and others.
class SlotWorld : public World
{
    class Consumer
    {
    public:
        using Slot = cSlot<Consumer, int, int, int, int, int, int>;

        Consumer(Player& player, int cell) : m_player(&player), m_cell(cell) { Bind(); }
        Consumer(const Consumer& other, int cell)
            : m_player(other.m_player), m_cell(cell), slot(other.slot)
        {
            Bind();
        }

        int Usual(int value) { return m_player->Called(m_cell, value); } // may destroy this object
        int Other(int value) { return Usual(value); }

    private:
        void Bind()
        {
            if (m_cell % 2 == 0)
                slot.Bind<&Consumer::Usual>(this);
            else
                slot.Bind(this, &Consumer::Other);
        }

        Player* m_player;
        int m_cell;

    public:
        Slot slot;
    };

    using Signal = cSignal<int, int, int, int, int, int, &Consumer::Usual>;

public:
    explicit SlotWorld(Player& player, int limit)
        : m_player(player), m_signal(std::make_unique<Signal>("model"))
    {
        s_limit = limit;
        m_signal->SetCombiner(
            [](int* running, int result) { return (*running += result) <= s_limit; });
    }

    bool IsOccupied(int cell) const override { return m_cells.At(cell); }
    void Construct(int cell) override
    {
        m_cells.Construct(cell, m_player, cell);
        m_signal->Connect(m_cells.At(cell)->slot);
    }
    void Copy(int cell, int source) override { m_cells.Construct(cell, *m_cells.At(source), cell); }
    void Assign(int cell, int source) override
    {
        m_cells.At(cell)->slot = m_cells.At(source)->slot;
    }
    void Destroy(int cell) override { m_cells.Destroy(cell); }
    int Emit(int value) override { return m_signal->Call1(value); }
    void SetThrottled(bool throttled) override
    {
        m_signal->SetMinimumInterval(throttled ? oneDay : 0);
    }

    // The cells that the signal lists, in order.
    std::vector<int> Listed() const
    {
        std::vector<int> listed;
        for (std::uint32_t i = 0; i < m_signal->GetPeerCount(); ++i)
            listed.push_back(CellOf(m_signal->GetPeer(i)));
        return listed;
    }

private:
    template <class Peer>
    int CellOf(const Peer& peer) const
    {
        for (int cell = 0; cell < cellCount; ++cell)
            if (IsOccupied(cell) && &m_cells.At(cell)->slot == &peer) return cell;
        return -1;
    }

    static inline int s_limit = 0;

    Player& m_player;
    std::unique_ptr<Signal> m_signal;
    Cells<Consumer> m_cells; // goes first, because a copy keeps a pointer to the signal that the
                             // signal does not know of
};

constexpr int stepCount = 120000;

TEST(StateSignalModel, ConsumersBehaveAsTheModelDoes)
{
    Player realPlayer(1, false), modelPlayer(1, false);
    ConsumerWorld real(realPlayer);
    Model model(modelPlayer, false, 0);
    realPlayer.SetWorld(real);
    modelPlayer.SetWorld(model);
    std::size_t callCount = 0;
    for (int step = 0; step < stepCount; ++step) {
        const Operation operation = realPlayer.NextOperation(false);
        modelPlayer.NextOperation(false);
        realPlayer.Apply(operation);
        modelPlayer.Apply(operation);
        callCount += modelPlayer.trace.size();
        ASSERT_EQ(realPlayer.trace, modelPlayer.trace) << "step " << step;
        ASSERT_EQ(ConsumerWorld::ListedCount(), model.Listed().size()) << "step " << step;
        realPlayer.trace.clear();
        modelPlayer.trace.clear();
    }
    EXPECT_GT(callCount, static_cast<std::size_t>(stepCount))
        << "the sequences hardly called anybody";
}

// Plays one signal's life in both worlds, until a handler throws (then the signal is silent) or
// `steps` are done.
int PlaySignal(std::uint32_t seed, int steps)
{
    const int limit = seed % 4 == 0 ? 8 : INT_MAX / 2;
    Player realPlayer(seed, true), modelPlayer(seed, true);
    SlotWorld real(realPlayer, limit);
    Model model(modelPlayer, true, limit);
    realPlayer.SetWorld(real);
    modelPlayer.SetWorld(model);
    int afterFailure = 20; // the silence is compared for a while
    int step = 0;
    for (; step < steps && afterFailure > 0; ++step) {
        const Operation operation = realPlayer.NextOperation(false);
        modelPlayer.NextOperation(false);
        realPlayer.Apply(operation);
        modelPlayer.Apply(operation);
        EXPECT_EQ(realPlayer.trace, modelPlayer.trace) << "seed " << seed << ", step " << step;
        EXPECT_EQ(real.Listed(), model.Listed()) << "seed " << seed << ", step " << step;
        if (testing::Test::HasFailure()) break;
        realPlayer.trace.clear();
        modelPlayer.trace.clear();
        if (realPlayer.failed) --afterFailure;
    }
    return step;
}

TEST(StateSignalModel, SignalsAndSlotsBehaveAsTheModelDoes)
{
    int steps = 0;
    for (std::uint32_t seed = 1; steps < stepCount && !HasFailure(); ++seed)
        steps += PlaySignal(seed, 2000);
}

} // namespace
