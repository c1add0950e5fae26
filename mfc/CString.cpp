#include <base/Encoding.h>
#include <framework/CWinApp.h>

#include <atlstr.h>

#include <algorithm>
#include <cwchar>

namespace {

int ToPosition(size_t position)
{
    return position == std::wstring_view::npos ? -1 : static_cast<int>(position);
}

bool IsWhiteSpace(wchar_t character)
{
    WORD classes = 0;
    return GetStringTypeW(CT_CTYPE1, &character, 1, &classes) && (classes & C1_SPACE) != 0;
}

std::wstring Formatted(LPCWSTR format, va_list arguments)
{
    if (!format) return {};
    va_list measured;
    va_copy(measured, arguments);
    const int length = _vscwprintf(format, measured);
    va_end(measured);
    if (length <= 0) return {};
    std::wstring text(static_cast<size_t>(length), L'\0');
    // The terminating null has its own place after the last character.
    const int written = _vsnwprintf(text.data(), text.size() + 1, format, arguments);
    text.resize(static_cast<size_t>(std::max(written, 0)));
    return text;
}

} // namespace

CString::CString(LPCSTR text)
    : m_text(base::WideFromBytes(CP_ACP, text ? text : "").value_or(std::wstring()))
{
}

void CString::Format(LPCWSTR format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

void CString::FormatV(LPCWSTR format, va_list arguments)
{
    m_text = Formatted(format, arguments);
}

void CString::AppendFormat(LPCWSTR format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    AppendFormatV(format, arguments);
    va_end(arguments);
}

void CString::AppendFormatV(LPCWSTR format, va_list arguments)
{
    m_text += Formatted(format, arguments);
}

int CString::Compare(LPCWSTR other) const noexcept
{
    return m_text.compare(View(other));
}

int CString::CompareNoCase(LPCWSTR other) const noexcept
{
    const auto view = View(other);
    return CompareStringOrdinal(m_text.data(), GetLength(), view.data() ? view.data() : L"",
                                static_cast<int>(view.size()), TRUE) -
           CSTR_EQUAL;
}

CString CString::Mid(int first, int count) const
{
    const int start = std::clamp(first, 0, GetLength());
    return {m_text.data() + start, std::clamp(count, 0, GetLength() - start)};
}

CString CString::Right(int count) const
{
    const int length = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - length, length);
}

CString CString::SpanIncluding(LPCWSTR characters) const
{
    const int end = ToPosition(m_text.find_first_not_of(View(characters)));
    return end < 0 ? *this : Left(end);
}

CString CString::SpanExcluding(LPCWSTR characters) const
{
    const int end = FindOneOf(characters);
    return end < 0 ? *this : Left(end);
}

CString CString::Tokenize(LPCWSTR delimiters, int& start) const
{
    const auto separators = View(delimiters);
    const size_t first = start < 0
                             ? std::wstring::npos
                             : m_text.find_first_not_of(separators, static_cast<size_t>(start));
    if (first == std::wstring::npos) {
        start = -1;
        return {};
    }
    const size_t end = std::min(m_text.find_first_of(separators, first), m_text.size());
    start = static_cast<int>(end) + 1;
    return Mid(static_cast<int>(first), static_cast<int>(end - first));
}

int CString::Find(wchar_t character, int start) const noexcept
{
    return start < 0 ? -1 : ToPosition(m_text.find(character, static_cast<size_t>(start)));
}

int CString::Find(LPCWSTR text, int start) const noexcept
{
    return start < 0 ? -1 : ToPosition(m_text.find(View(text), static_cast<size_t>(start)));
}

int CString::ReverseFind(wchar_t character) const noexcept
{
    return ToPosition(m_text.rfind(character));
}

int CString::FindOneOf(LPCWSTR characters) const noexcept
{
    return ToPosition(m_text.find_first_of(View(characters)));
}

CString& CString::TrimLeft()
{
    m_text.erase(m_text.begin(), std::find_if_not(m_text.begin(), m_text.end(), IsWhiteSpace));
    return *this;
}

CString& CString::TrimRight()
{
    m_text.erase(std::find_if_not(m_text.rbegin(), m_text.rend(), IsWhiteSpace).base(),
                 m_text.end());
    return *this;
}

CString& CString::TrimLeft(LPCWSTR characters)
{
    m_text.erase(0, m_text.find_first_not_of(View(characters)));
    return *this;
}

CString& CString::TrimRight(LPCWSTR characters)
{
    // npos + 1 is 0: nothing but characters to trim leaves an empty text.
    m_text.erase(m_text.find_last_not_of(View(characters)) + 1);
    return *this;
}

CString& CString::MakeUpper()
{
    CharUpperBuffW(m_text.data(), static_cast<DWORD>(m_text.size()));
    return *this;
}

CString& CString::MakeLower()
{
    CharLowerBuffW(m_text.data(), static_cast<DWORD>(m_text.size()));
    return *this;
}

CString& CString::MakeReverse()
{
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

int CString::Replace(wchar_t from, wchar_t to) noexcept
{
    if (from == to) return 0;
    const auto count = std::count(m_text.begin(), m_text.end(), from);
    std::replace(m_text.begin(), m_text.end(), from, to);
    return static_cast<int>(count);
}

int CString::Replace(LPCWSTR from, LPCWSTR to)
{
    const std::wstring_view wanted = View(from);
    if (wanted.empty()) return 0;
    std::wstring result;
    int count = 0;
    size_t done = 0;
    for (size_t hit; (hit = m_text.find(wanted, done)) != std::wstring::npos;
         done = hit + wanted.size(), ++count)
        result.append(m_text, done, hit - done).append(View(to));
    if (count == 0) return 0;
    m_text = result.append(m_text, done);
    return count;
}

int CString::Remove(wchar_t character)
{
    return static_cast<int>(std::erase(m_text, character));
}

int CString::Insert(int index, LPCWSTR text)
{
    const std::wstring copy(View(text));
    m_text.insert(static_cast<size_t>(std::clamp(index, 0, GetLength())), copy);
    return GetLength();
}

int CString::Delete(int index, int count)
{
    const int start = std::max(index, 0);
    if (start < GetLength() && count > 0)
        m_text.erase(static_cast<size_t>(start), static_cast<size_t>(count));
    return GetLength();
}

LPWSTR CString::GetBuffer(int minimumLength)
{
    if (minimumLength > GetLength()) m_text.resize(static_cast<size_t>(minimumLength));
    return m_text.data();
}

LPWSTR CString::GetBufferSetLength(int length)
{
    m_text.resize(static_cast<size_t>(std::max(length, 0)));
    return m_text.data();
}

void CString::ReleaseBuffer(int newLength)
{
    if (newLength < 0)
        Truncate(static_cast<int>(std::wcslen(m_text.c_str())));
    else
        Truncate(newLength);
}

BOOL CString::LoadString(UINT id)
{
    // String resources lie in blocks of sixteen, and only a block can be searched for.
    const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(id / 16 + 1), RT_STRING);
    const wchar_t* text = nullptr;
    // A buffer size of 0 asks for a pointer to the resource itself, which has no terminating null.
    const int length = ::LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
    if (length <= 0) return FALSE;
    SetString(text, length);
    return TRUE;
}
