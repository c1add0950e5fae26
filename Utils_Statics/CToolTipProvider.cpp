#include "Utils_Statics/CToolTipProvider.h"

#include "text/TextView.h"

#include <afxwin.h>

#include <new>
#include <utility>
#include <vector>

using utils_statics::OrEmpty;

// The hidden window whose timer ends a tip. It belongs to a provider and its copies. They share the
// tip, so it may notify any of them.
class CTimerWnd : public CWnd
{
public:
    static constexpr UINT_PTR timerId = 8345;

    explicit CTimerWnd(CToolTipProvider& provider) : m_providers(1, &provider) {}

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

BEGIN_MESSAGE_MAP(CTimerWnd, CWnd)
    ON_WM_TIMER()
END_MESSAGE_MAP()

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

namespace {

constexpr LPARAM widestLine = 1024; // pixels

// Makes the platform register the control's own class.
void RegisterTooltipClass()
{
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
}

HWND NewTooltipWindow()
{
    RegisterTooltipClass();
    return CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                           TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, CW_USEDEFAULT, GetDesktopWindow(), nullptr,
                           AfxGetInstanceHandle(), nullptr);
}

TOOLINFOW TrackedTool()
{
    TOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_TRACK | TTF_TRANSPARENT;
    return tool;
}

bool Exists(const CWnd* window)
{
    return window && IsWindow(window->m_hWnd);
}

LPARAM Packed(POINT at)
{
    return MAKELPARAM(at.x, at.y);
}

} // namespace

CToolTipProvider::CToolTipProvider() = default;

CToolTipProvider::CToolTipProvider(const CToolTipProvider& other)
{
    Share(other);
}

CToolTipProvider& CToolTipProvider::operator=(const CToolTipProvider& other)
{
    if (this == &other) return *this;
    DestroyToolTip();
    Share(other);
    return *this;
}

CToolTipProvider::~CToolTipProvider()
{
    DestroyToolTip();
}

void CToolTipProvider::Share(const CToolTipProvider& other)
{
    if (other.m_timer && !other.m_timer->Join(*this)) return; // memory is short: shares no tip
    m_window = other.m_window;
    m_tool = other.m_tool;
    m_timer = other.m_timer;
}

bool CToolTipProvider::BothExist() const
{
    return Exists(m_timer) && IsWindow(m_window);
}

bool CToolTipProvider::CreateToolTip()
try {
    CancelToolTip();
    if (BothExist()) return true;
    DestroyToolTip();
    m_timer = new CTimerWnd(*this);
    m_timer->CreateMessageOnly();
    m_window = NewTooltipWindow();
    m_tool = TrackedTool();
    m_tool.lpszText = const_cast<wchar_t*>(L"");
    Send(TTM_ADDTOOLW, 0);
    return BothExist();
} catch (const std::bad_alloc&) {
    return false;
}

void CToolTipProvider::DestroyToolTip()
{
    CTimerWnd* const timer = std::exchange(m_timer, nullptr);
    if (timer && timer->Leave(*this)) { // the copies go on with both windows
        m_window = nullptr;
        return;
    }
    delete timer; // destroys its window too
    if (!m_window) return;
    CancelToolTip();
    DestroyWindow(std::exchange(m_window, nullptr));
}

LRESULT CToolTipProvider::Send(UINT message, WPARAM wParam)
{
    return SendMessageW(m_window, message, wParam, reinterpret_cast<LPARAM>(&m_tool));
}

void CToolTipProvider::SetToolTip(const wchar_t* text, const wchar_t* title, POINT at,
                                  IconType icon, unsigned int timeMs)
{
    if (!CreateToolTip()) return;
    m_timer->KillTimer(CTimerWnd::timerId);
    const bool shown = *OrEmpty(text) != L'\0';
    if (shown) {
        SendMessageW(m_window, TTM_SETMAXTIPWIDTH, 0, widestLine);
        m_tool.lpszText = const_cast<wchar_t*>(text); // read and copied during the call
        Send(TTM_UPDATETIPTEXTW, 0);
        m_tool.lpszText = const_cast<wchar_t*>(L"");
        SendMessageW(m_window, TTM_SETTITLEW, static_cast<WPARAM>(icon),
                     reinterpret_cast<LPARAM>(OrEmpty(title)));
        SendMessageW(m_window, TTM_TRACKPOSITION, 0, Packed(at));
        m_timer->SetTimer(CTimerWnd::timerId, timeMs, nullptr);
    }
    Send(TTM_TRACKACTIVATE, shown);
}

void CToolTipProvider::SetToolTip(const wchar_t* text, const wchar_t* title, CWnd* anchor,
                                  IconType icon, unsigned int timeMs)
{
    if (!anchor) return;
    CRect area;
    anchor->GetWindowRect(&area);
    SetToolTip(text, title, area.BottomRight(), icon, timeMs);
}

void CToolTipProvider::CancelToolTip()
{
    if (m_timer) m_timer->KillTimer(CTimerWnd::timerId);
    if (m_window) Send(TTM_TRACKACTIVATE, FALSE);
}
