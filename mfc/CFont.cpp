#include "GdiMap.h"

#include <base/GdiHandles.h>

namespace {

// The vertical resolution of a context; of the screen for a null one.
int DotsPerInch(const CDC* dc)
{
    if (dc) return ::GetDeviceCaps(dc->m_hAttribDC, LOGPIXELSY);
    const base::WindowContext screen(nullptr);
    return ::GetDeviceCaps(screen.get(), LOGPIXELSY);
}

} // namespace

CFont::~CFont() = default;

BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight,
                       BYTE italic, BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision,
                       BYTE clipPrecision, BYTE quality, BYTE pitchAndFamily, LPCTSTR faceName)
{
    return Own(::CreateFontW(height, width, escapement, orientation, weight, italic, underline,
                             strikeOut, charSet, outPrecision, clipPrecision, quality,
                             pitchAndFamily, faceName));
}

BOOL CFont::CreatePointFont(int tenths, LPCTSTR faceName, CDC* dc)
{
    LOGFONT description = {};
    // A point is 1/72 inch. A negative height is that of the characters without the space above
    // them.
    description.lfHeight = -MulDiv(tenths, DotsPerInch(dc), 720);
    description.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(description.lfFaceName, faceName ? faceName : L"", LF_FACESIZE);
    return CreateFontIndirect(&description);
}

CFont* CFont::FromHandle(HFONT font)
{
    return framework::GdiFromHandle<CFont>(font);
}
