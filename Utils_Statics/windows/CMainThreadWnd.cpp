#include "windows/CMainThreadWnd.h"

using utils_statics::BalloonRequest;

BEGIN_MESSAGE_MAP(CMainThreadWnd, CWnd)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_MESSAGE(showBalloon, OnShowBalloon)
END_MESSAGE_MAP()

CMainThreadWnd::CMainThreadWnd() : m_provider(std::make_unique<CToolTipProvider>()) {}

CMainThreadWnd::~CMainThreadWnd() = default;

bool CMainThreadWnd::CreateMessageOnly()
{
    return CreateEx(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr) != FALSE;
}

void CMainThreadWnd::Post(std::unique_ptr<BalloonRequest> request)
{
    const CriticalSectionLock lock(m_section);
    const auto address = reinterpret_cast<WPARAM>(request.get());
    if (IsWindow(m_postable) && ::PostMessageW(m_postable, showBalloon, address, 0))
        static_cast<void>(request.release()); // the receiver owns it now
}

int CMainThreadWnd::OnCreate(LPCREATESTRUCT description)
{
    if (CWnd::OnCreate(description) == -1) return -1;
    SetPostable(m_hWnd);
    return 0;
}

// Nothing is posted from here on, and nobody else reads the requests already posted.
void CMainThreadWnd::OnDestroy()
{
    SetPostable(nullptr);
    DropPosted();
    CWnd::OnDestroy();
}

void CMainThreadWnd::SetPostable(HWND window)
{
    const CriticalSectionLock lock(m_section);
    m_postable = window;
}

void CMainThreadWnd::DropPosted()
{
    MSG message;
    while (::PeekMessageW(&message, m_hWnd, showBalloon, showBalloon, PM_REMOVE)) {
        if (message.message == WM_QUIT) { // it passes every filter but is not for this window
            DropPosted();
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        delete reinterpret_cast<BalloonRequest*>(message.wParam);
    }
}

LRESULT CMainThreadWnd::OnShowBalloon(WPARAM wParam, LPARAM)
{
    const std::unique_ptr<BalloonRequest> request(reinterpret_cast<BalloonRequest*>(wParam));
    m_provider->SetToolTip(request->text, request->title, request->at, request->icon,
                           request->timeMs);
    return 0;
}
