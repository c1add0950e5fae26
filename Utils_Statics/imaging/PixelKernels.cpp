// SSE2 on eight or four pixels at a time, which every processor of the platform has; the plain
// loops take what is left over, and say what the result is.
#include "imaging/PixelKernels.h"

#include <emmintrin.h>

namespace utils_statics {

namespace {

constexpr std::uint32_t colourBits = 0x00FFFFFF;

constexpr std::uint32_t Red(std::uint32_t pixel)
{
    return pixel >> 16 & 0xFF;
}
constexpr std::uint32_t Green(std::uint32_t pixel)
{
    return pixel >> 8 & 0xFF;
}
constexpr std::uint32_t Blue(std::uint32_t pixel)
{
    return pixel & 0xFF;
}

constexpr std::uint32_t Repeated(std::uint32_t grey)
{
    return grey | grey << 8 | grey << 16;
}

// A hundred times the grey of a pixel, in whole numbers.
constexpr std::uint32_t Weighted(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
{
    return green * 59 + red * 30 + blue * 11;
}

// How GreyRow makes alphas: pixel & kept | set.
struct AlphaRule
{
    std::uint32_t kept;
    std::uint32_t set;

    explicit AlphaRule(int alpha)
        : kept(alpha == -1 ? 0xFF000000 : 0),
          set(alpha == -1 ? 0 : static_cast<std::uint32_t>(alpha & 0xFF) << 24)
    {
    }
};

// The number is a constant, so that the compiler works on several pixels at a time.
template <int Count>
void GreyAll(std::uint32_t* pixels, AlphaRule alpha)
{
    for (int i = 0; i < Count; ++i) {
        const std::uint32_t pixel = pixels[i];
        const double sum = static_cast<int>(Green(pixel)) * 0.59 +
                           static_cast<int>(Red(pixel)) * 0.3 +
                           static_cast<int>(Blue(pixel)) * 0.11;
        const auto grey = static_cast<std::uint32_t>(static_cast<int>(sum));
        pixels[i] = (pixel & alpha.kept) | alpha.set | Repeated(grey);
    }
}

// A hundred times the greys of four pixels.
__m128i WeightedFour(__m128i pixels)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i weights = _mm_set_epi16(0, 30, 59, 11, 0, 30, 59, 11);
    // Of each pixel two numbers: blue and green, red and nothing.
    const __m128 low = _mm_castsi128_ps(_mm_madd_epi16(_mm_unpacklo_epi8(pixels, zero), weights));
    const __m128 high = _mm_castsi128_ps(_mm_madd_epi16(_mm_unpackhi_epi8(pixels, zero), weights));
    return _mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0))),
                         _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1))));
}

// Eight pixels. False, and nothing is done, where the weighted sum of one is a multiple of 100: the
// rounding of the real numbers decides there whether the grey is one less.
bool GreyEight(std::uint32_t* pixels, AlphaRule alpha)
{
    auto* const place = reinterpret_cast<__m128i*>(pixels);
    const __m128i first = _mm_loadu_si128(place);
    const __m128i second = _mm_loadu_si128(place + 1);
    const __m128i sum = _mm_packs_epi32(WeightedFour(first), WeightedFour(second));
    // sum / 100: exact up to 25500, the largest sum.
    const __m128i grey = _mm_srli_epi16(_mm_mulhi_epu16(sum, _mm_set1_epi16(5243)), 3);
    const __m128i hundredfold = _mm_mullo_epi16(grey, _mm_set1_epi16(100));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(sum, hundredfold))) return false;

    const __m128i low = _mm_or_si128(grey, _mm_slli_epi16(grey, 8));
    const __m128i high = _mm_or_si128(grey, _mm_set1_epi16(static_cast<short>(alpha.set >> 16)));
    const __m128i kept = _mm_set1_epi32(static_cast<int>(alpha.kept));
    const auto finished = [&](__m128i before, __m128i after) {
        return alpha.kept ? _mm_or_si128(_mm_and_si128(before, kept), after) : after;
    };
    _mm_storeu_si128(place, finished(first, _mm_unpacklo_epi16(low, high)));
    _mm_storeu_si128(place + 1, finished(second, _mm_unpackhi_epi16(low, high)));
    return true;
}

// In whole numbers, because the constant of single precision is so much greater than 1 / 255 that
// rounding never changes the result.
constexpr std::uint32_t KeyedGrey(std::uint32_t weighted, std::uint32_t alpha)
{
    return weighted * alpha / 25500;
}

