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

    HIMAGELIST m_hImageList = nullptr;

    HIMAGELIST GetSafeHandle() const noexcept { return m_hImageList; }
    operator HIMAGELIST() const noexcept { return m_hImageList; }
    /// FALSE for a null handle, or when a handle is already attached.
    BOOL Attach(HIMAGELIST list);
    HIMAGELIST Detach();
    BOOL DeleteImageList();
    /// The size is in pixels. `flags` are ILC_ values. `grow` is the number of images to grow by.
    BOOL Create(int width, int height, UINT flags, int initial, int grow);

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
    BOOL Remove(int index) { return ::ImageList_Remove(m_hImageList, index); }
    BOOL Draw(CDC* dc, int index, POINT at, UINT style);
    COLORREF SetBkColor(COLORREF colour) { return ::ImageList_SetBkColor(m_hImageList, colour); }
};
