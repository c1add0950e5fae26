#pragma once

#include "zel_string_convert/export.h"

/// The application's string table: texts by key in a base language, the one they were written in,
/// and in the languages they were translated to. It is kept in XLIFF 1.2 files
/// (docs/formats/string-table.md).
///
/// Keys are compared exactly, language tags ignoring case. All members may be called on any thread.
///
/// Texts that are handed out stay where they are and as they are until the library is unloaded,
/// whatever is loaded or chosen later: a caller may keep the pointer. Equal texts are kept once, so
/// loading a table again takes no more memory.
class ZEL_STRING_CONVERT_API ZelTString
{
public:
    /// The text of a key, in the current language or, where that has none or translated is false,
    /// in the base language. Never null. An unknown key gives the key itself, so that its absence
    /// shows on the screen (up to 256 characters and for the first 4096 such keys, because these
    /// too are kept; then, for null, and for a key with a percent sign, which would be read as a
    /// format, an empty text).
    static const wchar_t* get(const char* key, bool translated);

    /// The text in the current language of which the base language's is the one given; that one
    /// itself while it has not been translated. Of several keys with the same base text, the first
    /// in the files counts. Null when the text is null or the base language's texts do not include
    /// it.
    static const wchar_t* translate(const wchar_t* text);
};
