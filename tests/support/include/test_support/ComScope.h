#pragma once

#include <windows.h>
#include <objbase.h>

namespace test_support {

// Initialises COM on this thread for the length of a scope.
class ComScope
{
public:
    explicit ComScope(DWORD apartment = COINIT_MULTITHREADED)
        : m_result(CoInitializeEx(nullptr, apartment))
    {
    }
    ~ComScope()
    {
        if (SUCCEEDED(m_result)) CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    HRESULT m_result;
};

} // namespace test_support
