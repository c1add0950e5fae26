#pragma once

#include <windows.h>

namespace utils_statics {

// Owns one file enumeration of FindFirstFileW.
class FindHandle
{
public:
    FindHandle(const wchar_t* pattern, WIN32_FIND_DATAW& first)
        : m_handle(FindFirstFileW(pattern, &first))
    {
    }
    ~FindHandle()
    {
        if (started()) FindClose(m_handle);
    }
    FindHandle(const FindHandle&) = delete;
    FindHandle& operator=(const FindHandle&) = delete;

    bool started() const { return m_handle != INVALID_HANDLE_VALUE; }
    bool next(WIN32_FIND_DATAW& entry) const { return FindNextFileW(m_handle, &entry) != FALSE; }

private:
    HANDLE m_handle;
};

} // namespace utils_statics
