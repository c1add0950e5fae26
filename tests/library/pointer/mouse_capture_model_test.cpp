// The arbitration of the pointer against a plain reference of it, over random steps. The handlers
// play steps of their own from inside their operations.
#include "MouseCaptureModel.h"

#include <gtest/gtest.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

#include <deque>
#include <optional>
#include <random>
#include <sstream>

namespace capture_model {

namespace {

// A handler that lives in the world of a side. The side outlives it, even when it is destroyed in
// its own operation.
class ModelTool : public IMouseHandler
{
public:
    ModelTool(Side& side, int number) : m_side(side), m_number(number) {}
    ~ModelTool() override = default;

    int Number() const { return m_number; }

    bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override
    {
        return m_side.OnMouseInput(m_number, message, flags, x, y);
    }
    void OnReleaseMouse() override { m_side.OnRelease(m_number); }
    void GetAutoPoints(std::vector<POINT>& points) override { points = m_side.GetPoints(m_number); }
    void SetLock(int index) override { m_side.OnSetLock(m_number, index); }
    bool HasBackgroundPoint() const override { return m_side.HasBackground(m_number); }
    LockType GetLockType() const override
    {
        return static_cast<LockType>(m_side.GetType(m_number));
    }
    int GetLockOrder() const override { return m_side.GetOrder(m_number); }
    void GetBackgroundRect(CRect& rect) override { rect = m_side.GetArea(m_number); }

private:
    Side& m_side;
    int m_number;
};

// The side of the arbitration itself.
class Actual : public Side
{
public:
    State GetState() const override
    {
        const auto* owner = static_cast<const ModelTool*>(MouseCapture::GetLock());
        return {owner ? owner->Number() : nobody, MouseCapture::GetInput(),
                MouseCapture::GetLockRect()};
    }

protected:
    void Created(int tool) override { m_living.emplace_back().emplace(*this, tool); }
    void Destroyed(int tool) override { m_living[static_cast<std::size_t>(tool)].reset(); }
    void Register(int tool) override { MouseCapture::Register(At(tool)); }
    void Unregister(int tool) override { MouseCapture::Unregister(At(tool)); }
    bool Lock(int tool, int index) override { return MouseCapture::Lock(At(tool), index); }
    bool Unlock() override { return MouseCapture::Unlock(); }
    bool LockNext() override { return MouseCapture::LockNext(); }
    bool HandleMouse(unsigned int message, unsigned int flags, POINT point) override
    {
        return MouseCapture::HandleMouse(message, flags, point);
    }
    void Clip(const RECT* rect) override
    {
        RECT copy = rect ? *rect : RECT{};
        MouseCapture::ClipCursor(rect ? &copy : nullptr);
    }
    void Initialize(const RECT& area, int input) override
    {
        MouseCapture::Initialize(CRect(area), static_cast<InputType>(input));
    }
    void SetFreeze(bool on) override { MouseCapture::SetFreeze(on); }
    void SetImaging(bool on) override { MouseCapture::SetImaging(on); }
    void SetResearch(bool on) override { utilsExam::ResearchMode = on; }

private:
    IMouseHandler* At(int tool) const
    {
        return tool == nobody ? nullptr : &*m_living[static_cast<std::size_t>(tool)];
    }

    // The tools by number, so that no tool ever has the address of another one.
    mutable std::deque<std::optional<ModelTool>> m_living;
};

// Random steps, in proportions that keep the tools alive, registered and locked often enough.
class Generator
{
public:
    explicit Generator(unsigned int seed) : m_random(seed) {}

    Step Next()
    {
        if (Below(1000) == 0) ChangePhase();
        if (m_pending.empty()) return Random(0);
        Step step = std::move(m_pending.front());
        m_pending.pop_front();
        return step;
    }

private:
    // The phases alternate: tools have points and, for a while, none has, so that the background
    // comes into play.
    void ChangePhase()
    {
        m_pointless = !m_pointless;
        for (int slot = 0; slot < slotCount; ++slot) {
            Step step;
            step.operation = Operation::ChangePoints;
            step.slot = slot;
            step.points = Points();
            m_pending.push_back(step);
        }
    }

    Step Random(int depth)
    {
        static constexpr std::array<std::pair<Operation, int>, 16> weights = {{
            {Operation::Create, 5},
            {Operation::Destroy, 2},
            {Operation::Register, 8},
            {Operation::Unregister, 3},
            {Operation::Lock, 8},
            {Operation::Unlock, 3},
            {Operation::LockNext, 18},
            {Operation::Mouse, 34},
            {Operation::Clip, 2},
            {Operation::Initialize, 2},
            {Operation::Freeze, 1},
            {Operation::Imaging, 1},
            {Operation::Research, 1},
            {Operation::ChangePoints, 4},
            {Operation::ChangeTraits, 3},
            {Operation::React, 5},
        }};
        Step step;
        step.operation = Pick(weights);
        step.slot =
            Below(20) == 0 && IsPointerTaking(step.operation) ? slotCount : Below(slotCount);
        step.index = step.operation == Operation::Initialize ? Below(2)
                     : Below(30) == 0                        ? Extreme()
                                                             : Below(4);
        step.message = 512u + static_cast<unsigned int>(Below(4));
        step.flags = static_cast<unsigned int>(Below(4));
        step.point = Point();
        step.rect = Rect();
        step.on = Below(2) == 0;
        step.points = Points();
        step.traits = {Below(6), Below(4) == 0 ? 1 + Below(2) : 0, Below(4) == 0, Below(2) == 0,
                       Rect()};
        step.call = static_cast<Call>(Below(static_cast<int>(Call::count)));
        if (step.operation == Operation::React) {
            if (depth == 3)
                step.operation = Operation::Destroy;
            else
                step.reaction.push_back(Random(depth + 1));
        }
        return step;
    }

