#pragma once

#include "measurement/ScratchArray.h"

#include <cstddef>

namespace utils_statics {

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
