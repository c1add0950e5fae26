#pragma once

/// Marks the names that clients of Utils_Statics.dll may use: exported while the library itself is
/// built, imported elsewhere.
#ifdef Utils_Statics_EXPORTS
#define UTILS_STATICS_API __declspec(dllexport)
#else
#define UTILS_STATICS_API __declspec(dllimport)
#endif
