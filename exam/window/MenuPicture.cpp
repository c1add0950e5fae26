#include "window/MenuPicture.h"

#include "base/Palette.h"

#include <base/GdiPlusSession.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/utilsExam.h>

#include <afxcmn.h>

#include <memory>
#include <string>

namespace exam {

namespace {

constexpr unsigned char dimmed = 150; // the brightness of white where a command is not possible

Gdiplus::ARGB Opaque(COLORREF colour)
{
    return Gdiplus::Color::MakeARGB(255, GetRValue(colour), GetGValue(colour), GetBValue(colour));
}

} // namespace

void DrawMenuPicture(CDC& dc, const CRect& area, const wchar_t* name, bool isPossible)
{
    const base::GdiPlusSession session;
    const std::wstring path = utilsExam::GetImage((std::wstring(L"buttons\\") + name).c_str());
    const SIZE size = area.Size();
    const std::unique_ptr<CBitmap> picture(
        session ? BitmapFromFile(path.c_str(), &size, false, Opaque(palette::header)) : nullptr);
    if (!picture) return;
    COLORREF ground = palette::header;
    if (!isPossible && GrayScale(static_cast<HBITMAP>(picture->GetSafeHandle()), dimmed))
        ground = RGB(dimmed, dimmed, dimmed);
    CImageList list;
    list.Create(area.Width(), area.Height(), ILC_COLOR24 | ILC_MASK, 1, 0);
    utilsExam::AddImage(list, *picture, area.Size(), ground);
    list.Draw(&dc, 0, area.TopLeft(), ILD_TRANSPARENT);
}

} // namespace exam
