#pragma once

#include <base/GdiHandles.h>

#include <afxwin.h>

namespace exam {

/// Answers WM_PAINT without flicker: everything drawn into Context() reaches the window in one go
/// when this object ends. The window outlives it.
class BufferedPaint
{
public:
    /// `size` is the size of the drawn area, in pixels.
    BufferedPaint(CWnd& window, CSize size)
        : m_window(&window), m_size(size), m_selection(MakeContext(), MakeBitmap())
    {
    }
    ~BufferedPaint() { m_window.BitBlt(0, 0, m_size.cx, m_size.cy, &m_context, 0, 0, SRCCOPY); }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    CDC& Context() { return m_context; }

private:
    HDC MakeContext()
    {
        m_context.CreateCompatibleDC(&m_window);
        return m_context.GetSafeHdc();
    }
    HGDIOBJ MakeBitmap()
    {
        m_bitmap.CreateCompatibleBitmap(&m_window, m_size.cx, m_size.cy);
        return m_bitmap.GetSafeHandle();
    }

    CPaintDC m_window;
    CSize m_size;
    CDC m_context;
    CBitmap m_bitmap;
    base::Selection m_selection; // uses the members above
};

} // namespace exam
