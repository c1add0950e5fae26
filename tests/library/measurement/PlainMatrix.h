#pragma once

#include <cstddef>
#include <vector>

// The matrix routines as plain loops. The library's results have to equal theirs bit by bit.
namespace plain {

using Array = std::vector<double>;

// Elements by row and column of an array of the given width.
class View
{
public:
    View(const Array& data, int cols) : m_data(data), m_cols(cols) {}
    double operator()(int row, int col) const
    {
        return m_data[static_cast<std::size_t>(row * m_cols + col)];
    }

private:
    const Array& m_data;
    int m_cols;
};

inline Array Matrix(int rows, int cols)
{
    return Array(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), 0.0);
}

inline double& at(Array& data, int cols, int row, int col)
{
    return data[static_cast<std::size_t>(row * cols + col)];
}

inline Array TransposedTimesSelf(const Array& a, int m, int n)
{
    const View A(a, n);
    Array out = Matrix(n, n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < m; ++k)
                sum += A(k, i) * A(k, j);
            at(out, n, i, j) = sum;
        }
    return out;
}

inline Array MatrixVector(const Array& a, int rows, int cols, const Array& v)
{
    const View M(a, cols);
    Array out(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) {
        double sum = 0.0;
        for (int j = 0; j < cols; ++j)
            sum += M(i, j) * v[static_cast<std::size_t>(j)];
        out[static_cast<std::size_t>(i)] = sum;
    }
    return out;
}

inline Array Product(const Array& a, const Array& b, int n)
{
    const View A(a, n), B(b, n);
    Array out = Matrix(n, n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < n; ++k)
                sum += A(i, k) * B(k, j);
            at(out, n, i, j) = sum;
        }
    return out;
}

// Subtracts f x row k from row i over all columns; f is taken before the row changes.
inline void SubtractRow(Array& g, int width, int i, int k)
{
    const double f = at(g, width, i, k) / at(g, width, k, k);
    for (int c = 0; c < width; ++c)
        at(g, width, i, c) -= f * at(g, width, k, c);
}

// The inverse; b becomes the solution.
inline Array Invert(const Array& a, int n, Array& b)
{
    const View A(a, n);
    const int width = 2 * n + 1;
    Array g = Matrix(n, width);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            at(g, width, i, j) = A(i, j);
        at(g, width, i, n) = b[static_cast<std::size_t>(i)];
        at(g, width, i, n + 1 + i) = 1.0;
    }
    for (int k = 0; k < n; ++k)
        for (int i = k + 1; i < n; ++i)
            SubtractRow(g, width, i, k);
    for (int k = n - 1; k >= 1; --k)
        for (int i = k - 1; i >= 0; --i)
            SubtractRow(g, width, i, k);
    Array out = Matrix(n, n);
    for (int k = 0; k < n; ++k) {
        const double scale = 1.0 / at(g, width, k, k);
        for (int c = 0; c < width; ++c)
            at(g, width, k, c) *= scale;
        for (int j = 0; j < n; ++j)
            at(out, n, k, j) = at(g, width, k, n + 1 + j);
        b[static_cast<std::size_t>(k)] = at(g, width, k, n);
    }
    return out;
}

inline Array LeastSquares(const Array& a, int m, int n, const Array& y)
{
    const View A(a, n);
    const Array normal = TransposedTimesSelf(a, m, n);
    Array transposed = Matrix(n, m);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            at(transposed, m, j, i) = A(i, j);
    Array t = MatrixVector(transposed, n, m, y);
    Invert(normal, n, t);
    return t;
}

} // namespace plain
