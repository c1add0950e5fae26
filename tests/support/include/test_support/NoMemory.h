#pragma once

#include <test_support/ImportHook.h>

#include <windows.h>
#include <oleauto.h>

#include <cstdlib>

namespace test_support {

// Supplies the memory of every operator new of the process while it lives. From the chosen
// allocation on, this thread gets none.
class NoMemory
{
public:
    ~NoMemory() { s_thread = 0; }

    static void From(int allocation)
    {
        s_left = allocation;
        s_refused = 0;
        s_thread = GetCurrentThreadId();
    }
    // Ends it. The result is true when memory was refused.
    static bool End()
    {
        s_thread = 0;
        return s_refused != 0;
    }

private:
    static void* Allocate(std::size_t size)
    {
        if (GetCurrentThreadId() != s_thread || s_left-- > 0) return std::malloc(size);
        ++s_refused;
        return nullptr;
    }

    inline static DWORD s_thread = 0;
    inline static int s_left = 0;
    inline static int s_refused = 0;
    const ImportHook m_hook{L"libstdc++-6.dll", "malloc", &Allocate};
};

// The library can make this many texts for COM while it lives, and no more.
class FewTexts
{
public:
    explicit FewTexts(int count = 0) { Allow(count); }

    static void Allow(int count) { s_left = count; }

private:
    static BSTR WINAPI Make(const OLECHAR* text)
    {
        return s_left-- > 0 ? SysAllocString(text) : nullptr;
    }

    inline static int s_left = 0;
    const ImportHook m_hook{L"Utils_Statics.dll", "SysAllocString", &Make};
};

} // namespace test_support
