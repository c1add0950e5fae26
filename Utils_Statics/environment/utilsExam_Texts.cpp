// utilsExam: the texts of the program file's version resource, small text helpers, fitting a text
// into a width, and spans of dates.
#include "Utils_Statics/utilsExam.h"

#include "diagnostics/VersionBlock.h"
#include "text/TextView.h"

#include <base/SlimLock.h>
#include <Utils_Statics/GetStr.h>

#include <afxdisp.h>
#include <afxwin.h>

#include <algorithm>
#include <cwchar>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

using namespace utils_statics;

namespace {

// Guards the caches below: balloon messages ask for the product's name on any thread.
constinit base::SlimLock s_cacheLock;

// The text of `name`, read once and kept while it is not empty.
CString CachedEntry(CString& cache, const wchar_t* name)
{
    {
        const std::shared_lock lock(s_cacheLock);
        if (!cache.IsEmpty()) return cache;
    }
    CString entry = utilsExam::GetStringTableEntry(name); // without the lock: it may take long
    if (entry.IsEmpty()) entry = GetStr("product.description.notset");
    const std::unique_lock lock(s_cacheLock);
    if (cache.IsEmpty()) cache = entry;
    return cache;
}

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

CString utilsExam::GetStringTableEntry(const wchar_t* name)
{
    const CString file = GetApplicationFilePath();
    const VersionReader reader(file);
    std::vector<unsigned char> block(reader.Size());
    if (block.empty() || !reader.Read(block.data())) return CString();
    std::wstring query(versionQuerySize + std::wcslen(OrEmpty(name)), L'\0');
    return ToCString(VersionText(block.data(), OrEmpty(name), query));
}

CString utilsExam::GetProductVersion()
{
    static CString cache;
    return CachedEntry(cache, L"ProductVersion");
}

CString utilsExam::GetProductName()
{
    static CString cache;
    return CachedEntry(cache, L"ProductName");
}

CString utilsExam::GetProductPublisher()
{
    static CString cache;
    return CachedEntry(cache, L"CompanyName");
}

CString utilsExam::GetBuildDate()
{
    static CString cache;
    return CachedEntry(cache, L"BuildDate");
}

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

int utilsExam::GetYearSpan(const COleDateTime& from, const COleDateTime& to)
{
    const int years = to.GetYear() - from.GetYear();
    const bool beforeTheDay = to.GetMonth() < from.GetMonth() ||
                              (to.GetMonth() == from.GetMonth() && to.GetDay() < from.GetDay());
    return beforeTheDay ? years - 1 : years;
}

int utilsExam::GetMonthSpan(const COleDateTime& from, const COleDateTime& to)
{
    constexpr int monthsOfAYear = 12;
    int months = to.GetMonth() - from.GetMonth();
    if (months < 0) months += monthsOfAYear;
    const bool beforeTheDay = to.GetDay() < from.GetDay();
    if (months == 0 && to.GetDay() == from.GetDay()) return 0;
    if (months == 0 && beforeTheDay) return monthsOfAYear;
    return beforeTheDay ? months : months + 1; // a started month counts
}
