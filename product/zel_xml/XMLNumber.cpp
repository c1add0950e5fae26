#include "XMLNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace zel_xml {

namespace {

constexpr int maxPrecision = 30;
constexpr std::size_t maxNumberText = 512; // the largest double has 309 digits before the point

// The number without surrounding white space and plus sign, as the narrow text that <charconv>
// reads.
class NumberText
{
public:
    explicit NumberText(std::wstring_view text) noexcept
    {
        constexpr std::wstring_view space = L" \t\r\n";
        const std::size_t begin = std::min(text.find_first_not_of(space), text.size());
        text.remove_prefix(begin);
        text.remove_suffix(text.size() - (text.find_last_not_of(space) + 1));
        if (text.size() > 1 && text[0] == L'+' && text[1] != L'-') text.remove_prefix(1);
        if (text.size() > m_text.size()) return;
        for (const wchar_t c : text) {
            if (c > 0x7F) return;
            m_text[m_length++] = static_cast<char>(c);
        }
        m_usable = m_length > 0;
    }

    template <typename Number>
    bool Read(Number& value) const noexcept
    {
        Number number{};
        const char* end = m_text.data() + m_length;
        const auto [stop, error] = std::from_chars(m_text.data(), end, number);
        if (!m_usable || error != std::errc{} || stop != end) return false;
        value = number;
        return true;
    }

private:
    std::array<char, maxNumberText> m_text{};
    std::size_t m_length = 0;
    bool m_usable = false;
};

} // namespace

bool ParseInt(std::wstring_view text, int& value) noexcept
{
    return NumberText(text).Read(value);
}

bool ParseDouble(std::wstring_view text, double& value) noexcept
{
    return NumberText(text).Read(value);
}

std::wstring FormatInt(int value)
{
    return std::to_wstring(value);
}

std::wstring FormatDouble(double value, int precision)
{
    std::array<char, maxNumberText> text;
    char* const begin = text.data();
    char* const end = begin + text.size();
    const auto result = precision < 0 ? std::to_chars(begin, end, value)
                                      : std::to_chars(begin, end, value, std::chars_format::fixed,
                                                      std::min(precision, maxPrecision));
    return std::wstring(begin, result.ptr);
}

} // namespace zel_xml
