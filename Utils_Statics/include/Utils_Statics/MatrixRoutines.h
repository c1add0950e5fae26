#pragma once

#include <Utils_Statics/export.h>

/// Small routines for dense real matrices, exported under exactly these names.
///
/// 1. A matrix is the caller's array of double, row by row. Element (r, c) of a matrix of C columns
///    is at r * C + c.
/// 2. The caller also provides the arrays for the results. Results must not overlap arguments,
///    unless a routine says so.
/// 3. Every sum has a fixed order (ascending index), so that results have the same bits on every
///    machine. Only the choice among several NaNs in a sum is open. Infinities and NaNs go in and
///    come out unreported.
/// 4. Sizes below 1 make an empty matrix: nothing is computed and nothing is written. The same
///    holds for sizes whose arrays cannot lie in the address space, for a null array, and when
///    there is no scratch memory.
/// 5. Nothing throws. Any thread may call these routines.
extern "C" {
/// out (n x n) = transpose(A) x A, with A m x n; *outSize = n. With m below 1 the sums are empty,
/// so out is all zeros.
UTILS_STATICS_API void MAT_AT_Times_A(const double* A, int m, int n, double* out,
                                      int* outSize) noexcept;

/// M[row * cols + col] = value. When row >= rows or col >= cols, the routine instead writes
/// "\nERROR in SetMatrixElement() !\n" to standard output. Negative indices are allowed, so that M
/// may point into a larger matrix.
UTILS_STATICS_API void MAT_SetMatrixElement(int row, int col, int rows, int cols, double* M,
                                            double value) noexcept;

/// out (rows) = M (rows x cols) x v. When vLength differs from cols, the routine writes "\nMatrix
/// vector product incorrect sizes\n" to standard output and computes all the same: v has to hold
/// cols values, whatever vLength says.
UTILS_STATICS_API void MAT_MatrixVectorProduct(const double* M, int rows, int cols, const double* v,
                                               int vLength, double* out) noexcept;

/// M (n x n) = identity
UTILS_STATICS_API void MAT_MakeIdentity(double* M, int n) noexcept;

/// out = A x B, all n x n
UTILS_STATICS_API void MAT_MatrixProduct(const double* A, const double* B, int n,
                                         double* out) noexcept;

/// out = inverse of A, and b (n) becomes the solution x of A x = b, by Gauss-Jordan elimination
/// without pivoting: a singular matrix, or a zero that comes to lie on the diagonal, gives
/// infinities or NaNs. A stays as it is, unless out is A. Made for n up to 49; larger matrices are
/// computed in the same way.
UTILS_STATICS_API void MAT_InvertMatrix(const double* A, int n, double* b, double* out) noexcept;

/// x (n) = least-squares solution of A x = y, with A m x n and y of m values, by the plain normal
/// equations (no scaling, no orthogonalisation). The result has about half the digits of a QR
/// solution, see docs/least-squares-accuracy.md. n is as for MAT_InvertMatrix. x may be y.
UTILS_STATICS_API void MAT_LeastSquares(const double* A, int m, int n, const double* y,
                                        double* x) noexcept;

/// The bounding box of four points, given as (x, y, 1), under M = M1 x M2 (all 3 x 3; M is an
/// output). The search starts at -1e8 for the maxima and 1e8 for the minima, so a box is cut there.
/// NaNs are passed over.
UTILS_STATICS_API void MAT_Transform(double* maxX, double* minX, double* maxY, double* minY,
                                     const double* p1, const double* p2, const double* p3,
                                     const double* p4, const double* M1, const double* M2,
                                     double* M) noexcept;

/// M (3 x 3) = rotation by angle, in tenths of a degree, followed by the translation (tx, ty). The
/// factor from degrees to radians is right to twelve decimals only, to match existing data: 900 is
/// very nearly, not exactly, 90 degrees.
UTILS_STATICS_API void MAT_GenerateRotationMatrix(int tx, int ty, int angle, double* M) noexcept;
}
