#include "GdiMap.h"
#include "Handles.h"

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
    const framework::ScreenContext screen(dc ? nullptr : ::GetDC(nullptr));
    const int dotsPerInch = ::GetDeviceCaps(dc ? dc->m_hAttribDC : screen.get(), LOGPIXELSY);
    LOGFONT description = {};
    // A point is 1/72 inch; negative: the height of the characters without the space above them.
    description.lfHeight = -MulDiv(tenths, dotsPerInch, 720);
    description.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(description.lfFaceName, faceName ? faceName : L"", LF_FACESIZE);
    return CreateFontIndirect(&description);
}

CFont* CFont::FromHandle(HFONT font)
{
    return framework::GdiFromHandle<CFont>(font);
}
