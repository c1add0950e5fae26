#include "Utils_Statics/MatrixRoutines.h"

#include "measurement/MatrixKernels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cwchar>

using namespace utils_statics;

namespace {

// The running extremes of one coordinate. They start at values that no image coordinate reaches.
struct Extremes
{
    double max = -1e8;
    double min = 1e8;

    void Take(double value) noexcept
    {
        if (value > max) max = value;
        if (value < min) min = value;
    }
};

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

void MAT_SetMatrixElement(int row, int col, int rows, int cols, double* M, double value) noexcept
{
    if (row >= rows || col >= cols) {
        std::wprintf(L"\nERROR in SetMatrixElement() !\n");
        return;
    }
    if (!M) return;
    // Indices deliberately have no lower bound. In 64 bits the product cannot overflow.
    const std::int64_t index = std::int64_t{row} * cols + col;
    M[static_cast<std::ptrdiff_t>(index)] = value;
}

void MAT_MakeIdentity(double* M, int n) noexcept
{
    if (!IsPossible(n, n) || !M) return;
    const std::size_t size = static_cast<std::size_t>(n);
    std::fill_n(M, size * size, 0.0);
    for (std::size_t i = 0; i < size; ++i)
        M[i * size + i] = 1.0;
}

void MAT_Transform(double* maxX, double* minX, double* maxY, double* minY, const double* p1,
                   const double* p2, const double* p3, const double* p4, const double* M1,
                   const double* M2, double* M) noexcept
{
    if (!maxX || !minX || !maxY || !minY || !p1 || !p2 || !p3 || !p4 || !M1 || !M2 || !M) return;
    MAT_MatrixProduct(M1, M2, 3, M);
    Extremes x;
    Extremes y;
    for (const double* point : {p1, p2, p3, p4}) {
        double moved[3] = {};
        MAT_MatrixVectorProduct(M, 3, 3, point, 3, moved);
        x.Take(moved[0]);
        y.Take(moved[1]);
    }
    *maxX = x.max;
    *minX = x.min;
    *maxY = y.max;
    *minY = y.min;
}

void MAT_GenerateRotationMatrix(int tx, int ty, int angle, double* M) noexcept
{
    if (!M) return;
    // Deliberately not the nearest double to pi / 180: results have to match existing data.
    constexpr double radiansPerDegree = 0.017453292519444;
    const double a = angle * 0.1 * radiansPerDegree;
    const double matrix[9] = {std::cos(a), -std::sin(a), double(tx), std::sin(a), std::cos(a),
                              double(ty),  0.0,          0.0,        1.0};
    std::copy_n(matrix, 9, M);
}

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

void MAT_InvertMatrix(const double* A, int n, double* b, double* out) noexcept
{
    if (!IsPossible(n, n) || !A || !b || !out) return;
    const std::size_t size = static_cast<std::size_t>(n);
    AugmentedMatrix matrix(size, size + 1); // A, b, identity
    if (!matrix.IsUsable()) return;
    for (std::size_t i = 0; i < size; ++i) {
        double* row = matrix.Row(i);
        std::copy_n(A + i * size, size, row);
        row[size] = b[i];
        row[size + 1 + i] = 1.0;
    }
    matrix.Eliminate();
    for (std::size_t i = 0; i < size; ++i) {
        const double* row = matrix.Row(i);
        const double scale = matrix.ScaleOf(i);
        b[i] = row[size] * scale;
        for (std::size_t j = 0; j < size; ++j)
            out[i * size + j] = row[size + 1 + j] * scale;
    }
}

// The inverse of transpose(A) x A is not needed, so the identity is left out. The solution's column
// does not depend on it.
void MAT_LeastSquares(const double* A, int m, int n, const double* y, double* x) noexcept
{
    if (!IsPossible(n, n) || !x) return;
    const bool hasRows = A && y && IsPossible(m, n);
    if (m > 0 && !hasRows) return;
    const std::size_t rows = hasRows ? static_cast<std::size_t>(m) : 0;
    const std::size_t size = static_cast<std::size_t>(n);
    AugmentedMatrix matrix(size, 1);
    const ScratchArray<64> rightSide(1, size); // separate from x, which may be y
    if (!matrix.IsUsable() || !rightSide.data()) return;
    TransposedTimesSelf(A, rows, size, matrix.Row(0), matrix.Width());
    Product({y, 0, 1}, A, size, 1, size, rows, rightSide.data(), size);
    for (std::size_t i = 0; i < size; ++i)
        matrix.Row(i)[size] = rightSide.data()[i];
    matrix.Eliminate();
    for (std::size_t i = 0; i < size; ++i)
        x[i] = matrix.Row(i)[size] * matrix.ScaleOf(i);
}
