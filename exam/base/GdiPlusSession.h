#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>
using std::max; // the headers of GDI+ use both without a namespace
using std::min;
#include <gdiplus.h>

namespace exam {

/// GDI+ while it lives; false when the platform refuses.
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
