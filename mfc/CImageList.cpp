#include <afxcmn.h>

#include <utility>

CImageList::~CImageList()
{
    DeleteImageList();
}

BOOL CImageList::Attach(HIMAGELIST list)
{
    if (!list || m_hImageList) return FALSE;
    m_hImageList = list;
    return TRUE;
}

HIMAGELIST CImageList::Detach()
{
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList()
{
    return m_hImageList && ::ImageList_Destroy(Detach());
}

BOOL CImageList::Create(int width, int height, UINT flags, int initial, int grow)
{
    return !m_hImageList && Attach(::ImageList_Create(width, height, flags, initial, grow));
}

int CImageList::Add(CBitmap* bitmap, CBitmap* mask)
{
    if (!bitmap) return -1;
    return ::ImageList_Add(m_hImageList, *bitmap, mask ? static_cast<HBITMAP>(*mask) : nullptr);
}

int CImageList::Add(CBitmap* bitmap, COLORREF mask)
{
    return bitmap ? ::ImageList_AddMasked(m_hImageList, *bitmap, mask) : -1;
}

BOOL CImageList::Draw(CDC* dc, int index, POINT at, UINT style)
{
    return dc && ::ImageList_Draw(m_hImageList, index, dc->m_hDC, at.x, at.y, style);
}
