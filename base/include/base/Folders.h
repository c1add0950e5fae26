#pragma once

#include <direct.h>

#include <cstddef>
#include <string>

namespace base {

/// Makes the folder `path` and before it, outermost first, each folder of it whose name a backslash
/// at `first` or later ends. True when `path` itself was made, so false when it exists already.
inline bool MakeFolders(const std::wstring& path, std::size_t first = 0)
{
    for (auto end = path.find(L'\\', first); end != std::wstring::npos;
         end = path.find(L'\\', end + 1))
        _wmkdir(path.substr(0, end).c_str());
    return _wmkdir(path.c_str()) == 0;
}

} // namespace base
