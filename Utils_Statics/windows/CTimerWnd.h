#pragma once

#include <afxwin.h>

#include <vector>

class CToolTipProvider;

// The hidden window whose timer ends a tip. It belongs to a provider and its copies. They share the
// tip, so it may notify any of them.
class CTimerWnd : public CWnd
{
public:
    static constexpr UINT_PTR timerId = 8345;

    explicit CTimerWnd(CToolTipProvider& provider) : m_providers(1, &provider) {}
    ~CTimerWnd() override;

    bool CreateMessageOnly();

    // False when memory is short.
    bool Join(CToolTipProvider& provider) noexcept;
    // False when that provider was the last.
    bool Leave(const CToolTipProvider& provider);

protected:
    afx_msg void OnTimer(UINT_PTR id);
    DECLARE_MESSAGE_MAP()

private:
    std::vector<CToolTipProvider*> m_providers; // never empty
};
