#pragma once

#include <string>

namespace base {

/// Every path is absolute.
inline std::wstring FullPath(const wchar_t* path)
{
    return path ? path : L"";
}

} // namespace base
