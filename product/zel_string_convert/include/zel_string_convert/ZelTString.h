#pragma once

#include "zel_string_convert/export.h"

/// The application's string table: texts by key in a base language, the one they were written in,
/// and in the languages they were translated to. It is kept in XLIFF 1.2 files
/// (docs/formats/string-table.md).
///
/// Keys are compared exactly, language tags ignoring case. All members may be called on any thread.
///
/// Texts that are handed out keep their address and content until the library is unloaded, whatever
/// is loaded or chosen later, so a caller may keep the pointer. Equal texts are stored once, so
/// loading a table again takes no more memory.
class ZEL_STRING_CONVERT_API ZelTString
{
public:
    /// The text of a key in the current language or, when that has none or translated is false, in
    /// the base language. Never null. An unknown key gives the key itself, so that its absence
    /// shows on the screen. It gives an empty text when the key is null, has a percent sign (it
    /// would be read as a format), is longer than 256 bytes, or comes after the first 4096 unknown
    /// keys, which are kept too.
    static const wchar_t* get(const char* key, bool translated);

    /// The current language's text for the given text of the base language, or the base language's
    /// own when there is no translation. Of several keys with the same base text, the first in the
    /// files counts. Null when the text is null or is not among the base language's texts.
    static const wchar_t* translate(const wchar_t* text);
};
