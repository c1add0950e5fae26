#pragma once

#include <framework/CGdiObject.h>

class CWnd;

/// A device context: drawing goes to m_hDC, queries go to m_hAttribDC, usually the same. The
/// destructor deletes the context (DeleteDC). Coordinates are logical units. Functions return what
/// the GDI functions of the same names return, on an empty object the value of a failure. Temporary
/// objects behave like those of CGdiObject.
class MFC_API CDC : public CObject
{
public:
    CDC() = default;
    ~CDC() override;

    /// The handles of drawing and of queries; null for an empty object.
    HDC m_hDC = nullptr;
    HDC m_hAttribDC = nullptr;

    /// The handle, also of an empty object (null).
    HDC GetSafeHdc() const noexcept { return m_hDC; }
    operator HDC() const noexcept { return m_hDC; }
    /// Null for a null handle.
    static CDC* FromHandle(HDC context);
    /// Deletes the calling thread's temporary objects.
    static void DeleteTempMap();
    /// FALSE for a null handle, or when a handle is already attached.
    BOOL Attach(HDC context);
    /// Gives the context up without deleting it, and returns its handle.
    HDC Detach();
    /// FALSE when the platform refuses, or when a handle is already attached.
    BOOL CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* mode);
    /// Null makes it compatible with the screen.
    BOOL CreateCompatibleDC(CDC* dc);
    /// Deletes the context, which leaves the object empty.
    virtual BOOL DeleteDC();
    /// The number of the saved state, for RestoreDC; 0 on failure.
    virtual int SaveDC();
    /// -1 restores the latest saved state.
    virtual BOOL RestoreDC(int saved);

    /// A fact about the device.
    int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hAttribDC, index); }
    /// Return the object selected before (null on failure), which is borrowed and perhaps
    /// temporary.
    CGdiObject* SelectStockObject(int index);
    CGdiObject* SelectObject(CGdiObject* object);
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    virtual CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    /// The selected objects, borrowed and perhaps temporary.
    CBitmap* GetCurrentBitmap() const;
    CFont* GetCurrentFont() const;

    /// The attributes of drawing. Setting one returns what it was before.
    COLORREF GetTextColor() const { return ::GetTextColor(m_hAttribDC); }
    COLORREF GetBkColor() const { return ::GetBkColor(m_hAttribDC); }
    int GetBkMode() const { return ::GetBkMode(m_hAttribDC); }
    int GetROP2() const { return ::GetROP2(m_hAttribDC); }
    virtual COLORREF SetTextColor(COLORREF colour) { return ::SetTextColor(m_hDC, colour); }
    virtual COLORREF SetBkColor(COLORREF colour) { return ::SetBkColor(m_hDC, colour); }
    int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
    int SetROP2(int mode) { return ::SetROP2(m_hDC, mode); }
    int SetStretchBltMode(int mode) { return ::SetStretchBltMode(m_hDC, mode); }
    UINT SetTextAlign(UINT flags) { return ::SetTextAlign(m_hDC, flags); }
    CPoint SetBrushOrg(int x, int y);
    CPoint SetBrushOrg(POINT point) { return SetBrushOrg(point.x, point.y); }
    CPoint GetViewportOrg() const;
    virtual CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT point) { return SetViewportOrg(point.x, point.y); }

    /// GDI's functions of these names.
    int GetClipBox(LPRECT rect) const { return ::GetClipBox(m_hAttribDC, rect); }
    int IntersectClipRect(int x1, int y1, int x2, int y2)
    {
        return ::IntersectClipRect(m_hDC, x1, y1, x2, y2);
    }
    int IntersectClipRect(LPCRECT r)
    {
        return IntersectClipRect(r->left, r->top, r->right, r->bottom);
    }
    int ExcludeClipRect(int x1, int y1, int x2, int y2)
    {
        return ::ExcludeClipRect(m_hDC, x1, y1, x2, y2);
    }

    /// The position at which the next line begins.
    CPoint GetCurrentPosition() const;
    /// Returns the previous position.
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point) { return MoveTo(point.x, point.y); }
    /// The end point itself is not drawn.
    BOOL LineTo(int x, int y) { return ::LineTo(m_hDC, x, y); }
    BOOL LineTo(POINT point) { return LineTo(point.x, point.y); }
    /// GDI's functions of these names.
    BOOL Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4)
    {
        return ::Arc(m_hDC, x1, y1, x2, y2, x3, y3, x4, y4);
    }
    BOOL Arc(LPCRECT r, POINT start, POINT end)
    {
        return Arc(r->left, r->top, r->right, r->bottom, start.x, start.y, end.x, end.y);
    }
    BOOL Polyline(const POINT* points, int count) { return ::Polyline(m_hDC, points, count); }
    BOOL Polygon(const POINT* points, int count) { return ::Polygon(m_hDC, points, count); }
    BOOL Rectangle(int x1, int y1, int x2, int y2) { return ::Rectangle(m_hDC, x1, y1, x2, y2); }
    BOOL Rectangle(LPCRECT r) { return Rectangle(r->left, r->top, r->right, r->bottom); }
    BOOL Ellipse(int x1, int y1, int x2, int y2) { return ::Ellipse(m_hDC, x1, y1, x2, y2); }
    BOOL Ellipse(LPCRECT r) { return Ellipse(r->left, r->top, r->right, r->bottom); }
    void FillRect(LPCRECT rect, CBrush* brush);
    void FrameRect(LPCRECT rect, CBrush* brush);
    void InvertRect(LPCRECT rect) { ::InvertRect(m_hDC, rect); }
    /// Leaves the background colour as it was.
    void FillSolidRect(LPCRECT rect, COLORREF colour);
    void FillSolidRect(int x, int y, int width, int height, COLORREF colour);
    /// GDI's function of this name.
    BOOL GradientFill(TRIVERTEX* vertices, ULONG vertexCount, void* elements, ULONG elementCount,
                      DWORD mode);

    /// GDI's functions of these names.
    COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
    COLORREF GetPixel(POINT point) const { return GetPixel(point.x, point.y); }
    COLORREF SetPixel(int x, int y, COLORREF colour) { return ::SetPixel(m_hDC, x, y, colour); }
    COLORREF SetPixel(POINT point, COLORREF colour) { return SetPixel(point.x, point.y, colour); }
    BOOL PatBlt(int x, int y, int width, int height, DWORD operation)
    {
        return ::PatBlt(m_hDC, x, y, width, height, operation);
    }
    /// A null source acts like one without a handle.
    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                DWORD operation);
    BOOL StretchBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                    int widthSource, int heightSource, DWORD operation);
    BOOL MaskBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                 CBitmap& mask, int xMask, int yMask, DWORD operation);

    /// Draws a text at a place.
    virtual BOOL TextOut(int x, int y, LPCTSTR text, int length)
    {
        return ::TextOutW(m_hDC, x, y, text, length);
    }
    BOOL TextOut(int x, int y, const CString& text)
    {
        return TextOut(x, y, text.GetString(), text.GetLength());
    }
    /// `length` -1 means up to the terminating null. Returns the height of the text.
    virtual int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format)
    {
        return ::DrawTextW(m_hDC, text, length, rect, format);
    }
    int DrawText(const CString& text, LPRECT rect, UINT format)
    {
        return DrawText(text.GetString(), text.GetLength(), rect, format);
    }
    /// The size that the text takes in the selected font.
    CSize GetTextExtent(LPCTSTR text, int length) const;
    CSize GetTextExtent(const CString& text) const
    {
        return GetTextExtent(text.GetString(), text.GetLength());
    }
    /// The measures of the selected font.
    BOOL GetTextMetrics(TEXTMETRIC* metrics) const
    {
        return ::GetTextMetricsW(m_hAttribDC, metrics);
    }
};

/// The context of a window's WM_PAINT message. The constructor begins painting, the destructor ends
/// it. Empty when the platform refuses.
class MFC_API CPaintDC : public CDC
{
public:
    /// The window must be handling WM_PAINT.
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    /// The description that BeginPaint filled.
    PAINTSTRUCT m_ps = {};

protected:
    HWND m_hWnd; ///< the window that is painted
};

/// The context of a window's client area (null: of the screen), released by the destructor. Empty
/// when the platform refuses.
class MFC_API CClientDC : public CDC
{
public:
    /// Takes the context from the platform.
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

protected:
    HWND m_hWnd; ///< the window; null for the screen
};
