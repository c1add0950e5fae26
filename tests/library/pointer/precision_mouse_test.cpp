// The broadcast of the handler that requests fine pointer control.
#include <gtest/gtest.h>
#include <Utils_Statics/PrecisionMouse.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

class Handler : public IPrecisionHandler
{
public:
    void OnPrecisionMove(int, int) override { ++calls; }
    void OnPrecisionAccept() override { ++calls; }
    int calls = 0;
};

class Control;
using Deliveries = std::vector<std::pair<const Control*, IPrecisionHandler*>>;

class Control : public IPrecisionControl
{
public:
    explicit Control(Deliveries& deliveries) : m_deliveries(deliveries) {}
    ~Control() { PrecisionMouse::Unregister(this); }
    void SetHandler(IPrecisionHandler* handler) override
    {
        m_deliveries.emplace_back(this, handler);
        if (const std::function<void()> copy = std::exchange(onSet, nullptr)) copy();
    }
    std::function<void()> onSet; // runs once

private:
    Deliveries& m_deliveries;
};

class PrecisionMouseTest : public testing::Test
{
protected:
    PrecisionMouseTest()
    {
        for (auto& control : controls)
            control = std::make_unique<Control>(deliveries);
        std::sort(controls.begin(), controls.end());
    }

    void RegisterAll()
    {
        for (std::size_t i : {2u, 0u, 3u, 1u})
            PrecisionMouse::Register(controls[i].get());
    }
    Control* At(std::size_t i) { return controls[i].get(); }

    Deliveries deliveries;
    std::array<std::unique_ptr<Control>, 4> controls; // in ascending pointer order
    Handler handler, other;
};

TEST_F(PrecisionMouseTest, WithoutControlsNothingHappens)
{
    PrecisionMouse::UpdateHandler(&handler);
    PrecisionMouse::ClearPosition();
    EXPECT_TRUE(deliveries.empty());
}

TEST_F(PrecisionMouseTest, EveryControlIsToldInAscendingPointerOrderAndTheHandlerIsNotCalled)
{
    RegisterAll();
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(
        deliveries,
        (Deliveries{{At(0), &handler}, {At(1), &handler}, {At(2), &handler}, {At(3), &handler}}));
    EXPECT_EQ(handler.calls, 0);
}

TEST_F(PrecisionMouseTest, ClearPositionDeliversNullToAll)
{
    RegisterAll();
    PrecisionMouse::ClearPosition();
    EXPECT_EQ(deliveries,
              (Deliveries{{At(0), nullptr}, {At(1), nullptr}, {At(2), nullptr}, {At(3), nullptr}}));
}

TEST_F(PrecisionMouseTest, RegisteringTwiceDeliversOnceAndNullIsIgnored)
{
    PrecisionMouse::Register(At(1));
    PrecisionMouse::Register(At(1));
    PrecisionMouse::Register(nullptr);
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{At(1), &handler}}));
}

TEST_F(PrecisionMouseTest, UnregisteringEndsTheDeliveries)
{
    RegisterAll();
    PrecisionMouse::Unregister(At(1));
    PrecisionMouse::Unregister(At(1));
    PrecisionMouse::Unregister(nullptr);
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{At(0), &handler}, {At(2), &handler}, {At(3), &handler}}));
}

TEST_F(PrecisionMouseTest, AControlMayRemoveItselfAndOthersMeanwhile)
{
    RegisterAll();
    const Control* const first = At(0);
    const Control* const third = At(2);
    At(2)->onSet = [&] {
        controls[0].reset();
        controls[3].reset();
        controls[2].reset();
    };
    const Control* const second = At(1);
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{first, &handler}, {second, &handler}, {third, &handler}}));
    deliveries.clear();
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{second, &handler}}));
}

TEST_F(PrecisionMouseTest, AControlRegisteredMeanwhileIsToldWhenItsTurnComes)
{
    PrecisionMouse::Register(At(1));
    At(1)->onSet = [&] {
        PrecisionMouse::Register(At(0));
        PrecisionMouse::Register(At(3));
    };
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{At(1), &handler}, {At(3), &handler}}));
}

TEST_F(PrecisionMouseTest, AHandlerNamedMeanwhileReachesAllAndThenTheOlderOneTheRest)
{
    RegisterAll();
    At(1)->onSet = [&] { PrecisionMouse::UpdateHandler(&other); };
    PrecisionMouse::UpdateHandler(&handler);
    EXPECT_EQ(deliveries, (Deliveries{{At(0), &handler},
                                      {At(1), &handler},
                                      {At(0), &other},
                                      {At(1), &other},
                                      {At(2), &other},
                                      {At(3), &other},
                                      {At(2), &handler},
                                      {At(3), &handler}}));
}

} // namespace
