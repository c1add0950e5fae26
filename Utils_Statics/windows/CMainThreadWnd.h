#pragma once

#include <qor_utils/CriticalSection.h>
#include <Utils_Statics/CToolTipProvider.h>

#include <afxwin.h>
#include <atlstr.h>

#include <memory>

namespace utils_statics {

// A request to show a balloon, sent to the main thread by the thread that raised the notice.
struct BalloonRequest
{
    CString text;
    CString title;
    POINT at; // screen pixels
    CToolTipProvider::IconType icon;
    unsigned int timeMs;
};

} // namespace utils_statics

// The hidden window of the user-interface thread that shows balloons for all threads.
class CMainThreadWnd : public CWnd
{
public:
    // wParam is the address of a request, which the receiver owns; lParam is 0.
    static constexpr UINT showBalloon = WM_APP + 1000;

    CMainThreadWnd();
    ~CMainThreadWnd() override;

    bool CreateMessageOnly();

    // Any thread may call this while the object lives. Without a window the request is dropped.
    void Post(std::unique_ptr<utils_statics::BalloonRequest> request);

protected:
    afx_msg int OnCreate(LPCREATESTRUCT description);
    afx_msg void OnDestroy();
    afx_msg LRESULT OnShowBalloon(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    void SetPostable(HWND window);
    void DropPosted();

    std::unique_ptr<CToolTipProvider> m_provider;
    CriticalSection m_section;
    HWND m_postable = nullptr; // m_hWnd for the other threads; guarded by m_section
};
