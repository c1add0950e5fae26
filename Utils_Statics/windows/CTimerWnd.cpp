#include "windows/CTimerWnd.h"

#include <Utils_Statics/CToolTipProvider.h>

#include <new>

BEGIN_MESSAGE_MAP(CTimerWnd, CWnd)
    ON_WM_TIMER()
END_MESSAGE_MAP()

CTimerWnd::~CTimerWnd() = default;

bool CTimerWnd::CreateMessageOnly()
{
    return CreateEx(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr) != FALSE;
}

bool CTimerWnd::Join(CToolTipProvider& provider) noexcept
{
    try {
        m_providers.push_back(&provider);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool CTimerWnd::Leave(const CToolTipProvider& provider)
{
    std::erase(m_providers, &provider);
    return !m_providers.empty();
}

void CTimerWnd::OnTimer(UINT_PTR id)
{
    if (id == timerId)
        m_providers.front()->CancelToolTip();
    else
        CWnd::OnTimer(id);
}
