#include "ApplicationFile.h"

#include <windows.h>

namespace qor_utils {

std::wstring ApplicationFile()
{
    constexpr std::size_t longestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        if (path.size() >= longestPath) return {};
        path.resize(path.size() * 2);
    }
}

} // namespace qor_utils
