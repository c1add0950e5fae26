#include "TextPool.h"

#include <mutex>

namespace zel_string_convert {

const wchar_t* TextPool::Keep(std::wstring_view text)
{
    const std::scoped_lock guard(m_lock);
    const auto known = m_texts.find(text);
    if (known != m_texts.end()) return known->c_str();
    return m_texts.size() < m_mostTexts ? m_texts.emplace(text).first->c_str() : nullptr;
}

} // namespace zel_string_convert
