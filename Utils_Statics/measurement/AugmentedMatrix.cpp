#include "measurement/AugmentedMatrix.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>

namespace utils_statics {

namespace {

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
