#pragma once

#include <Utils_Statics/export.h>

#include <afxwin.h>

/// A small window over the image, of any shape, that paints without flicker.
///
/// A derived class draws its content and, unless the window is a rectangle, a mask of the pixels
/// that belong to it. Both are drawn off the screen. Only the masked pixels are then copied to the
/// screen; the rest of the window goes on showing what lies beneath. The owner creates, places and
/// destroys the object on the window's thread.
///
/// The owner keeps up what lies beneath. A masked window needs WS_EX_TRANSPARENT, or a parent
/// without WS_CLIPCHILDREN. After the window has moved or changed its shape, the owner has the
/// parent repainted where it was (RDW_INVALIDATE | RDW_ALLCHILDREN; move with SWP_NOCOPYBITS).
class UTILS_STATICS_API CBufferedWnd : public CWnd
{
public:
    CBufferedWnd() = default;
    ~CBufferedWnd() override;

    /// Creates the window with a window class of the framework. `rect` is in client coordinates of
    /// `parent`. Non-zero on success. Deliberately hides the Create of CWnd.
    virtual int Create(unsigned long style, unsigned long exStyle, CWnd* parent, CRect rect,
                       unsigned int id, CString name);
    /// Copies the masked pixels of the finished `buffer`, or all when the window is a rectangle, to
    /// the `screen`.
    virtual void Paint(CDC* screen, CDC* buffer);
    /// Draws the content into a context as large as the client area. The default is plain white.
    virtual void Draw(CDC* dc);
    /// Draws the shape into a monochrome context as large as the client area; white pixels belong
    /// to the window. The default is all black, which shows nothing of the window.
    virtual void DrawMask(CDC* dc);
    /// Non-zero when the window is a plain rectangle; DrawMask is then never called.
    virtual int IsRectMask();
    /// Moves the window to its place over the image, whose area `image` is in client coordinates of
    /// the parent. For owners; this class does not call it.
    virtual void PlaceOver(const CRect& image) = 0;
    /// Updates what the window shows and has it painted. For owners; this class does not call it.
    virtual void Refresh() = 0;
    /// False leaves the window out when the screen is recorded to a movie.
    virtual bool CanDrawOnAVI() const;

    /// Disable the window around a modal state of the application, and enable it again.
    void BeginModalState() override;
    void EndModalState() override;

    /// Paints what is invalid at once.
    void CallOnPaint();

protected:
    void PostNcDestroy() override;

    /// Create the bitmaps, bring them to the window's new size, and paint.
    afx_msg int OnCreate(LPCREATESTRUCT description);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnPaint();
    DECLARE_MESSAGE_MAP()

    /// Recreates the three bitmaps in the size of the client area.
    void UpdateBitmaps();

    /// The complement of m_mask, for derived classes; up to date whenever a masked window calls
    /// Draw.
    CBitmap m_inverseMask;
    CBitmap m_mask;   ///< the shape, as DrawMask drew it
    CBitmap m_buffer; ///< the content, as Draw drew it

private:
    void PrepareMasks(CDC& screen, const CRect& client);
};
