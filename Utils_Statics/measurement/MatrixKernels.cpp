#include "measurement/MatrixKernels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
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

// Computes all rows from i on, Rows at a time and those left over in smaller blocks. With upper,
// only the columns from each block's diagonal on.
template <Start start, std::size_t Rows = tileRows>
void SumAll(Operand a, const double* b, std::size_t bStride, std::size_t rows, std::size_t cols,
            std::size_t count, double* out, std::size_t outStride, bool upper,
            std::size_t i = 0) noexcept
{
    for (; i + Rows <= rows; i += Rows)
        SumRows<start, Rows>({a.data + i * a.stride, a.stride, a.step}, b, bStride, upper ? i : 0,
                             cols, count, out + i * outStride, outStride);
    if constexpr (Rows > 1)
        SumAll<start, Rows - 1>(a, b, bStride, rows, cols, count, out, outStride, upper, i);
}

inline void SubtractMultiple(double* row, double factor, const double* pivotRow, std::size_t begin,
                             std::size_t end) noexcept
{
    const __m128d f = _mm_set1_pd(factor);
    for (std::size_t c = begin; c < end; c += 2)
        _mm_store_pd(row + c,
                     _mm_sub_pd(_mm_load_pd(row + c), _mm_mul_pd(f, _mm_load_pd(pivotRow + c))));
}

// Treats two rows at a time, so that the pivot row is loaded once for both.
inline void SubtractMultiples(double* row1, double factor1, double* row2, double factor2,
                              const double* pivotRow, std::size_t begin, std::size_t end) noexcept
{
    const __m128d f1 = _mm_set1_pd(factor1);
    const __m128d f2 = _mm_set1_pd(factor2);
    for (std::size_t c = begin; c < end; c += 2) {
        const __m128d pivot = _mm_load_pd(pivotRow + c);
        _mm_store_pd(row1 + c, _mm_sub_pd(_mm_load_pd(row1 + c), _mm_mul_pd(f1, pivot)));
        _mm_store_pd(row2 + c, _mm_sub_pd(_mm_load_pd(row2 + c), _mm_mul_pd(f2, pivot)));
    }
}

constexpr std::size_t EvenBelow(std::size_t c) noexcept
{
    return c / 2 * 2;
}

constexpr std::size_t EvenAbove(std::size_t c) noexcept
{
    return (c + 1) / 2 * 2;
}

} // namespace

bool IsPossible(int rows, int cols) noexcept
{
    if (rows < 1 || cols < 1) return false;
    return static_cast<std::size_t>(rows) <=
           PTRDIFF_MAX / sizeof(double) / static_cast<std::size_t>(cols);
}

void Product(const Operand& a, const double* b, std::size_t bStride, std::size_t rows,
             std::size_t cols, std::size_t count, double* out, std::size_t outStride) noexcept
{
    if (count == 0) { // there need be no arrays to sum over
        for (std::size_t i = 0; i < rows; ++i)
            std::fill_n(out + i * outStride, cols, 0.0);
        return;
    }
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

AugmentedMatrix::AugmentedMatrix(std::size_t n, std::size_t furtherColumns) noexcept
    : m_n(n), m_width(EvenAbove(n + furtherColumns)), m_data(n, m_width)
{
}

// The columns that a step processes: those before end1 and those from begin2 up to end2, all in
// whole pairs.
struct AugmentedMatrix::Columns
{
    std::size_t end1, begin2, end2;
};

void AugmentedMatrix::Eliminate() noexcept
{
    for (std::size_t k = 0; k < m_n; ++k)
        ClearBelow(k);
    for (std::size_t k = m_n; k-- > 1;)
        ClearAbove(k);
}

void AugmentedMatrix::ClearBelow(std::size_t pivot) noexcept
{
    const double* pivotRow = Row(pivot);
    const double divisor = pivotRow[pivot];
    std::size_t i = pivot + 1;
    for (; i + 2 <= m_n; i += 2) {
        const double factor1 = Row(i)[pivot] / divisor;
        const double factor2 = Row(i + 1)[pivot] / divisor;
        SubtractFromPair(i, factor1, factor2, pivotRow, ColumnsBelow(pivot, factor1, factor2));
    }
    if (i == m_n) return;
    const double factor = Row(i)[pivot] / divisor;
    SubtractFrom(i, factor, pivotRow, ColumnsBelow(pivot, factor, factor));
}

void AugmentedMatrix::ClearAbove(std::size_t pivot) noexcept
{
    const double* pivotRow = Row(pivot);
    const double divisor = pivotRow[pivot];
    // The square part from the pivot's column on is not read again.
    const std::size_t end = EvenAbove(pivot);
    const Columns columns{end, std::max(end, EvenBelow(m_n)), m_width};
    std::size_t i = 0;
    for (; i + 2 <= pivot; i += 2)
        SubtractFromPair(i, Row(i)[pivot] / divisor, Row(i + 1)[pivot] / divisor, pivotRow,
                         columns);
    if (i < pivot) SubtractFrom(i, Row(i)[pivot] / divisor, pivotRow, columns);
}

// The columns left of the pivot take part too, because rounding leaves residues there that the
// backward pass carries to the result. The pivot row's part of the identity is zero right of its
// diagonal, and a multiple of zero changes nothing. Only a factor that is infinite or not a number,
// here or in an earlier step, makes something else of the zeros.
AugmentedMatrix::Columns AugmentedMatrix::ColumnsBelow(std::size_t pivot, double factor1,
                                                       double factor2) noexcept
{
    m_isIdentityTriangular =
        m_isIdentityTriangular && std::isfinite(factor1) && std::isfinite(factor2);
    const std::size_t end =
        m_isIdentityTriangular ? std::min(m_width, EvenAbove(m_n + 2 + pivot)) : m_width;
    return {end, end, end};
}

void AugmentedMatrix::SubtractFromPair(std::size_t i, double factor1, double factor2,
                                       const double* pivotRow, Columns columns) noexcept
{
    SubtractMultiples(Row(i), factor1, Row(i + 1), factor2, pivotRow, 0, columns.end1);
    SubtractMultiples(Row(i), factor1, Row(i + 1), factor2, pivotRow, columns.begin2, columns.end2);
}

void AugmentedMatrix::SubtractFrom(std::size_t i, double factor, const double* pivotRow,
                                   Columns columns) noexcept
{
    SubtractMultiple(Row(i), factor, pivotRow, 0, columns.end1);
    SubtractMultiple(Row(i), factor, pivotRow, columns.begin2, columns.end2);
}

} // namespace utils_statics
