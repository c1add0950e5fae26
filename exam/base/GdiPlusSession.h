#pragma once

#include <Utils_Statics/BitmapFunctions.h> // includes the headers of GDI+

namespace exam {

/// GDI+ can be used as long as one of these lives.
class GdiPlusSession
{
public:
    GdiPlusSession()
    {
        const Gdiplus::GdiplusStartupInput input;
        m_started = Gdiplus::GdiplusStartup(&m_token, &input, nullptr) == Gdiplus::Ok;
    }
    ~GdiPlusSession()
    {
        if (m_started) Gdiplus::GdiplusShutdown(m_token);
    }
    GdiPlusSession(const GdiPlusSession&) = delete;
    GdiPlusSession& operator=(const GdiPlusSession&) = delete;

    explicit operator bool() const { return m_started; }

private:
    ULONG_PTR m_token = 0;
    bool m_started = false;
};

} // namespace exam
