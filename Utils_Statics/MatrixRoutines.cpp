#include "Utils_Statics/MatrixRoutines.h"

#include "measurement/MatrixKernels.h"

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
        double moved[3];
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
