#pragma once

#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <Utils_Statics/export.h>

#include <atlstr.h>
#include <atltypes.h>

#include <string>

/// Conversions between the platform's value types and those of the product's utility library. Each
/// comes in two forms: one returns the converted value, the other fills its second argument.
namespace QOR_MFC_CONVERSIONS {

/// Both coordinates are copied as they are.
UTILS_STATICS_API CPoint QOR_2_MFC(const UPoint& point);
UTILS_STATICS_API void QOR_2_MFC(const UPoint& point, CPoint& converted);
UTILS_STATICS_API UPoint MFC_2_QOR(const CPoint& point);
UTILS_STATICS_API void MFC_2_QOR(const CPoint& point, UPoint& converted);

/// The four edges are copied as they are, without normalisation.
UTILS_STATICS_API CRect QOR_2_MFC(const URect& rect);
UTILS_STATICS_API void QOR_2_MFC(const URect& rect, CRect& converted);
UTILS_STATICS_API URect MFC_2_QOR(const CRect& rect);
UTILS_STATICS_API void MFC_2_QOR(const CRect& rect, URect& converted);

/// All characters are copied, also zero characters within the text.
UTILS_STATICS_API CString QOR_2_MFC(const std::wstring& text);
UTILS_STATICS_API void QOR_2_MFC(const std::wstring& text, CString& converted);
UTILS_STATICS_API std::wstring MFC_2_QOR(const CString& text);
UTILS_STATICS_API void MFC_2_QOR(const CString& text, std::wstring& converted);

} // namespace QOR_MFC_CONVERSIONS
