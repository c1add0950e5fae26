#pragma once

/// Marks what zel_string_convert exports.
#if defined(zel_string_convert_EXPORTS)
#define ZEL_STRING_CONVERT_API __declspec(dllexport)
#else
#define ZEL_STRING_CONVERT_API __declspec(dllimport)
#endif
