#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

// The inner loops of the matrix routines. Each element of a product is one sum with its terms in
// ascending order, as in the plain triple loop. A vector register holds different elements, never
// parts of one sum.
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
void Product(const Operand& a, const double* b, std::size_t bStride, std::size_t rows,
             std::size_t cols, std::size_t count, double* out, std::size_t outStride) noexcept;

// Computes A x B for 3 x 3 matrices, the size of plane transforms. At this size the general form
// spends more time on its branches than on the sums.
void Product3(const double* A, const double* B, double* out) noexcept;

// Computes out (n x n, rows outStride apart) = transpose(A) x A, where A is m x n.
void TransposedTimesSelf(const double* A, std::size_t m, std::size_t n, double* out,
                         std::size_t outStride) noexcept;

// Temporary zero-filled doubles, aligned to 16 bytes: up to InlineSize of them inside the object,
// more from the heap.
template <std::size_t InlineSize>
class ScratchArray
{
public:
    // Makes rows x cols doubles, both at least 1. data() is null when memory is short.
    ScratchArray(std::size_t rows, std::size_t cols) noexcept
    {
        if (rows > PTRDIFF_MAX / sizeof(double) / cols) return;
        const std::size_t size = rows * cols;
        m_data = size <= InlineSize ? m_inline
                                    : static_cast<double*>(::operator new(size * sizeof(double),
                                                                          alignment, std::nothrow));
        if (m_data) std::fill_n(m_data, size, 0.0);
    }

    ~ScratchArray()
    {
        if (m_data != m_inline) ::operator delete(m_data, alignment);
    }

    ScratchArray(const ScratchArray&) = delete;
    ScratchArray& operator=(const ScratchArray&) = delete;

    double* data() const noexcept { return m_data; }

private:
    static constexpr std::align_val_t alignment{16};

    alignas(16) double m_inline[InlineSize];
    double* m_data = nullptr;
};

// A square matrix with further columns to its right, for Gauss-Jordan elimination without pivoting.
//
// The further columns do not depend on each other, so the solution of a right-hand side has the
// same bits with and without the identity beside it.
class AugmentedMatrix
{
public:
    // Makes a zero-filled matrix with a square part of n x n. The first further column is for a
    // right-hand side. Any others must be n columns for the identity. IsUsable() is false when
    // memory is short.
    AugmentedMatrix(std::size_t n, std::size_t furtherColumns) noexcept;

    bool IsUsable() const noexcept { return m_data.data() != nullptr; }

    double* Row(std::size_t i) noexcept { return m_data.data() + i * m_width; }
    std::size_t Width() const noexcept { return m_width; } // in doubles, from one row to the next

    // Clears the square part below and above its diagonal. The diagonal is not scaled to 1: ScaleOf
    // gives the factors.
    void Eliminate() noexcept;

    // The factor by which the further columns of row i must be multiplied after Eliminate.
    double ScaleOf(std::size_t i) noexcept { return 1.0 / Row(i)[i]; }

private:
    struct Columns;

    void ClearBelow(std::size_t pivot) noexcept;
    void ClearAbove(std::size_t pivot) noexcept;
    Columns ColumnsBelow(std::size_t pivot, double factor1, double factor2) noexcept;
    void SubtractFromPair(std::size_t i, double factor1, double factor2, const double* pivotRow,
                          Columns columns) noexcept;
    void SubtractFrom(std::size_t i, double factor, const double* pivotRow,
                      Columns columns) noexcept;

    std::size_t m_n;
    bool m_isIdentityTriangular = true; // still zero above its diagonal
    std::size_t m_width;                // even, so that every row starts at a multiple of 16 bytes
    ScratchArray<1024> m_data;          // in place up to n = 21 with the identity beside it
};

} // namespace utils_statics
