#include "measurement/MatrixKernels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>

namespace utils_statics {

namespace {

// The number of rows whose sums fit the vector registers together with their operands. 32-bit code
// has 8 registers, 64-bit code 16.
constexpr std::size_t tileRows = sizeof(void*) == 8 ? 4 : 2;

// The doubles of the left operand processed at a time, so that they stay in the first-level cache.
constexpr std::size_t chunkSize = 1536;

// Says whether a sum starts from zero or from the value in out. The latter allows a long sum in
// chunks without changing the order of its terms.
enum class Start
{
    zero,
    out
};

// Computes Rows rows of one pair of columns, or of two pairs; the second pair begins at column
// second.
template <Start start, std::size_t Rows, std::size_t Pairs>
inline void SumTile(Operand a, const double* b, std::size_t bStride, std::size_t count, double* out,
                    std::size_t outStride, std::size_t second = 2) noexcept
{
    __m128d sum[Rows][Pairs];
    for (std::size_t r = 0; r < Rows; ++r)
        for (std::size_t p = 0; p < Pairs; ++p)
            sum[r][p] = start == Start::zero ? _mm_setzero_pd()
                                             : _mm_loadu_pd(out + r * outStride + p * second);
    for (std::size_t k = 0; k < count; ++k) {
        __m128d right[Pairs];
        for (std::size_t p = 0; p < Pairs; ++p)
            right[p] = _mm_loadu_pd(b + k * bStride + p * second);
        for (std::size_t r = 0; r < Rows; ++r) {
            const __m128d left = _mm_set1_pd(a.data[r * a.stride + k * a.step]);
            for (std::size_t p = 0; p < Pairs; ++p)
                sum[r][p] = _mm_add_pd(sum[r][p], _mm_mul_pd(left, right[p]));
        }
    }
    for (std::size_t r = 0; r < Rows; ++r)
        for (std::size_t p = 0; p < Pairs; ++p)
            _mm_storeu_pd(out + r * outStride + p * second, sum[r][p]);
}

template <Start start, std::size_t Rows>
inline void SumColumn(Operand a, const double* b, std::size_t bStride, std::size_t count,
                      double* out, std::size_t outStride) noexcept
{
    double sum[Rows];
    for (std::size_t r = 0; r < Rows; ++r)
        sum[r] = start == Start::zero ? 0.0 : out[r * outStride];
    for (std::size_t k = 0; k < count; ++k)
        for (std::size_t r = 0; r < Rows; ++r)
            sum[r] += a.data[r * a.stride + k * a.step] * b[k * bStride];
    for (std::size_t r = 0; r < Rows; ++r)
        out[r * outStride] = sum[r];
}

// Computes the columns from j on, which are left over by the tiles of four.
template <Start start, std::size_t Rows>
inline void SumLastColumns(Operand a, const double* b, std::size_t bStride, std::size_t j,
                           std::size_t cols, std::size_t count, double* out,
                           std::size_t outStride) noexcept
{
    // A sum that starts from zero may be computed twice, so an odd column can pair with its
    // neighbour.
    constexpr bool mayOverlap = start == Start::zero;
    if (mayOverlap && cols - j == 3)
        return SumTile<start, Rows, 2>(a, b + j, bStride, count, out + j, outStride, 1);
    if (cols - j >= 2) {
        SumTile<start, Rows, 1>(a, b + j, bStride, count, out + j, outStride);
        j += 2;
    }
    if (j == cols) return;
    if (mayOverlap && cols >= 2)
        return SumTile<start, Rows, 1>(a, b + cols - 2, bStride, count, out + cols - 2, outStride);
    SumColumn<start, Rows>(a, b + j, bStride, count, out + j, outStride);
}

// Computes Rows rows, in all columns from first on.
template <Start start, std::size_t Rows>
void SumRows(Operand a, const double* b, std::size_t bStride, std::size_t first, std::size_t cols,
             std::size_t count, double* out, std::size_t outStride) noexcept
{
    std::size_t j = first;
    if constexpr (Rows == 1) // a single row has too few sums to keep the adder busy
        for (; j + 8 <= cols; j += 8)
            SumTile<start, Rows, 4>(a, b + j, bStride, count, out + j, outStride);
    for (; j + 4 <= cols; j += 4)
        SumTile<start, Rows, 2>(a, b + j, bStride, count, out + j, outStride);
    SumLastColumns<start, Rows>(a, b, bStride, j, cols, count, out, outStride);
}

// Computes all rows; with upper, only the columns from each block's diagonal on.
template <Start start>
void SumAll(Operand a, const double* b, std::size_t bStride, std::size_t rows, std::size_t cols,
            std::size_t count, double* out, std::size_t outStride, bool upper) noexcept
{
    std::size_t i = 0;
    const auto block = [&]<std::size_t Rows>() {
        for (; i + Rows <= rows; i += Rows)
            SumRows<start, Rows>({a.data + i * a.stride, a.stride, a.step}, b, bStride,
                                 upper ? i : 0, cols, count, out + i * outStride, outStride);
    };
    block.template operator()<tileRows>();
    if constexpr (tileRows > 3) block.template operator()<3>();
    if constexpr (tileRows > 2) block.template operator()<2>();
    block.template operator()<1>();
}

} // namespace

bool IsPossible(int rows, int cols) noexcept
{
    if (rows < 1 || cols < 1) return false;
    return static_cast<std::size_t>(rows) <=
           PTRDIFF_MAX / sizeof(double) / static_cast<std::size_t>(cols);
}

void Product(Operand a, const double* b, std::size_t bStride, std::size_t rows, std::size_t cols,
             std::size_t count, double* out, std::size_t outStride) noexcept
{
    SumAll<Start::zero>(a, b, bStride, rows, cols, count, out, outStride, false);
}

void Product3(const double* A, const double* B, double* out) noexcept
{
    SumTile<Start::zero, 2, 2>({A, 3, 1}, B, 3, 3, out, 3, 1);
    SumTile<Start::zero, 1, 2>({A + 6, 3, 1}, B, 3, 3, out + 6, 3, 1);
}

void TransposedTimesSelf(const double* A, std::size_t m, std::size_t n, double* out,
                         std::size_t outStride) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        std::fill_n(out + i * outStride, n, 0.0);
    const std::size_t chunk = std::max<std::size_t>(1, chunkSize / n);
    for (std::size_t k = 0; k < m; k += chunk) {
        const double* rows = A + k * n;
        SumAll<Start::out>({rows, 1, n}, rows, n, n, n, std::min(chunk, m - k), out, outStride,
                           true);
    }
    // Both halves have the same sums of the same products.
    for (std::size_t i = 1; i < n; ++i)
        for (std::size_t j = 0; j < i; ++j)
            out[i * outStride + j] = out[j * outStride + i];
}

} // namespace utils_statics