std::uint32_t Blended(std::uint32_t pixel, std::uint32_t background, std::uint32_t alpha)
{
    std::uint32_t result = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t sum =
            (pixel >> shift & 0xFF) * alpha + (background >> shift & 0xFF) * (255 - alpha);
        result |= sum / 255 << shift;
    }
    return result;
}

// Two pixels, as eight 16-bit numbers.
__m128i BlendedTwo(__m128i pixels, __m128i backgrounds, __m128i alpha, __m128i rest)
{
    const __m128i sum =
        _mm_add_epi16(_mm_mullo_epi16(pixels, alpha), _mm_mullo_epi16(backgrounds, rest));
    // sum / 255: exact for all numbers of 16 bits.
    return _mm_srli_epi16(_mm_mulhi_epu16(sum, _mm_set1_epi16(static_cast<short>(0x8081))), 7);
}

void BlendFour(std::uint32_t* pixels, __m128i background, std::uint8_t alpha)
{
    auto* const place = reinterpret_cast<__m128i*>(pixels);
    const __m128i zero = _mm_setzero_si128();
    const __m128i weight = _mm_set1_epi16(alpha);
    const __m128i rest = _mm_set1_epi16(static_cast<short>(255 - alpha));
    const __m128i before = _mm_loadu_si128(place);
    const __m128i low = BlendedTwo(_mm_unpacklo_epi8(before, zero),
                                   _mm_unpacklo_epi8(background, zero), weight, rest);
    const __m128i high = BlendedTwo(_mm_unpackhi_epi8(before, zero),
                                    _mm_unpackhi_epi8(background, zero), weight, rest);
    const __m128i colours =
        _mm_and_si128(_mm_packus_epi16(low, high), _mm_set1_epi32(static_cast<int>(colourBits)));
    _mm_storeu_si128(place, _mm_or_si128(colours, _mm_set1_epi32(static_cast<int>(alpha) << 24)));
}

} // namespace

void GreyRow(std::span<std::uint32_t> row, int alpha)
{
    const AlphaRule rule(alpha);
    const std::size_t whole = row.size() / 8 * 8;
    for (std::size_t i = 0; i < whole; i += 8)
        if (!GreyEight(&row[i], rule)) GreyAll<8>(&row[i], rule);
    for (std::size_t i = whole; i < row.size(); ++i)
        GreyAll<1>(&row[i], rule);
}

void GreyKeyedRow(std::span<std::uint32_t> row, const GreyWithKey& grey)
{
    const std::uint32_t alphaBits = std::uint32_t{grey.alpha} << 24;
    const std::uint32_t keyed = alphaBits | Repeated(grey.alpha);
    for (std::uint32_t& pixel : row) {
        const std::uint32_t sum = Weighted(Red(pixel), Green(pixel), Blue(pixel));
        const std::uint32_t other = alphaBits | Repeated(KeyedGrey(sum, grey.alpha));
        pixel = (pixel & colourBits) == grey.key ? keyed : other;
    }
}

void GreyKeyedRow24(std::span<std::uint8_t> row, const GreyWithKey& grey)
{
    for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
        std::uint8_t* const pixel = &row[i];
        const bool isKey =
            pixel[0] == Blue(grey.key) && pixel[1] == Green(grey.key) && pixel[2] == Red(grey.key);
        const std::uint32_t other = KeyedGrey(Weighted(pixel[2], pixel[1], pixel[0]), grey.alpha);
        pixel[0] = pixel[1] = pixel[2] = isKey ? grey.alpha : static_cast<std::uint8_t>(other);
    }
}

void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, std::uint32_t background)
{
    const std::size_t whole = row.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4)
        BlendFour(&row[i], _mm_set1_epi32(static_cast<int>(background)), alpha);
    for (std::size_t i = whole; i < row.size(); ++i)
        row[i] = Blended(row[i], background, alpha);
}

void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, const std::uint32_t* background)
{
    const std::size_t whole = row.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4)
        BlendFour(&row[i], _mm_loadu_si128(reinterpret_cast<const __m128i*>(background + i)),
                  alpha);
    for (std::size_t i = whole; i < row.size(); ++i)
        row[i] = Blended(row[i], background[i], alpha);
}

void MaskRow(std::span<std::uint32_t> mask, const std::uint32_t* source)
{
    for (std::size_t i = 0; i < mask.size(); ++i)
        mask[i] = (mask[i] & 0x00FF0000) << 8 | (source[i] & colourBits);
}

} // namespace utils_statics
