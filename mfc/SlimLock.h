#pragma once

#include <windows.h>

namespace framework {

// The platform's slim lock for std::lock_guard and std::shared_lock. Constant-initialised, other
// than std::mutex here, so that objects of other modules may use it before and after this DLL's own
// ones live.
class SlimLock
{
public:
    constexpr SlimLock() noexcept = default;
    SlimLock(const SlimLock&) = delete;
    SlimLock& operator=(const SlimLock&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&m_lock); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&m_lock); }
    void lock_shared() noexcept { AcquireSRWLockShared(&m_lock); }
    void unlock_shared() noexcept { ReleaseSRWLockShared(&m_lock); }

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
};

} // namespace framework
