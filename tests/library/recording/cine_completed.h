#pragma once

#include <windows.h>

#include <string>

// What a store's callback told: how often, and the last time with which path and on which thread.
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
