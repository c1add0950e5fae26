#include "ForwardDct.h"

#include <initializer_list>

#include <emmintrin.h>

namespace mjpg {

namespace {

struct Float4
{
    __m128 v;

    friend Float4 operator+(Float4 a, Float4 b) { return {_mm_add_ps(a.v, b.v)}; }
    friend Float4 operator-(Float4 a, Float4 b) { return {_mm_sub_ps(a.v, b.v)}; }
    friend Float4 operator*(Float4 a, float b) { return {_mm_mul_ps(a.v, _mm_set1_ps(b))}; }
};

// Eight-point transforms of four columns at once, with the outputs scaled by dctScale.
// Y. Arai, T. Agui, M. Nakajima, "A fast DCT-SQ scheme for images", Trans. IEICE E71 (1988).
void transform(Float4 (&x)[8])
{
    constexpr float cos4 = 0.707106781f; // cosines of multiples of pi/16, and their sum and difference
    constexpr float cos6 = 0.382683433f;
    constexpr float cos2MinusCos6 = 0.541196100f;
    constexpr float cos2PlusCos6 = 1.306562965f;

    const Float4 sum07 = x[0] + x[7], difference07 = x[0] - x[7];
    const Float4 sum16 = x[1] + x[6], difference16 = x[1] - x[6];
    const Float4 sum25 = x[2] + x[5], difference25 = x[2] - x[5];
    const Float4 sum34 = x[3] + x[4], difference34 = x[3] - x[4];

    const Float4 outer = sum07 + sum34, inner = sum16 + sum25;
    const Float4 outerTurn = sum07 - sum34;
    const Float4 turn = (sum16 - sum25 + outerTurn) * cos4;
    x[0] = outer + inner;
    x[4] = outer - inner;
    x[2] = outerTurn + turn;
    x[6] = outerTurn - turn;

    const Float4 low = difference34 + difference25;
    const Float4 middle = (difference25 + difference16) * cos4;
    const Float4 high = difference16 + difference07;
    const Float4 common = (low - high) * cos6;
    const Float4 lowTurn = low * cos2MinusCos6 + common;
    const Float4 highTurn = high * cos2PlusCos6 + common;
    const Float4 plus = difference07 + middle, minus = difference07 - middle;
    x[5] = minus + lowTurn;
    x[3] = minus - lowTurn;
    x[1] = plus + highTurn;
    x[7] = plus - highTurn;
}

void transpose(Float4* block)
{
    _MM_TRANSPOSE4_PS(block[0].v, block[1].v, block[2].v, block[3].v);
}

__m128i quantised(Float4 low, Float4 high, const float* factor)
{
    const __m128i lowWords = _mm_cvtps_epi32(_mm_mul_ps(low.v, _mm_load_ps(factor)));
    const __m128i highWords = _mm_cvtps_epi32(_mm_mul_ps(high.v, _mm_load_ps(factor + 4)));
    const __m128i limit = _mm_set1_epi16(1023);
    const __m128i words = _mm_min_epi16(_mm_packs_epi32(lowWords, highWords), limit);
    return _mm_max_epi16(words, _mm_set1_epi16(-1023));
}

} // namespace

Quantiser quantiserOf(const std::uint8_t (&steps)[64])
{
    constexpr double dctScale[8] = {1.0, 1.387039845, 1.306562965, 1.175875602,
                                    1.0, 0.785694958, 0.541196100, 0.275899379};
    Quantiser quantiser;
    for (int v = 0; v < 8; ++v)
        for (int u = 0; u < 8; ++u)
            quantiser.factor[u * 8 + v] =
                static_cast<float>(1.0 / (steps[v * 8 + u] * dctScale[u] * dctScale[v] * 8.0));
    return quantiser;
}

void forwardDct(const float* samples, const Quantiser& quantiser, std::int16_t* coefficients)
{
    Float4 left[8], right[8];
    for (int row = 0; row < 8; ++row) {
        left[row].v = _mm_load_ps(samples + 8 * row);
        right[row].v = _mm_load_ps(samples + 8 * row + 4);
    }
    transform(left);
    transform(right);

    // Turned about the diagonal, so that the rows are transformed as columns. It stays turned.
    for (Float4* block : {left, left + 4, right, right + 4})
        transpose(block);
    Float4 upper[8] = {left[0], left[1], left[2], left[3], right[0], right[1], right[2], right[3]};
    Float4 lower[8] = {left[4], left[5], left[6], left[7], right[4], right[5], right[6], right[7]};
    transform(upper);
    transform(lower);
    for (int column = 0; column < 8; ++column)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(coefficients + 8 * column),
                         quantised(upper[column], lower[column], quantiser.factor + 8 * column));
}

} // namespace mjpg
