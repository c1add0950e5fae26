#include "Utils_Statics/MatrixRoutines.h"

#include "measurement/MatrixKernels.h"

#include <emmintrin.h>

#include <cstddef>
#include <cwchar>

using namespace utils_statics;

namespace {

// Computes four rows at a time, with their sums side by side.
void FourRowsTimesVector(const double* M, std::size_t cols, const double* v, double* out) noexcept
{
    __m128d sum01 = _mm_setzero_pd();
    __m128d sum23 = _mm_setzero_pd();
    for (std::size_t j = 0; j < cols; ++j) {
        const __m128d factor = _mm_set1_pd(v[j]);
        sum01 = _mm_add_pd(sum01, _mm_mul_pd(_mm_set_pd(M[cols + j], M[j]), factor));
        sum23 = _mm_add_pd(sum23, _mm_mul_pd(_mm_set_pd(M[3 * cols + j], M[2 * cols + j]), factor));
    }
    _mm_storeu_pd(out, sum01);
    _mm_storeu_pd(out + 2, sum23);
}

double RowTimesVector(const double* row, std::size_t cols, const double* v) noexcept
{
    double sum = 0.0;
    for (std::size_t j = 0; j < cols; ++j)
        sum += row[j] * v[j];
    return sum;
}

} // namespace

void MAT_AT_Times_A(const double* A, int m, int n, double* out, int* outSize) noexcept
{
    if (outSize) *outSize = n;
    if (!IsPossible(n, n) || !out) return;
    const bool hasRows = A && IsPossible(m, n);
    if (m > 0 && !hasRows) return;
    const std::size_t size = static_cast<std::size_t>(n);
    TransposedTimesSelf(A, hasRows ? static_cast<std::size_t>(m) : 0, size, out, size);
}

void MAT_MatrixVectorProduct(const double* M, int rows, int cols, const double* v, int vLength,
                             double* out) noexcept
{
    if (vLength != cols) std::wprintf(L"\nMatrix vector product incorrect sizes\n");
    if (rows < 1 || !out) return;
    const std::size_t width = cols > 0 ? static_cast<std::size_t>(cols) : 0;
    if (width > 0 && (!M || !v || !IsPossible(rows, cols))) return;
    const std::size_t height = static_cast<std::size_t>(rows);
    std::size_t i = 0;
    for (; i + 4 <= height; i += 4)
        FourRowsTimesVector(M + i * width, width, v, out + i);
    for (; i < height; ++i)
        out[i] = RowTimesVector(M + i * width, width, v);
}

void MAT_MatrixProduct(const double* A, const double* B, int n, double* out) noexcept
{
    if (!IsPossible(n, n) || !A || !B || !out) return;
    if (n == 3) return Product3(A, B, out);
    const std::size_t size = static_cast<std::size_t>(n);
    Product({A, size, 1}, B, size, size, size, size, out, size);
}
