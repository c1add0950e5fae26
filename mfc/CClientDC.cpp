#include <afxwin.h>

CClientDC::CClientDC(CWnd* window) : m_hWnd(window ? window->m_hWnd : nullptr)
{
    Attach(::GetDC(m_hWnd));
}

CClientDC::~CClientDC()
{
    if (const HDC context = Detach()) ::ReleaseDC(m_hWnd, context);
}
