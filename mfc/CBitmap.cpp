#include "GdiMap.h"

#include <algorithm>

CBitmap::~CBitmap() = default;

BOOL CBitmap::LoadBitmap(LPCTSTR name)
{
    return Own(::LoadBitmapW(AfxFindResourceHandle(name, RT_BITMAP), name));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height)
{
    return Own(::CreateCompatibleBitmap(dc ? dc->m_hDC : nullptr, width, height));
}

// The platform's counts are signed. No bitmap fills a buffer larger than they can express.
DWORD CBitmap::GetBitmapBits(DWORD size, LPVOID bits) const
{
    return static_cast<DWORD>(
        ::GetBitmapBits(*this, static_cast<LONG>(std::min<DWORD>(size, MAXLONG)), bits));
}

DWORD CBitmap::SetBitmapBits(DWORD size, const void* bits)
{
    return static_cast<DWORD>(::SetBitmapBits(*this, std::min<DWORD>(size, MAXLONG), bits));
}

CBitmap* CBitmap::FromHandle(HBITMAP bitmap)
{
    return framework::GdiFromHandle<CBitmap>(bitmap);
}
