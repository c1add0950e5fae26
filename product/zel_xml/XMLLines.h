#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zel_xml {

// The lines of a text, by positions in it. They are found once, because the parser overwrites the
// text.
class XMLLines
{
public:
    XMLLines() = default;
    explicit XMLLines(std::wstring_view text);

    // The line of a position, from 1. Beyond the end it is the last line.
    int At(std::size_t position) const noexcept;

private:
    std::vector<std::uint32_t> m_starts; // of the second line and those behind it
};

} // namespace zel_xml
