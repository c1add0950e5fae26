#include <afxwin.h>

CPaintDC::CPaintDC(CWnd* window) : m_hWnd(window ? window->m_hWnd : nullptr)
{
    Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC()
{
    if (Detach()) ::EndPaint(m_hWnd, &m_ps);
}
