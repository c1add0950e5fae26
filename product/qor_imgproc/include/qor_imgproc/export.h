#pragma once

/// Marks what qor_imgproc exports.
#ifdef qor_imgproc_EXPORTS
#define QOR_IMGPROC_API __declspec(dllexport)
#else
#define QOR_IMGPROC_API __declspec(dllimport)
#endif
