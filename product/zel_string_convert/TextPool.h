#pragma once

#include <base/SlimLock.h>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace zel_string_convert {

// Keeps one copy of each text at a fixed address for as long as the pool lives. Any thread may use
// it.
class TextPool
{
public:
    explicit TextPool(std::size_t mostTexts = static_cast<std::size_t>(-1)) : m_mostTexts(mostTexts)
    {
    }

    // The pool's copy; null for a new text when the pool is full.
    const wchar_t* Keep(std::wstring_view text);

private:
    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view text) const noexcept
        {
            return std::hash<std::wstring_view>()(text);
        }
    };

    const std::size_t m_mostTexts;
    base::SlimLock m_lock;
    std::unordered_set<std::wstring, Hash, std::equal_to<>>
        m_texts; // its nodes stay in place when the set grows
};

} // namespace zel_string_convert
