#pragma once

#include "qor_utils/export.h"

// Operations in place on arrays of 32-bit pixels, row by row without padding. Nothing happens when
// the array is null, or when a size is not positive or more than memory can hold.
namespace qor_utils {

/// Reverses the order of the rows: turns the image upside down.
QOR_UTILS_API void InvertImage(unsigned int* pixels, int width, int height);

/// Reverses each row: swaps left and right.
QOR_UTILS_API void MirrorImage(unsigned int* pixels, int width, int height);

} // namespace qor_utils
