#include "Utils_Statics/MfcConversions.h"

#include "text/TextView.h"

namespace QOR_MFC_CONVERSIONS {

CPoint QOR_2_MFC(const UPoint& point)
{
    return CPoint(point.x, point.y);
}

void QOR_2_MFC(const UPoint& point, CPoint& converted)
{
    converted = QOR_2_MFC(point);
}

UPoint MFC_2_QOR(const CPoint& point)
{
    return UPoint{point.x, point.y};
}

void MFC_2_QOR(const CPoint& point, UPoint& converted)
{
    converted = MFC_2_QOR(point);
}

CRect QOR_2_MFC(const URect& rect)
{
    return CRect(rect.left, rect.top, rect.right, rect.bottom);
}

void QOR_2_MFC(const URect& rect, CRect& converted)
{
    converted = QOR_2_MFC(rect);
}

URect MFC_2_QOR(const CRect& rect)
{
    return URect{rect.left, rect.top, rect.right, rect.bottom};
}

void MFC_2_QOR(const CRect& rect, URect& converted)
{
    converted = MFC_2_QOR(rect);
}

CString QOR_2_MFC(const std::wstring& text)
{
    return utils_statics::ToCString(text);
}

void QOR_2_MFC(const std::wstring& text, CString& converted)
{
    converted = QOR_2_MFC(text);
}

std::wstring MFC_2_QOR(const CString& text)
{
    return std::wstring(utils_statics::View(text));
}

void MFC_2_QOR(const CString& text, std::wstring& converted)
{
    converted = MFC_2_QOR(text);
}

} // namespace QOR_MFC_CONVERSIONS
