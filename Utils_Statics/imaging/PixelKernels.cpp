// SSE2, which every processor of the platform has, works on eight or four pixels at a time. The
// plain loops do the remaining pixels and define the result.
#include "imaging/PixelKernels.h"

#include <emmintrin.h>

#include <array>
#include <bit>

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

__m128i LoadFour(const std::uint32_t* pixels)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
}
void StoreFour(std::uint32_t* pixels, __m128i four)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels), four);
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

// GreyRow's rule for alphas: pixel & kept | set.
struct AlphaRule
{
    std::uint32_t kept;
    std::uint32_t set;

    explicit AlphaRule(int alpha)
        : kept(alpha == -1 ? 0xFF000000 : 0),
          set(alpha == -1 ? 0 : static_cast<std::uint32_t>(alpha & 0xFF) << 24)
    {
    }
    std::uint32_t Of(std::uint32_t pixel) const { return (pixel & kept) | set; }
};

constexpr std::uint32_t Grey(std::uint32_t pixel)
{
    const double sum = static_cast<int>(Green(pixel)) * 0.59 + static_cast<int>(Red(pixel)) * 0.3 +
                       static_cast<int>(Blue(pixel)) * 0.11;
    return Repeated(static_cast<std::uint32_t>(static_cast<int>(sum)));
}

// The greys of colours that are grey already. Rounding makes some of them one less.
constexpr std::array<std::uint32_t, 256> MakeGreysOfGreys()
{
    std::array<std::uint32_t, 256> greys = {};
    for (std::uint32_t i = 0; i < greys.size(); ++i)
        greys[i] = Grey(Repeated(i));
    return greys;
}
constexpr std::array<std::uint32_t, 256> greysOfGreys = MakeGreysOfGreys();

bool AreGrey(__m128i first, __m128i second)
{
    // Compares in each pixel blue with green and green with red.
    const __m128i differences = _mm_or_si128(_mm_xor_si128(first, _mm_srli_epi32(first, 8)),
                                             _mm_xor_si128(second, _mm_srli_epi32(second, 8)));
    const __m128i counted = _mm_and_si128(differences, _mm_set1_epi32(0xFFFF));
    return _mm_movemask_epi8(_mm_cmpeq_epi32(counted, _mm_setzero_si128())) == 0xFFFF;
}

// A hundred times the greys of four pixels.
__m128i WeightedFour(__m128i pixels)
{
    const __m128i redAndBlue = _mm_and_si128(pixels, _mm_set1_epi32(0x00FF00FF));
    const __m128i green = _mm_and_si128(_mm_srli_epi32(pixels, 8), _mm_set1_epi32(0xFF));
    return _mm_add_epi32(_mm_madd_epi16(redAndBlue, _mm_set1_epi32(30 << 16 | 11)),
                         _mm_madd_epi16(green, _mm_set1_epi32(59)));
}

void GreyEight(std::uint32_t* pixels, AlphaRule alpha)
{
    const __m128i first = LoadFour(pixels);
    const __m128i second = LoadFour(pixels + 4);
    if (AreGrey(first, second)) {
        for (int i = 0; i < 8; ++i)
            pixels[i] = alpha.Of(pixels[i]) | greysOfGreys[Blue(pixels[i])];
        return;
    }
    const __m128i sum = _mm_packs_epi32(WeightedFour(first), WeightedFour(second));
    // sum / 100: exact up to 25500, the largest sum.
    const __m128i grey = _mm_srli_epi16(_mm_mulhi_epu16(sum, _mm_set1_epi16(5243)), 3);
    // Where the sum is a multiple of 100, floating-point rounding may make the grey one less.
    const __m128i hundredfold = _mm_mullo_epi16(grey, _mm_set1_epi16(100));
    const __m128i isOpen = _mm_cmpeq_epi16(sum, hundredfold);
    const auto open =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(isOpen, _mm_setzero_si128())));

    const __m128i greyTwice = _mm_or_si128(grey, _mm_slli_epi16(grey, 8));
    const __m128i kept = _mm_set1_epi32(static_cast<int>(alpha.kept));
    const __m128i set = _mm_set1_epi32(static_cast<int>(alpha.set));
    const auto finished = [&](__m128i before, __m128i after) {
        return _mm_or_si128(_mm_or_si128(_mm_and_si128(before, kept), set), after);
    };
    StoreFour(pixels, finished(first, _mm_unpacklo_epi16(greyTwice, grey)));
    StoreFour(pixels + 4, finished(second, _mm_unpackhi_epi16(greyTwice, grey)));
    if (open == 0) return;
    std::uint32_t before[8];
    StoreFour(before, first);
    StoreFour(before + 4, second);
    for (unsigned rest = open; rest != 0; rest &= rest - 1) {
        const int i = std::countr_zero(rest);
        pixels[i] = alpha.Of(before[i]) | Grey(before[i]);
    }
}

// Whole numbers suffice: the single-precision constant is so much greater than 1 / 255 that
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

__m128i BlendedFour(__m128i pixels, __m128i backgrounds, std::uint8_t alpha)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i weight = _mm_set1_epi16(alpha);
    const __m128i rest = _mm_set1_epi16(static_cast<short>(255 - alpha));
    const __m128i low = BlendedTwo(_mm_unpacklo_epi8(pixels, zero),
                                   _mm_unpacklo_epi8(backgrounds, zero), weight, rest);
    const __m128i high = BlendedTwo(_mm_unpackhi_epi8(pixels, zero),
                                    _mm_unpackhi_epi8(backgrounds, zero), weight, rest);
    const __m128i colours =
        _mm_and_si128(_mm_packus_epi16(low, high), _mm_set1_epi32(static_cast<int>(colourBits)));
    return _mm_or_si128(colours, _mm_set1_epi32(static_cast<int>(alpha) << 24));
}

} // namespace

void GreyRow(std::span<std::uint32_t> row, int alpha)
{
    const AlphaRule rule(alpha);
    const std::size_t whole = row.size() / 8 * 8;
    for (std::size_t i = 0; i < whole; i += 8)
        GreyEight(&row[i], rule);
    for (std::size_t i = whole; i < row.size(); ++i)
        row[i] = rule.Of(row[i]) | Grey(row[i]);
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
    const __m128i backgrounds = _mm_set1_epi32(static_cast<int>(background));
    const std::size_t whole = row.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4)
        StoreFour(&row[i], BlendedFour(LoadFour(&row[i]), backgrounds, alpha));
    for (std::size_t i = whole; i < row.size(); ++i)
        row[i] = Blended(row[i], background, alpha);
}

void BlendRow(std::span<std::uint32_t> row, std::uint8_t alpha, const std::uint32_t* background)
{
    const std::size_t whole = row.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4)
        StoreFour(&row[i], BlendedFour(LoadFour(&row[i]), LoadFour(background + i), alpha));
    for (std::size_t i = whole; i < row.size(); ++i)
        row[i] = Blended(row[i], background[i], alpha);
}

void MaskRow(std::span<std::uint32_t> mask, const std::uint32_t* source)
{
    for (std::size_t i = 0; i < mask.size(); ++i)
        mask[i] = (mask[i] & 0x00FF0000) << 8 | (source[i] & colourBits);
}

} // namespace utils_statics
