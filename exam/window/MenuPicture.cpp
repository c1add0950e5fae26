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
        session ? BitmapFromFile(path.c_str(), &size, !isPossible, Opaque(palette::header))
                : nullptr);
    if (!picture) return;
    CImageList list;
    list.Create(area.Width(), area.Height(), ILC_COLOR24 | ILC_MASK, 1, 0);
    utilsExam::AddImage(list, *picture, area.Size(), palette::header);
    list.Draw(&dc, 0, area.TopLeft(), ILD_TRANSPARENT);
}

} // namespace exam
