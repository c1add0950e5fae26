// The agent that the whole process reaches.
#include <gtest/gtest.h>
#include <Utils_Statics/IProAgent.h>

namespace {

class Agent : public IProAgent
{
public:
    Agent() { m_agent = this; }
    ~Agent() override = default;
    void Execute() override {}
};

TEST(ProAgent, IsReachableWhileItLives)
{
    EXPECT_EQ(IProAgent::GetAgent(), nullptr);
    {
        Agent agent;
        EXPECT_EQ(IProAgent::GetAgent(), &agent);
        agent.AddTail(L"task");
        EXPECT_EQ(agent.GetCount(), 1);
    }
    EXPECT_EQ(IProAgent::GetAgent(), nullptr);
}

} // namespace
