#pragma once

#include <windows.h>

namespace base {

/// Makes the thread able to change its stack until the scope ends, unless it already is. This takes
/// some heap memory; without it the thread stays as it is.
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

/// A stack prepared in advance for a thread that may have none left. The thread itself continues on
/// it, so it keeps the locks that it holds. One thread uses it at a time.
class SpareStack
{
public:
    /// Allocates `size` bytes now, so that nothing must be allocated later.
    explicit SpareStack(SIZE_T size) noexcept
        : m_fiber(CreateFiberEx(size, size, FIBER_FLAG_FLOAT_SWITCH, Loop, this))
    {
    }
    ~SpareStack()
    {
        if (m_fiber) DeleteFiber(m_fiber);
        m_fiber = nullptr; // for a crash after the static objects are destroyed
    }
    SpareStack(const SpareStack&) = delete;
    SpareStack& operator=(const SpareStack&) = delete;

    /// Runs the work on the spare stack and comes back. When that is impossible, the work runs on
    /// the caller's own stack. The work must not throw.
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
