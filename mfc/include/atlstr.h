#pragma once

#include <framework/export.h>

#include <windows.h>

#include <compare>
#include <cstdarg>
#include <string>
#include <string_view>

/// A text of UTF-16 code units that owns its memory. Positions and counts are code units; a null
/// pointer as a text means an empty one. Not synchronised: one object belongs to one thread at a
/// time. std::bad_alloc and std::length_error are the only exceptions.
class CString
{
public:
    /// The names that generic code uses.
    using XCHAR = wchar_t;
    using PXSTR = wchar_t*;
    using PCXSTR = const wchar_t*;

    constexpr CString() noexcept = default;
    /// Copy or take over a text.
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    /// Copies the text.
    CString(LPCWSTR text) : m_text(View(text)) {}
    /// Takes the first `length` characters at `text`, which may include null characters.
    CString(LPCWSTR text, int length) : m_text(View(text, length)) {}
    /// Repeats a character; nothing for a count that is not positive.
    explicit CString(wchar_t character, int repeat = 1)
        : m_text(repeat > 0 ? static_cast<size_t>(repeat) : 0, character)
    {
    }
    /// Converts from the system's ANSI code page.
    MFC_API explicit CString(LPCSTR text);
    ~CString() = default;

    /// Copy or take over a text.
    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    /// Copies the text, which may lie in this one.
    CString& operator=(LPCWSTR text) { return Assign(View(text)); }
    CString& operator=(wchar_t character)
    {
        m_text.assign(1, character);
        return *this;
    }

    /// The number of code units.
    int GetLength() const noexcept { return static_cast<int>(m_text.size()); }
    /// True for a length of 0.
    bool IsEmpty() const noexcept { return m_text.empty(); }
    /// Leaves the text empty and without memory.
    void Empty() noexcept { m_text = std::wstring(); }
    /// Null-terminated; valid until the text is changed.
    LPCWSTR GetString() const noexcept { return m_text.c_str(); }
    operator LPCWSTR() const noexcept { return m_text.c_str(); }

    /// The character at `index`; null at the length and beyond.
    wchar_t GetAt(int index) const noexcept
    {
        return InRange(index) ? m_text[static_cast<size_t>(index)] : L'\0';
    }
    wchar_t operator[](int index) const noexcept { return GetAt(index); }
    /// An index outside of the text changes nothing.
    void SetAt(int index, wchar_t character)
    {
        if (InRange(index)) m_text[static_cast<size_t>(index)] = character;
    }
    /// Replace the text.
    void SetString(LPCWSTR text) { Assign(View(text)); }
    void SetString(LPCWSTR text, int length) { Assign(View(text, length)); }

    /// Append a text or a character.
    CString& operator+=(const CString& text)
    {
        m_text += text.m_text;
        return *this;
    }
    CString& operator+=(LPCWSTR text)
    {
        m_text += View(text);
        return *this;
    }
    CString& operator+=(wchar_t character)
    {
        m_text += character;
        return *this;
    }
    /// Append a text, its first `length` characters, or a character.
    void Append(LPCWSTR text) { m_text += View(text); }
    void Append(LPCWSTR text, int length) { m_text += View(text, length); }
    void AppendChar(wchar_t character) { m_text += character; }

    /// Formats with the C library's wide functions: %s and %c are wide, %S, %hs and %hc are narrow,
    /// and %I64d is known. The arguments may point into this text. A format that the library
    /// refuses gives an empty text.
    MFC_API void Format(LPCWSTR format, ...);
    MFC_API void FormatV(LPCWSTR format, va_list arguments);
    MFC_API void AppendFormat(LPCWSTR format, ...);
    MFC_API void AppendFormatV(LPCWSTR format, va_list arguments);
    /// Loads the string resource `id` of the module that has it (AfxFindResourceHandle). FALSE,
    /// with the text unchanged, when there is none.
    MFC_API BOOL LoadString(UINT id);

    /// Less than, equal to or greater than zero, by the values of the code units. The second form
    /// ignores case by the operating system's table, independent of the locale.
    MFC_API int Compare(LPCWSTR other) const noexcept;
    MFC_API int CompareNoCase(LPCWSTR other) const noexcept;

    /// Parts of the text. Positions and counts beyond it are cut to fit.
    MFC_API CString Mid(int first, int count) const;
    CString Mid(int first) const { return Mid(first, GetLength()); }
    CString Left(int count) const { return Mid(0, count); }
    MFC_API CString Right(int count) const;
    /// The leading characters that are all in `characters` (including), or all not in it
    /// (excluding).
    MFC_API CString SpanIncluding(LPCWSTR characters) const;
    MFC_API CString SpanExcluding(LPCWSTR characters) const;
    /// The next piece from `start` on between characters of `delimiters`; runs of delimiters count
    /// as one. `start` moves past the delimiter that ended the piece. It becomes -1, and the result
    /// is empty, when there are no more pieces.
    MFC_API CString Tokenize(LPCWSTR delimiters, int& start) const;

