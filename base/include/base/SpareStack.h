#pragma once

#include <windows.h>

namespace base {

/// Makes the thread one that can change its stack, unless it is one already, to the end of its
/// life. It takes some memory of the heap; without that the thread stays as it is.
class FiberScope
{
public:
    FiberScope() noexcept
        : m_isOurs(!IsThreadAFiber() && ConvertThreadToFiberEx(nullptr, FIBER_FLAG_FLOAT_SWITCH))
    {
    }
    ~FiberScope()
    {
        if (m_isOurs) ConvertFiberToThread();
    }
    FiberScope(const FiberScope&) = delete;
    FiberScope& operator=(const FiberScope&) = delete;

private:
    bool m_isOurs;
};

/// A stack that is made ready beforehand, for a thread that may have none left: the thread itself
/// goes on there, so it keeps the locks that it holds. One thread uses it at a time.
class SpareStack
{
public:
    /// Takes `size` bytes of memory at once, so that nothing has to be had later.
    explicit SpareStack(SIZE_T size) noexcept
        : m_fiber(CreateFiberEx(size, size, FIBER_FLAG_FLOAT_SWITCH, Loop, this))
    {
    }
    ~SpareStack()
    {
        if (m_fiber) DeleteFiber(m_fiber);
        m_fiber = nullptr; // for a crash that comes after the static objects' end
    }
    SpareStack(const SpareStack&) = delete;
    SpareStack& operator=(const SpareStack&) = delete;

    /// Runs the work there and comes back; on the caller's own stack where that cannot be. The work
    /// throws nothing.
    void Run(void (*work)()) noexcept
    {
        const FiberScope scope;
        if (!m_fiber || !IsThreadAFiber()) return work();
        m_caller = GetCurrentFiber();
        m_work = work;
        SwitchToFiber(m_fiber);
    }

private:
    static void WINAPI Loop(void* self) noexcept
    {
        const auto& stack = *static_cast<SpareStack*>(self);
        for (;;) {
            stack.m_work();
            SwitchToFiber(stack.m_caller);
        }
    }

    void* m_fiber;
    void* m_caller = nullptr;
    void (*m_work)() = nullptr;
};

} // namespace base
