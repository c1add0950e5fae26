#include "qor_utils/CriticalSection.h"

CriticalSection::CriticalSection() noexcept
{
    InitializeCriticalSection(&m_section);
}

CriticalSection::~CriticalSection()
{
    DeleteCriticalSection(&m_section);
}

void CriticalSection::Enter() noexcept
{
    EnterCriticalSection(&m_section);
}

void CriticalSection::Leave() noexcept
{
    LeaveCriticalSection(&m_section);
}