    /// The position of the first occurrence at or after `start`; -1 when there is none. An empty
    /// text is found at `start`.
    MFC_API int Find(wchar_t character, int start = 0) const noexcept;
    MFC_API int Find(LPCWSTR text, int start = 0) const noexcept;
    /// The position of the last occurrence; -1 when there is none.
    MFC_API int ReverseFind(wchar_t character) const noexcept;
    /// The position of the first of any of the characters; -1 when there is none.
    MFC_API int FindOneOf(LPCWSTR characters) const noexcept;

    /// Each returns the object itself, the number of changed places, or the new length. Without an
    /// argument, the platform's white space is trimmed.
    CString& Trim() { return TrimRight().TrimLeft(); }
    MFC_API CString& TrimLeft();
    MFC_API CString& TrimRight();
    CString& Trim(LPCWSTR characters) { return TrimRight(characters).TrimLeft(characters); }
    CString& Trim(wchar_t character) { return TrimRight(character).TrimLeft(character); }
    CString& TrimLeft(wchar_t character) { return TrimLeft(std::wstring{character}.c_str()); }
    CString& TrimRight(wchar_t character) { return TrimRight(std::wstring{character}.c_str()); }
    MFC_API CString& TrimLeft(LPCWSTR characters);
    MFC_API CString& TrimRight(LPCWSTR characters);
    MFC_API CString& MakeUpper();
    MFC_API CString& MakeLower();
    MFC_API CString& MakeReverse();
    MFC_API int Replace(wchar_t from, wchar_t to) noexcept;
    MFC_API int Replace(LPCWSTR from, LPCWSTR to);
    MFC_API int Remove(wchar_t character);
    MFC_API int Insert(int index, LPCWSTR text);
    int Insert(int index, wchar_t character)
    {
        return Insert(index, std::wstring{character}.c_str());
    }
    MFC_API int Delete(int index, int count = 1);

    /// Direct access: the buffer holds at least `minimumLength` characters and a null, and starts
    /// with the text. ReleaseBuffer must be called before any other member; with -1 it measures up
    /// to the first null.
    MFC_API LPWSTR GetBuffer(int minimumLength);
    /// The buffer of the text as it is.
    LPWSTR GetBuffer() { return m_text.data(); }
    /// The buffer of a text of exactly this length.
    MFC_API LPWSTR GetBufferSetLength(int length);
    /// Ends direct access and sets the length; -1 measures it.
    MFC_API void ReleaseBuffer(int newLength = -1);
    void ReleaseBufferSetLength(int newLength) { ReleaseBuffer(newLength < 0 ? 0 : newLength); }
    /// Cuts the text; a larger or negative length changes nothing.
    void Truncate(int length)
    {
        if (InRange(length)) m_text.resize(static_cast<size_t>(length));
    }
    /// Makes room for `length` characters without changing the text.
    void Preallocate(int length) { m_text.reserve(length > 0 ? static_cast<size_t>(length) : 0); }

    /// Join two texts, or a text and a character.
    friend CString operator+(const CString& a, const CString& b)
    {
        return Join(a.m_text, b.m_text);
    }
    friend CString operator+(const CString& a, LPCWSTR b) { return Join(a.m_text, View(b)); }
    friend CString operator+(LPCWSTR a, const CString& b) { return Join(View(a), b.m_text); }
    friend CString operator+(const CString& a, wchar_t b) { return Join(a.m_text, {&b, 1}); }
    friend CString operator+(wchar_t a, const CString& b) { return Join({&a, 1}, b.m_text); }

    /// Compare by the values of the code units.
    friend bool operator==(const CString& a, const CString& b) noexcept
    {
        return a.m_text == b.m_text;
    }
    friend bool operator==(const CString& a, LPCWSTR b) noexcept { return a.m_text == View(b); }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) noexcept
    {
        return a.Compare(b) <=> 0;
    }
    friend std::strong_ordering operator<=>(const CString& a, LPCWSTR b) noexcept
    {
        return a.Compare(b) <=> 0;
    }

private:
    static std::wstring_view View(LPCWSTR text) noexcept
    {
        return text ? std::wstring_view(text) : std::wstring_view();
    }
    static std::wstring_view View(LPCWSTR text, int length) noexcept
    {
        return text && length > 0 ? std::wstring_view(text, static_cast<size_t>(length))
                                  : std::wstring_view();
    }
    static CString Join(std::wstring_view a, std::wstring_view b)
    {
        CString result;
        result.m_text.reserve(a.size() + b.size());
        result.m_text.append(a).append(b);
        return result;
    }
    bool InRange(int index) const noexcept
    {
        return index >= 0 && static_cast<size_t>(index) < m_text.size();
    }
    // The source may lie inside this text.
    CString& Assign(std::wstring_view text)
    {
        m_text.assign(text);
        return *this;
    }

    std::wstring m_text;
};

/// The name that code for two character sets uses.
using CStringW = CString;
