#pragma once

#include "qor_utils/export.h"

#include <windows.h>

/// A lock among the threads of the process. The thread that holds it may enter it again, and must
/// leave it as often.
class QOR_UTILS_API CriticalSection
{
public:
    CriticalSection() noexcept;
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    /// Waits until no other thread holds the lock, and takes it.
    void Enter() noexcept;
    /// Gives the lock back, once for each Enter.
    void Leave() noexcept;

private:
    CRITICAL_SECTION m_section;
};

/// Holds a critical section from its construction to the end of its scope.
class CriticalSectionLock
{
public:
    /// Enters the section, which must outlive this object.
    explicit CriticalSectionLock(CriticalSection& section) noexcept : m_section(section)
    {
        m_section.Enter();
    }
    ~CriticalSectionLock() { m_section.Leave(); }
    CriticalSectionLock(const CriticalSectionLock&) = delete;
    CriticalSectionLock& operator=(const CriticalSectionLock&) = delete;

private:
    CriticalSection& m_section;
};
