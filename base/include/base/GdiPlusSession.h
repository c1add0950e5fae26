#pragma once

#include <windows.h>
#include <objbase.h>
#include <gdiplus.h>

namespace base {

/// GDI+ can be used as long as one of these lives. False when it could not be started.
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

} // namespace base
