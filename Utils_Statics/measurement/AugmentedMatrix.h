#pragma once

#include "measurement/ScratchArray.h"

#include <cstddef>

namespace utils_statics {

// A square matrix with further columns to its right, and its Gauss-Jordan elimination without
// pivoting.
//
// No column depends on another one to the right of the square part: the solution of one right-hand
// side has the same bits with and without the identity beside it.
class AugmentedMatrix
{
public:
    // Zero-filled, for a square part of n x n. The further columns are to hold a right-hand side in
    // the first one and, if there are more, the identity in the n following ones. IsUsable() is
    // false when there is no memory for it.
    AugmentedMatrix(std::size_t n, std::size_t furtherColumns) noexcept;

    bool IsUsable() const noexcept { return m_data.data() != nullptr; }

    double* Row(std::size_t i) noexcept { return m_data.data() + i * m_width; }
    std::size_t Width() const noexcept { return m_width; } // doubles from one row to the next

    // Clears below and above the diagonal of the square part. The diagonal keeps its values; see
    // scaleOf.
    void Eliminate() noexcept;

    // What the further columns of row i are still to be multiplied by.
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
