#pragma once

#include <cstddef>

// The inner loops of the matrix routines. Each element is one sum with its terms in ascending
// order, as in the plain triple loop; what runs side by side in a vector register are different
// elements, never parts of one sum.
namespace utils_statics {

// One operand of a product: element (i, k) is at data[i * stride + k * step].
struct Operand
{
    const double* data;
    std::size_t stride;
    std::size_t step;
};

// Whether an array of rows x cols doubles can exist: both at least 1 and its size below half the
// address space.
bool IsPossible(int rows, int cols) noexcept;

// out(i, j) = sum over k < count of a(i, k) * b[k * bStride + j], for i < rows and j < cols; out(i,
// j) is at out[i * outStride + j]. out overlaps neither operand.
void Product(Operand a, const double* b, std::size_t bStride, std::size_t rows, std::size_t cols,
             std::size_t count, double* out, std::size_t outStride) noexcept;

// The same for A x B with 3 x 3 matrices, the size of plane transforms: at this size finding the
// way through the general form takes longer than the sums.
void Product3(const double* A, const double* B, double* out) noexcept;

// out (n x n, rows outStride apart) = transpose(A) x A, with A m x n.
void TransposedTimesSelf(const double* A, std::size_t m, std::size_t n, double* out,
                         std::size_t outStride) noexcept;

} // namespace utils_statics
