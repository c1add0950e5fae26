#pragma once

#include <base/GdiHandles.h>

#include <afxwin.h>

#include <initializer_list>
#include <span>

namespace exam {

/// The one font of the application, smooth, in a height in pixels. Helvetica is Arial on Windows;
/// elsewhere there may be a smoother one for it.
class TextFont : public CFont
{
public:
    explicit TextFont(int pixels, int weight = FW_NORMAL)
    {
        CreateFont(-pixels, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                   OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                   DEFAULT_PITCH | FF_SWISS, L"Helvetica");
    }
};

/// Selects the font for the length of a scope.
class ScopedFont
{
public:
    static constexpr int textSize = 15; ///< pixels at 96 dpi; for everything but the title

    ScopedFont(CDC& dc, int pixels, int weight)
        : m_font(pixels, weight), m_selection(dc.GetSafeHdc(), m_font.GetSafeHandle())
    {
    }

private:
    TextFont m_font;
    base::Selection m_selection;
};

/// Brings a context back to its present state, with its clipping and its origin, when the scope
/// ends.
class SavedState
{
public:
    explicit SavedState(CDC& dc) : m_dc(dc), m_saved(dc.SaveDC()) {}
    ~SavedState() { m_dc.RestoreDC(m_saved); }
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

private:
    CDC& m_dc;
    int m_saved;
};

/// The part of a window that waits to be painted, in client coordinates.
inline base::Region PartToPaint(HWND window)
{
    base::Region part(CreateRectRgn(0, 0, 0, 0));
    GetUpdateRgn(window, part.get(), FALSE);
    return part;
}

/// Answers WM_PAINT without flicker: everything drawn into Context(), in client coordinates,
/// reaches the window in one go when this object ends. What need not be painted is clipped. The
/// window outlives it.
class BufferedPaint
{
public:
    explicit BufferedPaint(CWnd& window)
        : m_part(PartToPaint(window.GetSafeHwnd())), m_window(&window),
          m_area(m_window.m_ps.rcPaint), m_selection(MakeContext(), MakeBitmap())
    {
        SelectClipRgn(m_context.GetSafeHdc(), m_part.get());
    }
    ~BufferedPaint()
    {
        m_window.BitBlt(m_area.left, m_area.top, m_area.Width(), m_area.Height(), &m_context,
                        m_area.left, m_area.top, SRCCOPY);
    }
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
        m_bitmap.CreateCompatibleBitmap(&m_window, m_area.right, m_area.bottom);
        return m_bitmap.GetSafeHandle();
    }

    base::Region m_part; // is asked for before the paint begins, which forgets it
    CPaintDC m_window;
    CRect m_area; // holds the part
    CDC m_context;
    CBitmap m_bitmap;
    base::Selection m_selection; // uses the members above
};

/// Draws straight lines from point to point with the selected pen. The last point itself is not
/// drawn.
inline void DrawLines(CDC& dc, std::span<const CPoint> points)
{
    if (points.empty()) return;
    dc.MoveTo(points.front());
    for (const CPoint& point : points.subspan(1))
        dc.LineTo(point);
}
inline void DrawLines(CDC& dc, std::initializer_list<CPoint> points)
{
    DrawLines(dc, std::span(points.begin(), points.size()));
}

} // namespace exam
