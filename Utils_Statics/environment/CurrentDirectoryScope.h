#pragma once

#include "environment/PathText.h"

namespace utils_statics {

// Restores the process's current directory when the scope ends, on every way out. A directory of
// MAX_PATH characters or more cannot be remembered and is not restored.
class CurrentDirectoryScope
{
public:
    CurrentDirectoryScope() : m_remembered(CurrentDirectory()) {}
    ~CurrentDirectoryScope()
    {
        if (!m_remembered.empty()) SetCurrentDirectoryW(m_remembered.c_str());
    }
    CurrentDirectoryScope(const CurrentDirectoryScope&) = delete;
    CurrentDirectoryScope& operator=(const CurrentDirectoryScope&) = delete;

private:
    std::wstring m_remembered;
};

} // namespace utils_statics
