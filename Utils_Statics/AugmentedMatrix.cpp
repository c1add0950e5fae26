#include "AugmentedMatrix.h"

#include <emmintrin.h>

namespace {

inline void subtractMultiple(double* row, double factor, const double* pivotRow, std::size_t width) noexcept
{
    const __m128d f = _mm_set1_pd(factor);
    for (std::size_t c = 0; c < width; c += 2)
        _mm_store_pd(row + c, _mm_sub_pd(_mm_load_pd(row + c), _mm_mul_pd(f, _mm_load_pd(pivotRow + c))));
}

// Two rows at a time: the pivot row is loaded once for both.
inline void subtractMultiples(double* row1, double factor1, double* row2, double factor2, const double* pivotRow,
                              std::size_t width) noexcept
{
    const __m128d f1 = _mm_set1_pd(factor1);
    const __m128d f2 = _mm_set1_pd(factor2);
    for (std::size_t c = 0; c < width; c += 2) {
        const __m128d pivot = _mm_load_pd(pivotRow + c);
        _mm_store_pd(row1 + c, _mm_sub_pd(_mm_load_pd(row1 + c), _mm_mul_pd(f1, pivot)));
        _mm_store_pd(row2 + c, _mm_sub_pd(_mm_load_pd(row2 + c), _mm_mul_pd(f2, pivot)));
    }
}

} // namespace

AugmentedMatrix::AugmentedMatrix(std::size_t n, std::size_t furtherColumns) noexcept
    : m_n(n), m_width((n + furtherColumns + 1) / 2 * 2), m_data(n, m_width)
{
}

void AugmentedMatrix::eliminate() noexcept
{
    for (std::size_t k = 0; k < m_n; ++k)
        subtractPivotRow(k, k + 1, m_n);
    for (std::size_t k = m_n; k-- > 1;)
        subtractPivotRow(k, 0, k);
}

// From each row in [first, end), which does not contain the pivot: its multiple of the pivot row. All columns take
// part, those that were cleared before too: rounding leaves residues there, and they reach the result.
void AugmentedMatrix::subtractPivotRow(std::size_t pivot, std::size_t first, std::size_t end) noexcept
{
    const double* pivotRow = row(pivot);
    const double divisor = pivotRow[pivot];
    std::size_t i = first;
    for (; i + 2 <= end; i += 2)
        subtractMultiples(row(i), row(i)[pivot] / divisor, row(i + 1), row(i + 1)[pivot] / divisor, pivotRow, m_width);
    if (i < end) subtractMultiple(row(i), row(i)[pivot] / divisor, pivotRow, m_width);
}
