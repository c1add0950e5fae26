#include "Utils_Statics/IStatusItem.h"

constinit std::atomic<IStatusItem::StatusCallback> IStatusItem::m_pfnStatusCallback = nullptr;

IStatusItem::~IStatusItem() = default;

void IStatusItem::SetStatusCallback(StatusCallback callback) noexcept
{
    m_pfnStatusCallback = callback;
}

void IStatusItem::IssueStatusUpdate()
{
    if (const StatusCallback callback = m_pfnStatusCallback) callback();
}
