#pragma once

#include <cstddef>

// The inner loops of the matrix routines. Each element is one sum with its terms in ascending
// order, as in the plain triple loop. A vector register holds different elements, never parts of
// one sum.
namespace utils_statics {

// One operand of a product: element (i, k) is at data[i * stride + k * step].
struct Operand
{
    const double* data;
    std::size_t stride;
    std::size_t step;
};

// True when an array of rows x cols doubles can exist: both are at least 1, and its size is below
// half the address space.
bool IsPossible(int rows, int cols) noexcept;

// Computes out(i, j) = sum over k < count of a(i, k) * b[k * bStride + j], for i < rows and j <
// cols. out(i, j) is at out[i * outStride + j]. out overlaps neither operand.
void Product(Operand a, const double* b, std::size_t bStride, std::size_t rows, std::size_t cols,
             std::size_t count, double* out, std::size_t outStride) noexcept;

// Computes A x B for 3 x 3 matrices, the size of plane transforms. At this size the general form
// spends more time on its branches than on the sums.
void Product3(const double* A, const double* B, double* out) noexcept;

// Computes out (n x n, rows outStride apart) = transpose(A) x A, where A is m x n.
void TransposedTimesSelf(const double* A, std::size_t m, std::size_t n, double* out,
                         std::size_t outStride) noexcept;

} // namespace utils_statics
