#pragma once

#include <Utils_Statics/export.h>

#include <atlstr.h>

/// The user-interface text for `key` (a narrow identifier such as "product.description.notset"),
/// formatted printf-style with the further arguments. A key that the string table does not know
/// gives the key itself (see ZelTString::get). A null key gives an empty text, and so does a text
/// that cannot be formatted.
///
/// Conversions are read as the platform's wide functions read them. %s and %c are wide; %S, %hs, %C
/// and %hc are narrow. %d %i %u %o %x %X take int, with I64, ll or j a 64-bit integer, with I, z or
/// t an integer of a pointer's size. %e %f %g %a take double, %p takes a pointer. A null text
/// prints as "(null)".
///
/// A variadic call carries no types. The text in the table's base language was written together
/// with the call, so its conversions are the contract for the arguments. A translation is used only
/// if its conversions take the same kinds of argument in the same order; it may leave out
/// conversions at the end. The kinds are: 32-bit integer (characters too), 64-bit integer, real
/// number, wide text, narrow text, pointer. Unusable in any language are %n, '*' as width or
/// precision, positional arguments (%1$s), long double, unknown or unfinished conversions, and
/// widths or precisions above 1024. No argument is touched before the whole text has been checked.
///
/// A translation that breaks the contract is logged, and the base text is used instead. When that
/// is unusable as well, this is logged and the result is empty. The library cannot check that the
/// call itself keeps to the base text: that is the caller's duty, as with printf.
///
/// User-interface thread only.
UTILS_STATICS_API CString GetStr(const char* key, ...);

/// The translation of a wide text, in the current language; empty when there is none.
UTILS_STATICS_API CString TranslateStr(const wchar_t* text);
