#pragma once

#include <windows.h>

namespace base {

/// The platform's reader-writer lock, for std::lock_guard and std::shared_lock.
///
/// It is constant-initialised and has no destructor, so a static one may be used before its
/// module's other objects live and after they are gone. The thread that holds it must not lock it
/// again.
class SlimLock
{
public:
    constexpr SlimLock() noexcept = default;
    SlimLock(const SlimLock&) = delete;
    SlimLock& operator=(const SlimLock&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&m_lock); }
    bool try_lock() noexcept { return TryAcquireSRWLockExclusive(&m_lock) != FALSE; }
    void unlock() noexcept { ReleaseSRWLockExclusive(&m_lock); }
    void lock_shared() noexcept { AcquireSRWLockShared(&m_lock); }
    void unlock_shared() noexcept { ReleaseSRWLockShared(&m_lock); }

    /// The lock as the platform's own functions take it.
    SRWLOCK* Native() noexcept { return &m_lock; }

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
};

} // namespace base
