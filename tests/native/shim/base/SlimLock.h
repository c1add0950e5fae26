#pragma once

#include <pthread.h>

namespace base {

/// The lock of base/SlimLock.h, by the machine's own reader-writer lock.
class SlimLock
{
public:
    constexpr SlimLock() noexcept = default;
    SlimLock(const SlimLock&) = delete;
    SlimLock& operator=(const SlimLock&) = delete;

    void lock() noexcept { pthread_rwlock_wrlock(&m_lock); }
    bool try_lock() noexcept { return pthread_rwlock_trywrlock(&m_lock) == 0; }
    void unlock() noexcept { pthread_rwlock_unlock(&m_lock); }
    void lock_shared() noexcept { pthread_rwlock_rdlock(&m_lock); }
    void unlock_shared() noexcept { pthread_rwlock_unlock(&m_lock); }

private:
    pthread_rwlock_t m_lock = PTHREAD_RWLOCK_INITIALIZER;
};

} // namespace base
