#include "XMLLines.h"

#include <algorithm>

namespace zel_xml {

XMLLines::XMLLines(std::wstring_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n';
        if (isPair) continue; // the line feed ends the line
        if (text[i] == L'\n' || text[i] == L'\r')
            m_starts.push_back(static_cast<std::uint32_t>(i + 1));
    }
}

int XMLLines::At(std::size_t position) const noexcept
{
    const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), position);
    return static_cast<int>(next - m_starts.begin()) + 1;
}

} // namespace zel_xml
