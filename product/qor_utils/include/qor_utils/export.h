#pragma once

/// Marks what qor_utils exports.
#if defined(qor_utils_EXPORTS)
#define QOR_UTILS_API __declspec(dllexport)
#else
#define QOR_UTILS_API __declspec(dllimport)
#endif
