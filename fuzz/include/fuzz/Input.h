#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

/// The one operation of a target: takes an input, and returns 0 whatever it is. An engine calls it
/// again and again in one process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// The bytes of one input, which may lie nowhere when there are none, taken from the front. Behind
/// the last one there are zeros.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_rest(size == 0 ? "" : reinterpret_cast<const char*>(data), size)
    {
    }

    template <class Value>
    Value Take()
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value{};
        const std::size_t size = std::min(sizeof value, m_rest.size());
        std::memcpy(&value, m_rest.data(), size);
        m_rest.remove_prefix(size);
        return value;
    }

    /// All that is left, as bytes, and as UTF-16 up to the first null.
    std::string_view Rest() const { return m_rest; }
    std::wstring RestAsText() const
    {
        std::wstring text(m_rest.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), m_rest.data(), text.size() * sizeof(wchar_t));
        return text.substr(0, text.find(L'\0'));
    }

private:
    std::string_view m_rest;
};

} // namespace fuzz
