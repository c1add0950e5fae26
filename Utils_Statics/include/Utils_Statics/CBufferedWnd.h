#pragma once

#include <Utils_Statics/export.h>

#include <afxwin.h>

/// A small window over the image, of any shape, that paints without flicker.
///
/// A derived class draws its content, and unless it is a rectangle a mask of the pixels that belong
/// to it. Both are drawn off the screen; only the masked pixels are then copied to it, and the rest
/// of the window goes on showing what lies beneath. The owner creates, places and destroys the
/// object, on its window's thread.
///
/// What lies beneath is the owner's to keep: a window that is masked needs WS_EX_TRANSPARENT, or a
/// parent without WS_CLIPCHILDREN, and after it was moved or its shape changed, the parent has to
/// be repainted where it was (RDW_INVALIDATE | RDW_ALLCHILDREN; move with SWP_NOCOPYBITS).
class UTILS_STATICS_API CBufferedWnd : public CWnd
{
public:
    CBufferedWnd() = default;
    ~CBufferedWnd() override;

    /// Creates the window with a class of the framework's. `rect` is in client coordinates of
    /// `parent`. Non-zero when it was created. Hides the Create of CWnd, deliberately.
    virtual int Create(unsigned long style, unsigned long exStyle, CWnd* parent, CRect rect,
                       unsigned int id, CString name);
    /// Copies the finished `buffer` to the `screen`: the masked pixels, or all of a rectangle.
    virtual void Paint(CDC* screen, CDC* buffer);
    /// Draws the content into a context as large as the client area. The default is plain white.
    virtual void Draw(CDC* dc);
    /// Draws the shape into a monochrome context as large as the client area: white belongs to the
    /// window. The default is all black, so that nothing of the window shows.
    virtual void DrawMask(CDC* dc);
    /// Non-zero says that the window is a plain rectangle: DrawMask is never called.
    virtual int IsRectMask();
    /// Moves the window to its place over the image, whose area `image` is in client coordinates of
    /// the parent. For owners; this class does not call it.
    virtual void PlaceOver(const CRect& image) = 0;
    /// Takes over what the window shows and has it painted. For owners; this class does not call
    /// it.
    virtual void Refresh() = 0;
    /// False leaves the window out when the screen is recorded to a movie.
    virtual bool CanDrawOnAVI() const;

    void BeginModalState() override;
    void EndModalState() override;

    /// Paints what is invalid at once.
    void CallOnPaint();

protected:
    void PostNcDestroy() override;

    afx_msg int OnCreate(LPCREATESTRUCT description);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnPaint();
    DECLARE_MESSAGE_MAP()

    /// Makes the three bitmaps anew, as large as the client area.
    void UpdateBitmaps();

    /// The complement of m_mask, brought up to date before each Draw; for derived classes.
    CBitmap m_inverseMask;
    CBitmap m_mask;
    CBitmap m_buffer;

private:
    void PrepareMasks(CDC& screen, const CRect& client);
};
