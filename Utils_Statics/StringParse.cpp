#include "Utils_Statics/StringParse.h"

#include "text/TextView.h"

#include <algorithm>
#include <string_view>

using namespace utils_statics;

namespace {

// Takes the first word and its separator off `rest`; `more` tells whether there was a separator.
std::wstring_view TakeWord(std::wstring_view& rest, wchar_t sep, bool& more)
{
    const std::size_t end = rest.find(sep);
    more = end != std::wstring_view::npos;
    const std::wstring_view word = rest.substr(0, end);
    rest.remove_prefix(more ? end + 1 : rest.size());
    return word;
}

} // namespace

namespace StringParse {

void GetAllWords(const CString& text, CStringArray& words, wchar_t sep)
{
    const CString kept(View(text).data(), text.GetLength()); // `text` may be in `words`
    words.SetSize(kept.IsEmpty() ? 0 : GetWordCount(kept, sep));
    std::wstring_view rest = View(kept);
    bool more = false;
    for (INT_PTR at = 0; at < words.GetSize(); ++at) {
        const std::wstring_view word = TakeWord(rest, sep, more);
        words[at].SetString(word.data(), static_cast<int>(word.size()));
    }
}

long GetWordCount(const CString& text, wchar_t sep)
{
    const std::wstring_view view = View(text);
    return static_cast<long>(std::count(view.begin(), view.end(), sep)) + 1;
}

CString GetWordByPos(const CString& text, int pos, wchar_t sep)
{
    std::wstring_view rest = View(text);
    bool more = pos >= 0;
    for (; more && pos > 0; --pos)
        TakeWord(rest, sep, more);
    return more ? ToCString(TakeWord(rest, sep, more)) : CString();
}

CString GetFirstWord(const CString& text, wchar_t sep)
{
    std::wstring_view rest = View(text);
    bool more = false;
    return ToCString(TakeWord(rest, sep, more));
}

} // namespace StringParse
