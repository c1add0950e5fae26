// utilsExam: small text helpers, and fitting a text into a width.
#include "Utils_Statics/utilsExam.h"

#include "text/TextView.h"

#include <afxwin.h>

#include <algorithm>
#include <string_view>

using namespace utils_statics;

namespace {

constexpr std::wstring_view delimiters = L" \n";

int MeasuredWidth(CDC& dc, const CString& text)
{
    CRect bounds(0, 0, 0, 0);
    dc.DrawText(text, bounds, DT_CALCRECT);
    return bounds.right - bounds.left;
}

// The next word at or after `position`, which moves past it; empty when there is none.
std::wstring_view NextWord(std::wstring_view text, std::size_t& position)
{
    const std::size_t begin = text.find_first_not_of(delimiters, position);
    if (begin == std::wstring_view::npos) return {};
    position = std::min(text.find_first_of(delimiters, begin), text.size());
    return text.substr(begin, position - begin);
}

// Composes lines from a text's words and counts them.
class LineCounter
{
public:
    LineCounter(CDC& dc, std::wstring_view text, int width) : m_dc(dc), m_text(text), m_width(width)
    {
    }

    void Add(std::wstring_view word)
    {
        AppendWithGap(word);
        if (MeasuredWidth(m_dc, m_line) <= m_width) return;
        ++m_count;
        m_line = ToCString(word);
    }

    int Count() const { return m_count; }

private:
    // The word is searched for from the current position, which then moves to the next space, or to
    // the next line feed when no space is left. Deliberate: after a word that ends in a line feed,
    // the words up to that space are skipped by the search. They are appended without the text
    // before them.
    void AppendWithGap(std::wstring_view word)
    {
        const std::size_t found = m_text.find(word, m_position);
        if (found != std::wstring_view::npos) {
            Append(m_text.substr(m_position, found - m_position));
            std::size_t next = m_text.find(L' ', found + word.size());
            if (next == std::wstring_view::npos) next = m_text.find(L'\n', found + word.size());
            m_position = std::min(next, m_text.size());
        }
        Append(word);
    }

    void Append(std::wstring_view part)
    {
        m_line.Append(part.data(), static_cast<int>(part.size()));
    }

    CDC& m_dc;
    std::wstring_view m_text;
    int m_width;
    CString m_line;
    std::size_t m_position = 0;
    int m_count = 1;
};

} // namespace

void utilsExam::StlListToMfcList(const std::vector<std::wstring>& from, CStringArray& to)
{
    for (const std::wstring& text : from)
        to.Add(ToCString(text));
}

double utilsExam::ui64ToDouble(unsigned __int64 value)
{
    return static_cast<double>(value);
}

int utilsExam::WrapStr(CDC* dc, CString& text, int width)
{
    if (text.IsEmpty() || !dc) return 0;
    if (MeasuredWidth(*dc, text) < width) return 1;

    const CString copy = text;
    const std::wstring_view whole = View(copy);
    std::size_t position = 0;
    std::wstring_view word = NextWord(whole, position);
    if (word == whole) return 1;

    LineCounter lines(*dc, whole, width);
    std::wstring_view longest = word;
    for (; !word.empty(); word = NextWord(whole, position)) {
        lines.Add(word);
        if (word.size() > longest.size()) longest = word;
    }
    text = ToCString(longest);
    return lines.Count();
}
