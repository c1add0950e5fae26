#pragma once

#include <Utils_Statics/BitmapFunctions.h>

// GDI+ runs as long as the object lives.
class GdiPlusSession
{
public:
    GdiPlusSession()
    {
        const Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&m_token, &input, nullptr);
    }
    ~GdiPlusSession() { Gdiplus::GdiplusShutdown(m_token); }
    GdiPlusSession(const GdiPlusSession&) = delete;
    GdiPlusSession& operator=(const GdiPlusSession&) = delete;

private:
    ULONG_PTR m_token = 0;
};
