#pragma once

#include <base/SlimLock.h>

#include <functional>
#include <mutex>
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
    const wchar_t* Keep(std::wstring_view text)
    {
        const std::scoped_lock guard(m_lock);
        const auto known = m_texts.find(text);
        if (known != m_texts.end()) return known->c_str();
        return m_texts.size() < m_mostTexts ? m_texts.emplace(text).first->c_str() : nullptr;
    }

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
