#pragma once

#include <afxwin.h>

#include <commctrl.h>

/// An owned image list: the destructor destroys it. Functions return FALSE or -1 when the platform
/// refuses, or on an empty object.
class MFC_API CImageList : public CObject
{
public:
    CImageList() = default;
    ~CImageList() override;

    /// The handle, which stays the object's; null for an empty object.
    HIMAGELIST m_hImageList = nullptr;

    /// The handle, also of an empty object (null).
    HIMAGELIST GetSafeHandle() const noexcept { return m_hImageList; }
    operator HIMAGELIST() const noexcept { return m_hImageList; }
    /// FALSE for a null handle, or when a handle is already attached.
    BOOL Attach(HIMAGELIST list);
    /// Gives the list up without destroying it, and returns its handle.
    HIMAGELIST Detach();
    /// Destroys the list, which leaves the object empty.
    BOOL DeleteImageList();
    /// The size is in pixels. `flags` are ILC_ values. `grow` is the number of images to grow by.
    BOOL Create(int width, int height, UINT flags, int initial, int grow);

    /// The platform's functions of these names, for this list.
    int GetImageCount() const { return ::ImageList_GetImageCount(m_hImageList); }
    BOOL GetImageInfo(int index, IMAGEINFO* info) const
    {
        return ::ImageList_GetImageInfo(m_hImageList, index, info);
    }
    /// Copy the bitmap's images and return the index of the first, or -1 on failure. Pixels of a
    /// given colour are transparent.
    int Add(CBitmap* bitmap, CBitmap* mask);
    int Add(CBitmap* bitmap, COLORREF mask);
    int Add(HICON icon) { return ::ImageList_AddIcon(m_hImageList, icon); }
    /// Removes the image at `index`; -1 removes all.
    BOOL Remove(int index) { return ::ImageList_Remove(m_hImageList, index); }
    /// Draws an image at a place; `style` are ILD_ values.
    BOOL Draw(CDC* dc, int index, POINT at, UINT style);
    /// Sets the colour behind the images and returns the former one; CLR_NONE for none.
    COLORREF SetBkColor(COLORREF colour) { return ::ImageList_SetBkColor(m_hImageList, colour); }
};
