#include "Utils_Statics/MatrixRoutines.h"

#include "measurement/AugmentedMatrix.h"
#include "measurement/MatrixKernels.h"
#include "measurement/ScratchArray.h"

#include <algorithm>
#include <cstddef>

using namespace utils_statics;

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
