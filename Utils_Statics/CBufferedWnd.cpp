#include "Utils_Statics/CBufferedWnd.h"

#include <base/GdiHandles.h>

namespace {

// Copies the source where the mask is 1 and leaves the target as it is where the mask is 0
// (0x00AA0029 is the operation that changes nothing).
constexpr DWORD copyMasked = MAKEROP4(SRCCOPY, 0x00AA0029U);

CRect ClientRect(const CWnd& window)
{
    CRect client; // stays empty for a window that is gone
    window.GetClientRect(&client);
    return client;
}

void Fill(CDC& dc, const CRect& rect, COLORREF colour)
{
    CBrush brush(colour);
    dc.FillRect(&rect, &brush);
}

} // namespace

BEGIN_MESSAGE_MAP(CBufferedWnd, CWnd)
    ON_WM_CREATE()
    ON_WM_SIZE()
    ON_WM_PAINT()
END_MESSAGE_MAP()

// Destroys the members in the reverse order of their declaration: the buffer first.
CBufferedWnd::~CBufferedWnd() = default;

// The name is passed by value: contract.
// NOLINTBEGIN(performance-unnecessary-value-param)
int CBufferedWnd::Create(unsigned long style, unsigned long exStyle, CWnd* parent, CRect rect,
                         unsigned int id, CString name)
// NOLINTEND(performance-unnecessary-value-param)
{
    return CWnd::CreateEx(exStyle, nullptr, name, style, rect, parent, id);
}

int CBufferedWnd::OnCreate(LPCREATESTRUCT description)
{
    if (CWnd::OnCreate(description) == -1) return -1;
    UpdateBitmaps();
    return 0;
}

void CBufferedWnd::OnSize(UINT type, int width, int height)
{
    CWnd::OnSize(type, width, height);
    UpdateBitmaps();
}

void CBufferedWnd::UpdateBitmaps()
{
    CClientDC screen(this);
    const CSize size = ClientRect(*this).Size();
    m_buffer.DeleteObject();
    m_buffer.CreateCompatibleBitmap(&screen, size.cx, size.cy);
    m_mask.DeleteObject();
    m_mask.CreateBitmap(size.cx, size.cy, 1, 1, nullptr);
    m_inverseMask.DeleteObject();
    m_inverseMask.CreateBitmap(size.cx, size.cy, 1, 1, nullptr);
}

void CBufferedWnd::OnPaint()
{
    CPaintDC screen(this);
    if (!IsRectMask()) PrepareMasks(screen, ClientRect(*this));
    CDC buffer;
    buffer.CreateCompatibleDC(&screen);
    const base::Selection selected(buffer, m_buffer);
    Draw(&buffer);
    Paint(&screen, &buffer);
}

void CBufferedWnd::PrepareMasks(CDC& screen, const CRect& client)
{
    CDC mask;
    mask.CreateCompatibleDC(&screen);
    const base::Selection maskSelected(mask, m_mask);
    DrawMask(&mask);
    CDC inverse;
    inverse.CreateCompatibleDC(&screen);
    const base::Selection inverseSelected(inverse, m_inverseMask);
    inverse.BitBlt(0, 0, client.Width(), client.Height(), &mask, 0, 0, SRCCOPY);
    inverse.InvertRect(&client);
}

void CBufferedWnd::CallOnPaint()
{
    OnPaint();
}

void CBufferedWnd::Paint(CDC* screen, CDC* buffer)
{
    const CSize size = ClientRect(*this).Size();
    if (IsRectMask())
        screen->BitBlt(0, 0, size.cx, size.cy, buffer, 0, 0, SRCCOPY);
    else
        screen->MaskBlt(0, 0, size.cx, size.cy, buffer, 0, 0, m_mask, 0, 0, copyMasked);
}

void CBufferedWnd::Draw(CDC* dc)
{
    Fill(*dc, ClientRect(*this), RGB(255, 255, 255));
}

void CBufferedWnd::DrawMask(CDC* dc)
{
    Fill(*dc, ClientRect(*this), RGB(0, 0, 0));
}

int CBufferedWnd::IsRectMask()
{
    return 0;
}

bool CBufferedWnd::CanDrawOnAVI() const
{
    return true;
}

void CBufferedWnd::BeginModalState()
{
    ::EnableWindow(m_hWnd, FALSE);
}

void CBufferedWnd::EndModalState()
{
    ::EnableWindow(m_hWnd, TRUE);
}

// Deliberately does nothing: the owner deletes the object, not the end of its window.
void CBufferedWnd::PostNcDestroy() {}