    static bool IsPointerTaking(Operation operation)
    {
        return operation == Operation::Register || operation == Operation::Unregister ||
               operation == Operation::Lock;
    }

    template <typename Weights>
    Operation Pick(const Weights& weights)
    {
        int total = 0;
        for (const auto& weight : weights)
            total += weight.second;
        int left = Below(total);
        for (const auto& weight : weights)
            if ((left -= weight.second) < 0) return weight.first;
        return Operation::Unlock;
    }

    int Below(int end) { return static_cast<int>(m_random() % static_cast<unsigned int>(end)); }
    int Extreme()
    {
        static constexpr std::array<int, 8> values = {-2147483647 - 1, 2147483647, 65536, 46341,
                                                      50000,           -50000,     -1,    0};
        return values[static_cast<std::size_t>(Below(8))];
    }
    LONG Coordinate() { return Below(40) == 0 ? Extreme() : Below(450) - 20; }
    POINT Point() { return {Coordinate(), Coordinate()}; }
    RECT Rect()
    {
        if (Below(4) != 0) return {0, 0, 400, 400};
        return {Coordinate(), Coordinate(), Coordinate(), Coordinate()};
    }
    std::vector<POINT> Points()
    {
        std::vector<POINT> points(
            static_cast<std::size_t>(m_pointless || Below(3) == 0 ? 0 : Below(5)));
        for (POINT& point : points)
            point = Point();
        return points;
    }

    std::mt19937 m_random;
    std::deque<Step> m_pending;
    bool m_pointless = false;
};

std::string Describe(const std::vector<Event>& events)
{
    std::ostringstream text;
    for (const Event& event : events) {
        text << "call " << static_cast<std::size_t>(event.call) << " of " << event.tool << ":";
        for (const int argument : event.arguments)
            text << ' ' << argument;
        text << '\n';
    }
    return text.str();
}

// Counts what the steps met, so that the check is known to have checked something.
struct Met
{
    int answersTrue = 0, locks = 0, releases = 0, inputs = 0, areas = 0;

    void Count(int answer, const std::vector<Event>& events)
    {
        answersTrue += answer;
        for (const Event& event : events) {
            locks += event.call == Call::SetLock;
            releases += event.call == Call::Release;
            inputs += event.call == Call::MouseInput;
            areas += event.call == Call::Area;
        }
    }
};

class MouseCaptureModelTest : public testing::TestWithParam<unsigned int>
{
protected:
    void SetUp() override { Reset(); }
    void TearDown() override
    {
        MouseCapture::Unlock();
        Reset();
    }

    static void Reset()
    {
        MouseCapture::Initialize(CRect(0, 0, 0, 0), InputTrackball);
        MouseCapture::SetFreeze(false);
        MouseCapture::SetImaging(true);
        utilsExam::ResearchMode = false;
        utilsExam::CursorClippingDisabled = true; // the system's cursor has tests of its own
    }
};

TEST_P(MouseCaptureModelTest, BehavesAsTheReferenceOnRandomSteps)
{
    constexpr int stepCount = 50'000;
    Generator generator(GetParam());
    Actual actual;
    Reference reference;
    Met met;
    for (int i = 0; i < stepCount; ++i) {
        const Step step = generator.Next();
        actual.ClearEvents();
        reference.ClearEvents();
        const int answer = actual.Play(step);
        ASSERT_EQ(answer, reference.Play(step)) << "step " << i << "\n"
                                                << Describe(actual.Events());
        ASSERT_TRUE(actual.Events() == reference.Events())
            << "step " << i << ", operation " << static_cast<int>(step.operation) << "\nactual\n"
            << Describe(actual.Events()) << "reference\n"
            << Describe(reference.Events());
        const State is = actual.GetState(), shouldBe = reference.GetState();
        ASSERT_EQ(is.owner, shouldBe.owner) << "step " << i;
        ASSERT_EQ(is.input, shouldBe.input) << "step " << i;
        ASSERT_TRUE(EqualRect(&is.area, &shouldBe.area)) << "step " << i;
        ASSERT_EQ(MouseCapture::IsLocked(), shouldBe.owner != nobody) << "step " << i;
        met.Count(answer, actual.Events());
    }
    EXPECT_GT(met.answersTrue, stepCount / 20);
    EXPECT_GT(met.locks, stepCount / 20);
    EXPECT_GT(met.releases, stepCount / 20);
    EXPECT_GT(met.inputs, stepCount / 50);
    EXPECT_GT(met.areas, stepCount / 500);
    EXPECT_GT(actual.Reactions(), stepCount / 100);
    RecordProperty("locks", met.locks);
    RecordProperty("reactions", actual.Reactions());
}

INSTANTIATE_TEST_SUITE_P(Seeds, MouseCaptureModelTest,
                         testing::Range(1u, 9u)); // 400,000 steps in all

} // namespace

} // namespace capture_model
