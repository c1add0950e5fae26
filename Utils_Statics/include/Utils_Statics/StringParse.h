#pragma once

#include <Utils_Statics/export.h>

#include <afxcoll.h>
#include <atlstr.h>

/// Functions that split a text into words at one separator character. Words may be empty: with
/// commas, "a,,b," has four words, of which the second and the last are empty.
namespace StringParse {

/// Replaces the contents of `words` with the words of `text`, in order. An empty text has none.
UTILS_STATICS_API void GetAllWords(const CString& text, CStringArray& words, wchar_t sep);

/// The number of separators plus one. So an empty text counts as one word, although GetAllWords
/// gives none for it; the two differ on purpose.
UTILS_STATICS_API long GetWordCount(const CString& text, wchar_t sep);

/// The word at zero-based `pos` of GetAllWords; empty when there is no such word.
UTILS_STATICS_API CString GetWordByPos(const CString& text, int pos, wchar_t sep);

/// The text before the first separator, or the whole text when there is none.
UTILS_STATICS_API CString GetFirstWord(const CString& text, wchar_t sep);

} // namespace StringParse
