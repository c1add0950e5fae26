#include "qor_utils/PixelArrays.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace qor_utils {
namespace {

bool IsUsable(const unsigned int* pixels, int width, int height)
{
    if (!pixels || width <= 0 || height <= 0) return false;
    const auto most = std::numeric_limits<std::size_t>::max() / sizeof(unsigned int);
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) <= most;
}

__m128i LoadReversed(const unsigned int* pixels)
{
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
    return _mm_shuffle_epi32(four, _MM_SHUFFLE(0, 1, 2, 3));
}

void Store(unsigned int* pixels, __m128i four)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels), four);
}

// Swaps four pixels from each end until they meet; the plain form does the middle.
void ReverseRow(unsigned int* begin, unsigned int* end)
{
    while (end - begin >= 8) {
        end -= 4;
        const __m128i front = LoadReversed(begin);
        Store(begin, LoadReversed(end));
        Store(end, front);
        begin += 4;
    }
    std::reverse(begin, end);
}

} // namespace

void InvertImage(unsigned int* pixels, int width, int height)
{
    if (!IsUsable(pixels, width, height)) return;
    const auto rowSize = static_cast<std::size_t>(width);
    unsigned int* top = pixels;
    unsigned int* bottom = pixels + rowSize * (static_cast<std::size_t>(height) - 1);
    for (; top < bottom; top += rowSize, bottom -= rowSize)
        std::swap_ranges(top, top + rowSize, bottom);
}

void MirrorImage(unsigned int* pixels, int width, int height)
{
    if (!IsUsable(pixels, width, height)) return;
    const auto rowSize = static_cast<std::size_t>(width);
    for (int y = 0; y < height; ++y, pixels += rowSize)
        ReverseRow(pixels, pixels + rowSize);
}

} // namespace qor_utils
