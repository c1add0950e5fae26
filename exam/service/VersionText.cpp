#include "service/VersionText.h"

#include <iterator>

namespace exam {

std::wstring NumbersText(const unsigned short (&numbers)[4])
{
    std::wstring text;
    for (const unsigned short number : numbers)
        text += (text.empty() ? L"" : L".") + std::to_wstring(number);
    return text;
}

std::wstring TextOf(const CMiniVersion& version,
                    int (CMiniVersion::*get)(unsigned short*, int) const noexcept)
{
    unsigned short text[520] = {};
    (version.*get)(text, static_cast<int>(std::size(text)));
    return reinterpret_cast<const wchar_t*>(text);
}

} // namespace exam
