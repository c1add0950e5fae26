#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <deque>
#include <vector>

// The two sides that the model check compares: the arbitration itself and a plain reference of it.
// Both play the same steps. Each keeps its own world of tools, whose operations answer from it,
// record that they were called, and may themselves play a step.
namespace capture_model {

constexpr int nobody = -1;
constexpr int slotCount = 12;

enum class Operation
{
    Create,
    Destroy,
    Register,
    Unregister,
    Lock,
    Unlock,
    LockNext,
    Mouse,
    Clip,
    Initialize,
    Freeze,
    Imaging,
    Research,
    ChangePoints,
    ChangeTraits,
    React // from now on, the next call of an operation of the tool plays a step
};

enum class Call : std::size_t
{
    MouseInput,
    Release,
    Points,
    SetLock,
    HasBackground,
    Type,
    Order,
    Area,
    count
};

struct Traits
{
    int order = 0;
    int type = 0;
    bool background = false;
    bool consumes = false;
    RECT area = {};
};

struct Step
{
    Operation operation = Operation::Unlock;
    int slot = 0; // slotCount: no tool, a null pointer
    int index = 0;
    unsigned int message = 0;
    unsigned int flags = 0;
    POINT point = {};
    RECT rect = {};
    bool on = false;
    std::vector<POINT> points;
    Traits traits;
    Call call = Call::Release;
    std::vector<Step> reaction; // the single step for React
};

struct Event
{
    Call call;
    int tool;
    std::array<int, 4> arguments;
    bool operator==(const Event&) const = default;
};

struct State
{
    int owner = nobody;
    int input = 0;
    RECT area = {};
};

// One side. Tools are numbered in the order of their creation. A slot holds the number of its
// living tool.
class Side
{
public:
    Side() { m_slots.fill(nobody); }
    virtual ~Side() = default;

    // Plays the step and returns the answer of the arbitration, 0 when it has none.
    int Play(const Step& step);
    virtual State GetState() const = 0;

    const std::vector<Event>& Events() const { return m_events; }
    void ClearEvents() { m_events.clear(); }
    bool IsAlive(int slot) const { return m_slots[static_cast<std::size_t>(slot)] != nobody; }
    int Reactions() const { return m_reactions; }

    // The operations of a tool, by its number.
    bool OnMouseInput(int tool, unsigned int message, unsigned int flags, int x, int y);
    void OnRelease(int tool);
    std::vector<POINT> GetPoints(int tool);
    void OnSetLock(int tool, int index);
    bool HasBackground(int tool);
    int GetType(int tool);
    int GetOrder(int tool);
    RECT GetArea(int tool);

protected:
    virtual void Created(int tool) = 0;
    virtual void Destroyed(int tool) = 0;
    virtual void Register(int tool) = 0;
    virtual void Unregister(int tool) = 0;
    virtual bool Lock(int tool, int index) = 0;
    virtual bool Unlock() = 0;
    virtual bool LockNext() = 0;
    virtual bool HandleMouse(unsigned int message, unsigned int flags, POINT point) = 0;
    virtual void Clip(const RECT* rect) = 0;
    virtual void Initialize(const RECT& area, int input) = 0;
    virtual void SetFreeze(bool on) = 0;
    virtual void SetImaging(bool on) = 0;
    virtual void SetResearch(bool on) = 0;

private:
    struct Tool
    {
        Traits traits;
        std::vector<POINT> points;
        std::array<std::deque<Step>, static_cast<std::size_t>(Call::count)> reactions;
    };

    int ToolIn(int slot) const
    {
        return slot == slotCount ? nobody : m_slots[static_cast<std::size_t>(slot)];
    }
    int PlayOnArbitration(const Step& step);
    void PlayOnWorld(const Step& step);
    void Called(Call call, int tool, std::array<int, 4> arguments = {});
    Tool& At(int tool) { return m_tools[static_cast<std::size_t>(tool)]; }

    std::deque<Tool> m_tools;
    std::array<int, slotCount> m_slots;
    std::vector<Event> m_events;
    int m_reactions = 0;
};

// The reference uses numbers for pointers, and a copy of their list for every walk.
class Reference : public Side
{
public:
    State GetState() const override { return {m_owner, m_input, m_area}; }

protected:
    void Created(int tool) override;
    void Destroyed(int tool) override;
    void Register(int tool) override;
    void Unregister(int tool) override;
    bool Lock(int tool, int index) override;
    bool Unlock() override;
    bool LockNext() override;
    bool HandleMouse(unsigned int message, unsigned int flags, POINT point) override;
    void Clip(const RECT* rect) override { m_clip = rect ? *rect : RECT{}; }
    void Initialize(const RECT& area, int input) override;
    void SetFreeze(bool on) override { m_freeze = on; }
    void SetImaging(bool on) override { m_imaging = on; }
    void SetResearch(bool on) override { m_research = on; }

private:
    bool Lives(int tool) const
    {
        return tool != nobody && m_living[static_cast<std::size_t>(tool)];
    }
    bool IsRegistered(int tool) const;
    void Release();
    bool Consider(int tool, int& candidate);
    void LockNearest(POINT point);

    std::vector<int> m_registered; // in order
    std::vector<bool> m_living;
    RECT m_clip = {};
    RECT m_area = {};
    int m_point = 0;
    int m_owner = nobody;
    int m_input = 0;
    int m_ownerType = 0;
    bool m_freeze = false;
    bool m_imaging = true;
    bool m_research = false;
    std::vector<int> m_told; // the tools that are being told that they lose the lock
};

} // namespace capture_model
