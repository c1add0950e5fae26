#pragma once

#include <windows.h>

#include <string>

// The calls of a store's callback: their number, and the path and thread of the last one.
struct Completed
{
    int calls = 0;
    std::wstring path;
    DWORD thread = 0;

    static void Notify(const wchar_t* path, void* self)
    {
        auto& completed = *static_cast<Completed*>(self);
        ++completed.calls;
        completed.path = path;
        completed.thread = GetCurrentThreadId();
    }
};
